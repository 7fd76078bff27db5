"""How the update service knows the sample's products, and where their packages say so.

A package's property names the folder of Kmdconfig.xml. Its path counts from the media's root, or from the folder of the
language pack in whose language a product is deployed, so the file lies below each of them.
"""

import sample_setup as setup

FOLDER_PROPERTY = "MEDIAKMD32LOC"
CONFIG_NAME = "Kmdconfig.xml"


def identity(product, platform):
    return "%s-%s" % (product.CATALOG_KEY, setup.PLATFORMS[platform]["folder"])


def config_folder(product, platform):
    return "Wizard\\Catalog\\%s\\%s" % (setup.PLATFORMS[platform]["folder"], product.FOLDER)


def config(product, platform):
    lines = ["<?xml version=\"1.0\" encoding=\"utf-8\"?>", "<KmdConfig version=\"1\">",
             "  <Product value=\"%s\"/>" % identity(product, platform), "</KmdConfig>"]
    return ("\r\n".join(lines) + "\r\n").encode("utf-8")
