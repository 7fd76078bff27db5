"""What a run's answers ask of the product, written as the installer properties that have to hold it.

The values stand in the answers file alone. The table below says which property each answer is for and how it is written
there; it is no part of the wizard's own table on purpose, so that the wizard's rows are checked against a second hand.
"""

import ntpath
import os
import re

SWITCH = {"yes": "#1", "no": "#0"}
PLAIN_SWITCH = {"yes": "1", "no": "0"}
SOURCE = {"maker": "#1", "local_list": "#2"}
TEXT, PATH, SHOWN_PATH = object(), object(), object()

# Their answers hold for the deployment, and for those of its products that carry the property.
SECTIONS_OF_DEPLOYMENT = ("settings",)

PROPERTIES = {
    "settings.mc3": ("MC3_ENABLED", SWITCH),
    "workstation.desktop_shortcut": ("TARN_DESKTOPSHORTCUT_1", PLAIN_SWITCH),
    "workstation.browser_required": ("ZOLT_IE_REQUIRED", PLAIN_SWITCH),
    "workstation.sheet_format": ("ZOLT_SHEETX_FORMAT", SWITCH),
    "workstation.profile": ("ZOLTDEFAULTPROFILENAME", TEXT),
    "notices.updates": ("ZOLT_PATCHRELAY_ENABLE", SWITCH),
    "notices.update_source": ("ZOLT_PATCHRELAY_PATCHNOTIFY", SOURCE),
    "notices.update_list": ("ZOLT_PATCHRELAY_LISTLOCACTION", PATH),
    "notices.channel_notices": ("ZOLT_CHANNEL_NOTIFY_ENABLE", SWITCH),
    "notices.site_channel": ("ZOLT_SITEMGR_CHANNEL_ENABLE", SWITCH),
    "notices.site_feed": ("ZOLT_SITEMGR_LOCATION", PATH),
    "notices.site_name": ("ZOLT_SITEMGR_DISPLAY_NAME", TEXT),
    "notices.feeds": ("ZOLT_RSS_FEEDS_ENABLE", SWITCH),
    "notices.custom_feeds": ("ZOLT_RSS_FEEDS_CUSTOM_ENABLE", SWITCH),
    "resources.parts_bay": ("ZOLT_PARTSBAY_ENABLE", SWITCH),
    "resources.member_bay": ("ZOLT_MEMBERBAY_ENABLE", SWITCH),
    "resources.round_trip": ("ZOLT_ENABLE_ROUNDTRIP", SWITCH),
    "resources.send_computer_name": ("ZOLT_ENABLE_SEND_PC_NAME", SWITCH),
    "resources.search_locations": ("ZOLT_SEARCH_LOCATIONS_CUSTOM_ENABLE", SWITCH),
}
# The words of the paths are those of their properties: "paths.menu_file" for ZOLTProfile_MenuFile. The answers hold what the
# page shows, so what has to arrive depends on the product's directories.
PROPERTIES.update({"paths." + re.sub(r"(?<=[a-z])(?=[A-Z])|(?<=[A-Z])(?=[A-Z][a-z])", "_", name).lower():
                   ("ZOLTProfile_" + name, SHOWN_PATH) for name in (
    "SupportPath", "MenuFile", "EnterpriseMenuFile", "PrinterConfigDir", "PrinterDescDir", "PrinterStyleSheetDir",
    "TemplatePath", "TempDirectory", "XrefTempDir", "CustomDictionary", "FontMapFile", "AltFont", "QnewTemplate",
    "WebGrabDir", "ToolPaletteFolder", "SaveFilePath", "LogFilePath", "PlotLogPath", "ColorBookLocation",
    "DatabaseWorkSpacePath", "SheetSetTemplatePath", "AlternativePageSetUpsTemplate", "TEXMAPS",
    "ActionsRecordingFilePath", "AdditionalActionsFileLocation", "DGNMappingPath")})


def unquoted(value):
    value = value.strip()
    return value[1:-1].replace('""', '"') if value.startswith('"') else value


def read_answers(path):
    """The answers of a file that the wizard has already accepted: (key with its section, product or "") -> value."""
    answers, section, product = {}, "", ""
    with open(path, encoding="utf-8-sig") as file:
        lines = [line.strip() for line in file]
    for line in lines:
        if line.startswith("["):
            section, _, name = line[1:-1].strip().partition('"')
            section, product = section.strip(), unquoted('"' + name) if name else ""
        elif "=" in line and not line.startswith("#"):
            key, value = line.split("=", 1)
            add_answer(answers, (section + "." + key.strip(), product), unquoted(value))
    return answers


def add_answer(answers, place, value):
    """A key that stands several times is that of a list, whose lines are the entries of one path."""
    answers[place] = answers[place] + ";" + value if place in answers else value


def split_word(word):
    """What --set says: page.key=value, or page "product".key=value."""
    match = re.fullmatch(r'(\w+)\s*"(.*?)"\.([\w.]+)=(.*)', word, re.DOTALL)
    if match:
        return (match.group(1) + "." + match.group(3), match.group(2)), match.group(4)
    key, value = word.split("=", 1)
    return (key, ""), value


def windows_path(path):
    return "Z:" + path.replace("/", "\\")


def full_path(folder, path):
    """A relative path counts from the folder; a full one and the empty one stay as they stand."""
    if not path or path.startswith("\\\\") or ntpath.splitdrive(path)[0]:
        return path
    return ntpath.normpath(ntpath.join(windows_path(folder), path))


def properties_for(answers, folder):
    """(Property, product or "") -> (key, text) of those answers that a property holds. Where the media lie isn't known here,
    so an answer below them isn't looked for, nor one that its page only keeps."""
    asked = {}
    for (key, product), value in answers.items():
        literal = key.endswith(".literal")
        key = key.removesuffix(".literal")
        if key in PROPERTIES and not value.lower().startswith("<media>"):
            name, form = PROPERTIES[key]
            full = form is PATH and not literal
            as_it_stands = form in (TEXT, PATH, SHOWN_PATH)
            text = full_path(folder, value) if full else value if as_it_stands else form[value]
            asked[name, product] = (key, text)
    return asked


def asked_properties(path, words):
    """What an answers file and the single answers of the command line, which win over it, ask of the properties."""
    asked = properties_for(read_answers(path), os.path.dirname(os.path.abspath(path)))
    words_said = {}
    for word in words:
        add_answer(words_said, *split_word(word))
    said = properties_for(words_said, os.getcwd())
    for name, product in said:
        if not product:  # it wins for each product
            asked = {place: value for place, value in asked.items() if place[0] != name}
    asked.update(said)
    return asked


def find_unmet(asked, products):
    """A sentence for each asked property that holds something else. `products`: (name, carried, properties) of each
    product, without its language packs. `carried` are the (kind, text) of the registry values that hold a property; the
    database's `properties` count where no value carries it. A fourth entry, the package, is asked what becomes of a path
    that its page shows. What belongs to a product's page is asked of each product, or of the one that the answer names;
    what belongs to the deployment of one of them."""
    unmet = []
    for (name, owner), (key, text) in sorted(asked.items()):
        meant = [product for product in products
                 if (owner.lower() in (product[0].lower(), product[2].get("ProductCode", "").lower()) if owner
                     else (name, product[0]) not in asked)]
        looks = [look(product, key, name, text) for product in meant]
        bad = [found for good, found in looks if not good]
        overridden = products and not owner and not meant
        if not overridden and (not meant or (len(bad) == len(looks)
                                             if key.split(".")[0] in SECTIONS_OF_DEPLOYMENT else bad)):
            unmet.append("%s asks for \"%s\" in %s, which is %s" % (key, text, name, " and ".join(bad) or "nowhere"))
    return unmet


def look(product, key, name, text):
    """Whether a product's property holds the text, and what it holds."""
    title, carried, properties, *package = product
    stored = installed = text
    if PROPERTIES[key][1] is SHOWN_PATH:
        stored = package[0].stored_path(text)
        installed = package[0].resolved(name, stored)
    if name in carried:
        good = any(same_value(kind, found, installed) for kind, found in carried[name])
        found = " and ".join("%s \"%s\"" % value for value in carried[name])
    else:
        good = properties.get(name, "") == stored
        found = '"%s"' % properties.get(name, "")
    return good, found + " in " + title


def same_value(kind, found, text):
    """Whether a registry value holds a property. The service makes "#1" a number where it looks at the text after it
    has put the property in, and leaves it a text where it looks before."""
    if kind == "REG_DWORD":
        return re.fullmatch(r"#\d+", text) is not None and int(found, 16) == int(text[1:])
    return kind == "REG_SZ" and found == text
