#!/usr/bin/env python3
"""Prints the registry file that points the products of media to an update service.

    catalog_settings.py MEDIA ADDRESS

MEDIA is a folder with Setup.xml; ADDRESS is what AltPatchRelayURL gets, empty for the default.
"""

import os
import sys
import xml.etree.ElementTree

KEY = r"HKEY_LOCAL_MACHINE\Software\Velkmora\PatchRelay\%s"


def settings(media, address):
    setup = xml.etree.ElementTree.parse(os.path.join(media, "Setup.xml"))
    codes = [package.get("productCode") for product in setup.iter("Product") for package in product.findall("Package")]
    text = address.replace("\\", "\\\\").replace('"', '\\"')
    return "REGEDIT4\n" + "".join("\n[%s]\n\"AltPatchRelayURL\"=\"%s\"\n" % (KEY % code, text) for code in codes)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__.splitlines()[2].strip())
    sys.stdout.write(settings(sys.argv[1], sys.argv[2]))
