"""What a run's answers ask for in service packs of the sample's products: which files a workstation has then, byte for byte,
which version the product is, and which patches the installer knows.

The wizard's own reading of the lines isn't used on purpose, and the bytes come from what the patches were made from.
"""

import ntpath
import os
import re
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "sample"))

import file_contents  # noqa: E402
import make_media  # noqa: E402
import sample_patches  # noqa: E402
import sample_setup as setup  # noqa: E402

from expected_properties import unquoted  # noqa: E402

SECTION = re.compile(r'\[service_pack(?:\s+"(.*)")?\]')
# Of a product of the computer, by the installer's form of the codes.
PATCHES_KEY = r"HKLM\Software\Microsoft\Windows\CurrentVersion\Installer\UserData\S-1-5-18\Products\%s\Patches\%s"
UPDATES = {update.stem.lower(): update for update in vars(sample_patches).values()
           if isinstance(update, sample_patches.Update)}


def read_answers(path, product):
    """(answers by their words, files) of a product; its own lines win over those of all products. None without any."""
    answers, files, owner = {}, {}, None
    with open(path, encoding="utf-8-sig") as file:
        for line in (line.strip() for line in file):
            if line.startswith("["):
                section = SECTION.fullmatch(line)
                owner = None if not section else (section.group(1) or "").lower()
            elif owner in ("", product.lower()) and "=" in line and not line.startswith("#"):
                word, value = (part.strip() for part in line.split("=", 1))
                if word == "file":
                    files.setdefault(owner, []).append(stem_of(unquoted(value)))
                else:
                    answers[owner, word] = unquoted(value)
    words = {word: value for (_, word), value in sorted(answers.items())}  # the product's own come last
    return (words, files.get(product.lower(), files.get("", []))) if words or files else None


def stem_of(path):
    return os.path.splitext(ntpath.basename(path))[0].lower()


def offered_to(product):
    """The stem of what the sample's service offers in ./run: the first update, so that there is a newer one."""
    of_product = [update for update in UPDATES.values() if update.product.NAME.lower() == product.lower()]
    return min(of_product, key=lambda update: update.number).stem.lower()


class AskedPatches:
    """Of one product: stems of patches, in the order in which they go in."""

    def __init__(self, appended, merged):
        self.appended, self.merged = appended, merged

    def updates(self):
        return [UPDATES[stem] for stem in self.merged + self.appended]

    def version(self):
        return max([update.version for update in self.updates()], default=setup.VERSION)

    def image_version(self):
        """Merging alone changes what the package in the deployment says of itself."""
        return AskedPatches([], self.merged).version()


def asked_patches(answers, product):
    """What the answers files, one run after the other, ask for of a product."""
    appended, merged = [], []
    for path in answers:
        read = read_answers(path, product)
        if read is None:
            continue  # the page's own proposal, which is what the deployment has
        words, files = read
        choice = words.get("choice")
        if choice == "none":
            appended = []
            continue
        kept = [] if choice == "offered" or words.get("clear") == "yes" else appended
        asked = [offered_to(product)] if choice == "offered" else files
        listed = kept + [stem for stem in asked if stem not in kept + merged]
        if words.get("way", "merge" if merged else "append") == "merge":
            merged = merged + [stem for stem in listed if stem not in merged]
        else:
            appended = listed
    return AskedPatches(appended, merged)


def product_of(name):
    """The sample's product of that name; None for any other."""
    return next((product for product in make_media.PRODUCTS if product.NAME.lower() == name.lower()), None)


def contents_of(product, updates):
    """(directory, name) -> bytes of all that any update of the product touches; None for what isn't there."""
    original = {(directory, name) for _, directory, names in product.FILES for name in names}
    touched = {(directory, name): None for update in UPDATES.values() if update.product is product
               for _, directory, name, _ in update.newer()}
    for directory, name in touched:
        if (directory, name) in original:
            touched[directory, name] = file_contents.contents(product.NAME, directory, name)
    for update in updates:
        touched.update({(directory, name): data for _, directory, name, data in update.newer()})
    return touched


def patched_files(package, answers):
    """Path on the drive -> bytes, or None, of a package that is one of the sample's; {} for any other."""
    name = package.properties.get("ProductName", "")
    product = None if package.is_pack else product_of(name)
    if product is None:
        return {}
    contents = contents_of(product, asked_patches(answers, name).updates())
    return {os.path.join(package.folder(directory), file): data for (directory, file), data in contents.items()}


def installer_form(code):
    """A GUID as the installer names its keys: every part turned round."""
    digits = code.strip("{}").replace("-", "")
    parts = [8, 4, 4] + [2] * 8
    turned, at = "", 0
    for length in parts:
        turned += digits[at:at + length][::-1]
        at += length
    return turned.upper()


def patch_keys(package):
    """Stem of each update of the package's product -> the registry key that says that it is installed."""
    product = product_of(package.properties["ProductName"])
    code = package.properties["ProductCode"].upper()
    platform = next(number for number in setup.PLATFORMS
                    if make_media.guid(product, number, 1033, "product", product.NAME) == code)
    return {stem: PATCHES_KEY % (installer_form(code), installer_form(
        make_media.guid(product, "patch", platform, update.version)))
            for stem, update in UPDATES.items() if update.product is product}


def find_wrong(package, answers, view, has_key):
    """A sentence for each thing that isn't as it was asked for. `view`: of the drive; `has_key`: whether the workstation has
    a registry key."""
    name = package.properties.get("ProductName", "")
    if package.is_pack or product_of(name) is None:
        return []
    asked, wrong = asked_patches(answers, name), []
    for path, data in patched_files(package, answers).items():
        found = view.find(path)
        if data is None:
            wrong += ["%s is there without its patch" % path] if found else []
        elif found is None or read(found) != data:
            wrong.append("%s doesn't hold the bytes of %s" % (path, asked.version()))
    for stem, key in patch_keys(package).items():
        if has_key(key) != (stem in asked.appended):
            wrong.append("%s %s registered as a patch" % (stem, "isn't" if stem in asked.appended else "is"))
    if package.properties["ProductVersion"] != asked.image_version():
        wrong.append("the package of %s has version %s instead of %s" % (name, package.properties["ProductVersion"],
                                                                        asked.image_version()))
    return wrong


def find_left(package, has_key):
    """Patches that the installer still knows when the product is gone."""
    if package.is_pack or product_of(package.properties.get("ProductName", "")) is None:
        return []
    return ["%s is still registered as a patch" % stem for stem, key in patch_keys(package).items() if has_key(key)]


def read(path):
    with open(path, "rb") as file:
        return file.read()
