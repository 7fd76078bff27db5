"""What the sample's second product is, which installs beside the first one: a smaller program of the same maker.

The product Zolt Viewer 2027 exists only here. It has the names of zolt_product.py, where they are explained. The wizard's
pages write into both products' databases, so what carries their choices to the workstation is alike in both.
"""

import zolt_product

NAME = "Zolt Viewer 2027"
FOLDER = "ZoltViewer"
PACKAGE = "ZoltViewer2027.msi"
PROGRAM = "zoltviewer.exe"
CATALOG_KEY = "ZOLTVIEWER2027"
KIND, CARRIER1, CARRIER2 = 8, 1, 0  # of the same family, but carrying nothing
GUID_SEED = "5d0c9a2e-2027-4b7d-8f31-1e6a4c7b9d20"

DIRECTORIES = {
    "TARGETDIR": ("", "SourceDir"),
    "{programs}": ("TARGETDIR", "."),
    "MAKERDIR": ("{programs}", "Velkmora"),
    "INSTALLDIR": ("MAKERDIR", "ZOLTVI~1|Zolt Viewer 2027"),
    "SUPPORTDIR": ("INSTALLDIR", "Support"),
    "COLORBOOKDIR": ("SUPPORTDIR", "COLORB~1|Color Books"),
    "FONTDIR": ("INSTALLDIR", "Fonts"),
    "PLOTTERDIR": ("INSTALLDIR", "Plotters"),
    "PLOTSTYLEDIR": ("PLOTTERDIR", "STYLES~1|Plot Styles"),
    "HELPDIR": ("INSTALLDIR", "Help"),
    "SAMPLEDIR": ("INSTALLDIR", "Samples"),
    "ProgramMenuFolder": ("TARGETDIR", "."),
    "STARTMENUDIR": ("ProgramMenuFolder", "ZOLTVI~1|Zolt Viewer 2027"),
    "DesktopFolder": ("TARGETDIR", "."),
}

DIRECTORY_MAP = {
    "INSTALLDIR": ("Zolt Viewer 2027", 2),
    "SUPPORTDIR": ("Support Files", 2),
    "COLORBOOKDIR": ("Support Files\\Color Books", 2),
    "FONTDIR": ("Fonts", 2),
    "PLOTTERDIR": ("Plotters", 2),
    "PLOTSTYLEDIR": ("Plotters\\Plot Styles", 2),
    "HELPDIR": ("Help", 0),
    "SAMPLEDIR": ("Samples", 2),
}

FEATURES = {
    "ZoltViewer": ("", "Zolt Viewer 2027", "The program and its support files.", 1),
    "ZoltViewerPlotting": ("ZoltViewer", "Plotting", "Plotter descriptions and styles.", 1),
    "ZoltViewerHelp": ("ZoltViewer", "Help", "The help pages for use without a network.", 1),
    "ZoltViewerSamples": ("ZoltViewer", "Samples", "Sample drawings.", 1),
}

FILES = [
    ("ZoltViewer", "INSTALLDIR", [PROGRAM, "zoltviewer.ini", "License.txt", "ReadMe.txt", "Components.xml"]),
    ("ZoltViewer", "SUPPORTDIR", ["Viewer.zmenu", "FontMap.txt", "Units.txt"]),
    ("ZoltViewer", "COLORBOOKDIR", ["Print.zcolors", "Signal.zcolors"]),
    ("ZoltViewer", "FONTDIR", ["Simple.zfont", "Technical.zfont"]),
    ("ZoltViewerPlotting", "PLOTTERDIR", ["Default.zplotter", "Document.zplotter"]),
    ("ZoltViewerPlotting", "PLOTSTYLEDIR", ["Monochrome.zstyle", "Grayscale.zstyle"]),
    ("ZoltViewerHelp", "HELPDIR", ["Index.html", "Viewing.html", "Printing.html", "Help.css"]),
    ("ZoltViewerSamples", "SAMPLEDIR", ["Bridge.zdrawing", "Valve.zdrawing"]),
]

SHORTCUTS = {
    "ZoltViewerStartMenu": ("STARTMENUDIR", "ZOLTVI~1|Zolt Viewer 2027", PROGRAM, "", "Starts Zolt Viewer 2027",
                            "ZoltViewer"),
    "ZoltViewerDesktop": ("DesktopFolder", "ZOLTVI~1|Zolt Viewer 2027", PROGRAM, "", "Starts Zolt Viewer 2027",
                          "ZoltViewer"),
}
DESKTOP_SHORTCUT = "ZoltViewerDesktop"
SHORTCUT_TEMPLATE = ("ZoltViewerCustom;STARTMENUDIR;ZOLTVI~2|Zolt Viewer Custom;{component};[INSTALLDIR]zoltviewer.exe;;"
                     "Custom start of Zolt Viewer 2027;;;;;INSTALLDIR")

REGISTRY_KEY = "Software\\Velkmora\\Zolt Viewer\\27.0"
REGISTRY = [(name, value) for name, value in zolt_product.REGISTRY if name != "Carrier"]

# What a viewer has no use for names no path, and one it doesn't even know. Three are of the kind that the page turns into
# something else: a directory that may be shown but not stand for a beginning, one that the page doesn't know, and
# brackets that are escaped and look like a directory once they are not.
PATHS = dict({name: "[NULL]" for name in zolt_product.PATH_PROPERTIES if name != "ZOLTProfile_TEXMAPS"}, **{
    "ZOLTProfile_SupportPath": "[SUPPORTDIR];[FONTDIR]",
    "ZOLTProfile_MenuFile": "[SUPPORTDIR]Viewer.zmenu",
    "ZOLTProfile_PrinterConfigDir": "[PLOTTERDIR]",
    "ZOLTProfile_PrinterStyleSheetDir": "[PLOTSTYLEDIR]",
    "ZOLTProfile_FontMapFile": "[SUPPORTDIR]FontMap.txt",
    "ZOLTProfile_AltFont": "Simple.zfont",
    "ZOLTProfile_ColorBookLocation": "[COLORBOOKDIR]",
    "ZOLTProfile_WebGrabDir": "[HELPDIR]Web",
    "ZOLTProfile_LogFilePath": "[CommonAppDataFolder]Velkmora",
    "ZOLTProfile_SaveFilePath": "C:\\Drawings\\[\\[]old[\\]]",
})

PROPERTIES = {name: value for name, value in zolt_product.PROPERTIES.items() if name != "MC3_ENABLED"}

LANGUAGE_PACKS = {}
