"""What the sample's first product is: folders, features, files, shortcuts, registry values and properties.

The product Zolt 2027 exists only here. make_media.py turns this description into installer databases for both platforms.
"""

from sample_setup import VERSION

NAME = "Zolt 2027"
FOLDER = "Zolt"
PACKAGE = "Zolt2027.msi"
PROGRAM = "zolt.exe"
CATALOG_KEY = "ZOLT2027"
# Of the family that carries MC3_ENABLED, and carrying it.
KIND, CARRIER1, CARRIER2 = 8, 1, 1
# GUIDs are made from names below this one, so that every build gives the same.
GUID_SEED = "b8f0f3f4-2027-4c1e-9a55-7d0e5b2a9c11"

# key: (parent, name); {programs} is the platform's program folder
DIRECTORIES = {
    "TARGETDIR": ("", "SourceDir"),
    "{programs}": ("TARGETDIR", "."),
    "MAKERDIR": ("{programs}", "Velkmora"),
    "INSTALLDIR": ("MAKERDIR", "ZOLT2027|Zolt 2027"),
    "SUPPORTDIR": ("INSTALLDIR", "Support"),
    "COLORBOOKDIR": ("SUPPORTDIR", "COLORB~1|Color Books"),
    "PALETTEDIR": ("SUPPORTDIR", "TOOLPA~1|Tool Palettes"),
    "FONTDIR": ("INSTALLDIR", "Fonts"),
    "TEMPLATEDIR": ("INSTALLDIR", "TEMPLA~1|Templates"),
    "SHEETSETDIR": ("TEMPLATEDIR", "SHEETS~1|Sheet Sets"),
    "PLOTTERDIR": ("INSTALLDIR", "Plotters"),
    "PLOTDESCDIR": ("PLOTTERDIR", "DESCRI~1|Descriptions"),
    "PLOTSTYLEDIR": ("PLOTTERDIR", "STYLES~1|Plot Styles"),
    "TEXTUREDIR": ("INSTALLDIR", "Textures"),
    "HELPDIR": ("INSTALLDIR", "Help"),
    "SAMPLEDIR": ("INSTALLDIR", "Samples"),
    "DATABASEDIR": ("SAMPLEDIR", "DATABA~1|Database Links"),
    "DRIVERDIR": ("INSTALLDIR", "Drv"),
    "CommonAppDataFolder": ("TARGETDIR", "."),
    "SHAREDMAKERDIR": ("CommonAppDataFolder", "Velkmora"),
    "SHAREDDATADIR": ("SHAREDMAKERDIR", "ZOLT2027|Zolt 2027"),
    "ProgramMenuFolder": ("TARGETDIR", "."),
    "STARTMENUDIR": ("ProgramMenuFolder", "ZOLT2027|Zolt 2027"),
    "DesktopFolder": ("TARGETDIR", "."),
}

# What an administrator sees of a directory: text and flags (2: usable as a path prefix, 4: hidden in the file tree). A
# text below another one's: the first key that fits a path stands for it, so the keys of the folders above come last.
# That of the textures never does, which gives the same folder. The folder of all the maker's products has no text.
DIRECTORY_MAP = {
    "INSTALLDIR": ("Zolt 2027", 2),
    "SUPPORTDIR": ("Support Files", 2),
    "COLORBOOKDIR": ("Support Files\\Color Books", 2),
    "PALETTEDIR": ("Support Files\\Tool Palettes", 2),
    "FONTDIR": ("Fonts", 2),
    "TEMPLATEDIR": ("Templates", 2),
    "SHEETSETDIR": ("Templates\\Sheet Sets", 2),
    "PLOTTERDIR": ("Plotters", 2),
    "PLOTDESCDIR": ("Plotters\\Descriptions", 2),
    "PLOTSTYLEDIR": ("Plotters\\Plot Styles", 2),
    "TEXTUREDIR": ("Zolt 2027\\Textures", 2),
    "HELPDIR": ("Help", 0),
    "SAMPLEDIR": ("Samples", 2),
    "DATABASEDIR": ("Samples\\Database Links", 2),
    "DRIVERDIR": ("Drivers", 6),
    "SHAREDDATADIR": ("Shared Data", 2),
    "SHAREDMAKERDIR": ("", 2),
}

# key: (parent, title, description, level)
FEATURES = {
    "Zolt": ("", "Zolt 2027", "The program and its support files.", 1),
    "ZoltPlotting": ("Zolt", "Plotting", "Plotter drivers, descriptions and styles.", 1),
    "ZoltTemplates": ("Zolt", "Templates", "Drawing templates and sheet sets.", 1),
    "ZoltTextures": ("Zolt", "Textures", "Surface textures for rendering.", 1),
    "ZoltHelp": ("Zolt", "Help", "The help pages for use without a network.", 1),
    "ZoltSamples": ("Zolt", "Samples", "Sample drawings and database links.", 1),
}

# feature, directory, file names
FILES = [
    ("Zolt", "INSTALLDIR", ["zolt.exe", "zolt.ini", "License.txt", "ReadMe.txt", "Components.xml"]),
    ("Zolt", "SUPPORTDIR", ["Main.zmenu", "Enterprise.zmenu", "Words.dic", "FontMap.txt", "Aliases.txt", "Units.txt",
                            "Hatching.ztext", "LineTypes.ztext", "Startup.zmacro"]),
    ("Zolt", "COLORBOOKDIR", ["Basic.zcolors", "Print.zcolors", "Signal.zcolors"]),
    ("Zolt", "PALETTEDIR", ["Drafting.zpalette", "Dimensions.zpalette", "Symbols.zpalette"]),
    ("Zolt", "FONTDIR", ["Simple.zfont", "Technical.zfont", "Narrow.zfont", "Symbols.zfont"]),
    ("Zolt", "DRIVERDIR", ["Display.zdriver", "Tablet.zdriver"]),
    ("Zolt", "SHAREDDATADIR", ["Catalog.xml", "Materials.xml"]),
    ("ZoltTemplates", "TEMPLATEDIR", ["Metric.ztemplate", "Imperial.ztemplate", "Metric A0.ztemplate",
                                      "Metric A3.ztemplate", "Page Setups.ztemplate"]),
    ("ZoltTemplates", "SHEETSETDIR", ["Architecture.zsheets", "Machine.zsheets", "Survey.zsheets"]),
    ("ZoltPlotting", "PLOTTERDIR", ["Default.zplotter", "Large Format.zplotter", "Document.zplotter"]),
    ("ZoltPlotting", "PLOTDESCDIR", ["Default.zdesc", "Large Format.zdesc"]),
    ("ZoltPlotting", "PLOTSTYLEDIR", ["Monochrome.zstyle", "Grayscale.zstyle", "Full Color.zstyle"]),
    ("ZoltTextures", "TEXTUREDIR", ["Brick.png", "Wood.png", "Concrete.png", "Steel.png", "Glass.png"]),
    ("ZoltHelp", "HELPDIR", ["Index.html", "Getting Started.html", "Commands.html", "Plotting.html", "Templates.html",
                             "Shortcuts.html", "Help.css"]),
    ("ZoltSamples", "SAMPLEDIR", ["House.zdrawing", "Bracket.zdrawing", "Site Plan.zdrawing", "Gearbox.zdrawing"]),
    ("ZoltSamples", "DATABASEDIR", ["Rooms.csv", "Parts.csv", "Links.xml"]),
]

# key: (directory, name, file, arguments, description, feature)
SHORTCUTS = {
    "ZoltStartMenu": ("STARTMENUDIR", "ZOLT2027|Zolt 2027", "zolt.exe", "", "Starts Zolt 2027", "Zolt"),
    "ZoltDesktop": ("DesktopFolder", "ZOLT2027|Zolt 2027", "zolt.exe", "", "Starts Zolt 2027", "Zolt"),
    "ZoltSafeMode": ("STARTMENUDIR", "ZOLTSAFE|Zolt 2027 (no start macro)", "zolt.exe", "/nologo",
                     "Starts Zolt 2027 without its start macro", "Zolt"),
}
DESKTOP_SHORTCUT = "ZoltDesktop"
SHORTCUT_TEMPLATE = ("ZoltCustom;STARTMENUDIR;ZOLTCUST|Zolt Custom;{component};[INSTALLDIR]zolt.exe;;"
                     "Custom start of Zolt 2027;;;;;INSTALLDIR")

# (name, value): what the installed product reads, below Software\Velkmora\Zolt\27.0. The properties in brackets
# carry the administrator's choices to the workstation.
REGISTRY_KEY = "Software\\Velkmora\\Zolt\\27.0"
REGISTRY = [
    ("InstallFolder", "[INSTALLDIR]"),
    ("Version", VERSION),
    ("Carrier", "[MC3_ENABLED]"),
    ("UpdateService", "[ZOLT_PATCHRELAY_ENABLE]"),
    ("UpdateSource", "[ZOLT_PATCHRELAY_PATCHNOTIFY]"),
    ("UpdateList", "[ZOLT_PATCHRELAY_LISTLOCACTION]"),
    ("Notices", "[ZOLT_CHANNEL_NOTIFY_ENABLE]"),
    ("SiteChannel", "[ZOLT_SITEMGR_CHANNEL_ENABLE]"),
    ("SiteFeed", "[ZOLT_SITEMGR_LOCATION]"),
    ("SiteName", "[ZOLT_SITEMGR_DISPLAY_NAME]"),
    ("Feeds", "[ZOLT_RSS_FEEDS_ENABLE]"),
    ("CustomFeeds", "[ZOLT_RSS_FEEDS_CUSTOM_ENABLE]"),
    ("PartsBay", "[ZOLT_PARTSBAY_ENABLE]"),
    ("PartsBayOff", "[ZOLT_PARTSBAY_DISABLE]"),
    ("MemberBay", "[ZOLT_MEMBERBAY_ENABLE]"),
    ("RoundTrip", "[ZOLT_ENABLE_ROUNDTRIP]"),
    ("SendComputerName", "[ZOLT_ENABLE_SEND_PC_NAME]"),
    ("SearchLocations", "[ZOLT_SEARCH_LOCATIONS_CUSTOM_ENABLE]"),
    ("ProfileName", "[ZOLTDEFAULTPROFILENAME]"),
    ("DesktopShortcut", "[TARN_DESKTOPSHORTCUT_1]"),
    ("BrowserRequired", "[ZOLT_IE_REQUIRED]"),
    ("SheetFormat", "[ZOLT_SHEETX_FORMAT]"),
]

# All that the product knows; those that PATHS leaves out are set by nobody before the wizard.
PATH_PROPERTIES = ["ZOLTProfile_" + name for name in (
    "SupportPath", "MenuFile", "EnterpriseMenuFile", "PrinterConfigDir", "PrinterDescDir", "PrinterStyleSheetDir",
    "TemplatePath", "TempDirectory", "XrefTempDir", "CustomDictionary", "FontMapFile", "AltFont", "QnewTemplate",
    "WebGrabDir", "ToolPaletteFolder", "SaveFilePath", "LogFilePath", "PlotLogPath", "ColorBookLocation",
    "DatabaseWorkSpacePath", "SheetSetTemplatePath", "AlternativePageSetUpsTemplate", "TEXMAPS",
    "ActionsRecordingFilePath", "AdditionalActionsFileLocation", "DGNMappingPath")]
REGISTRY += [(name.split("_")[1], "[%s]" % name) for name in PATH_PROPERTIES]
REGISTRY.append(("CustomPaths", "[NIW_Custom_Paths_Are_Set]"))


def of_length(length, begin, part):
    """A value of so many characters: its beginning, then numbered parts, the last of which may be cut."""
    value, number = begin, 0
    while len(value) < length:
        number += 1
        value += part % number
    return value[:length]


# Values of every form that the page gives back as they are: directories, plain folders, lists of both, and no path at all;
# and the installer's own escapes, which it resolves. The textures come back by the key that comes first. Those of a certain
# length stand on both sides of what the host's and the database's readers have room for; of the two longest the page shows
# the first 1,023 characters and gives back no more.
PATHS = {
    "ZOLTProfile_SupportPath": "[SUPPORTDIR];[FONTDIR];[DRIVERDIR];\\\\server\\zolt\\Office Standards",
    "ZOLTProfile_MenuFile": "[SUPPORTDIR]Main.zmenu",
    "ZOLTProfile_EnterpriseMenuFile": of_length(394, "\\\\server\\zolt\\Menus", "\\Branch %02d") + ".zmenu",
    "ZOLTProfile_PrinterConfigDir": "[PLOTTERDIR]",
    "ZOLTProfile_PrinterDescDir": "[PLOTDESCDIR]",
    "ZOLTProfile_PrinterStyleSheetDir": "[PLOTSTYLEDIR]",
    "ZOLTProfile_TemplatePath": "[TEMPLATEDIR]",
    "ZOLTProfile_TempDirectory": "[null]",
    "ZOLTProfile_XrefTempDir": of_length(512, "\\\\server\\zolt\\References", "\\Project %02d"),
    "ZOLTProfile_CustomDictionary": "[SUPPORTDIR]Words.dic",
    "ZOLTProfile_FontMapFile": "[SUPPORTDIR]FontMap.txt",
    "ZOLTProfile_AltFont": "Simple.zfont",
    "ZOLTProfile_QnewTemplate": of_length(1024, "[TEMPLATEDIR]Offices", "\\Branch %02d"),
    "ZOLTProfile_WebGrabDir": of_length(1023, "[SHAREDDATADIR]Web", "\\Collection %02d"),
    "ZOLTProfile_ToolPaletteFolder": of_length(5000, "[PALETTEDIR];[SHAREDDATADIR]Tool Palettes",
                                               ";\\\\server\\zolt\\Tool Palettes\\Office %03d"),
    "ZOLTProfile_SaveFilePath": of_length(511, "\\\\server\\zolt\\Saved", "\\Project %02d"),
    "ZOLTProfile_LogFilePath": "C:\\Zolt Logs",
    "ZOLTProfile_PlotLogPath": "C:\\Zolt Logs\\[\\{]plots[\\}]",
    "ZOLTProfile_ColorBookLocation": "[COLORBOOKDIR]",
    "ZOLTProfile_DatabaseWorkSpacePath": "[DATABASEDIR]",
    "ZOLTProfile_SheetSetTemplatePath": "[SHEETSETDIR]",
    "ZOLTProfile_AlternativePageSetUpsTemplate": "[TEMPLATEDIR]Page Setups.ztemplate",
    "ZOLTProfile_TEXMAPS": "[TEXTUREDIR];[SHAREDDATADIR]Textures",
    "ZOLTProfile_ActionsRecordingFilePath": "[SUPPORTDIR]",
    "ZOLTProfile_DGNMappingPath": "[SUPPORTDIR]",
}

PROPERTIES = {
    "MC3_ENABLED": "#1",
    "TARN_DESKTOPSHORTCUT_1": "1",
    "ZOLT_IE_REQUIRED": "1",
    "ZOLT_SHEETX_FORMAT": "#1",
    "ZOLTDEFAULTPROFILENAME": "Default",
    "NIW_Custom_Paths_Are_Set": "0",
    "ARPCONTACT": "Velkmora customer desk",
    "ARPCOMMENTS": "Sample product of the deployment wizard",
}

# language, its id, name of the pack, files: each pack is a package of its own
LANGUAGE_PACKS = {
    "de-DE": (1031, "Zolt 2027 Deutsch", ["Menu.zmenu", "Words.dic", "Index.html", "Commands.html"]),
    "fr-FR": (1036, "Zolt 2027 Fran\u00e7ais", ["Menu.zmenu", "Words.dic", "Index.html", "Commands.html"]),
}
