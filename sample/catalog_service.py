#!/usr/bin/env python3
"""An update service for the sample's products, on this computer alone (127.0.0.1).

    catalog_service.py --patches FOLDER [--port NUMBER] [--first] [--newest FILE]...

FOLDER is what make_patches.py has made. The first line of output is the address that AltPatchRelayURL wants. It runs
until it is ended. A product is offered its newest self-extracting update, with --first its first one, and with --newest the
file of that name.

    GET /patchrelay/GetAvailableContent?key=...&product=...&client=...    what there is for a product
    GET /patches/x64/Name.msp                                           a patch file
    GET /readme/Name.html                                               what it changes
"""

import argparse
import hashlib
import http.server
import json
import os
import signal
import sys
import urllib.parse
from xml.sax.saxutils import quoteattr

import make_media
import sample_setup as setup
import update_catalog

QUERY_PATH = "/patchrelay/GetAvailableContent"
PATCH_PATH = "/patches/"
README_PATH = "/readme/"
README = """<!DOCTYPE html>
<html><head><meta charset="utf-8"><title>%s</title></head>
<body><h1>%s</h1><p>Brings the product to version %s.</p></body></html>
"""


class Update:
    """A file that make_patches.py describes: a patch, or a program with one in it."""

    def __init__(self, folder, entry):
        self.file, self.name, self.version = entry["file"], entry["name"], entry["version"]
        self.product_code = entry["product"].upper()
        self.folder = folder

    def is_program(self):
        return self.file.endswith(".exe")

    def files(self):
        """What a client will have: a program comes with the patch that it writes."""
        return [self.file] + ([self.file[:-len("exe")] + "msp"] if self.is_program() else [])

    def read(self, name):
        with open(os.path.join(self.folder, *name.split("/")), "rb") as file:
            return file.read()

    def readme_name(self):
        return os.path.splitext(os.path.basename(self.file))[0] + ".html"


def read_updates(folder):
    with open(os.path.join(folder, "Patches.json"), encoding="ascii") as file:
        return [Update(folder, entry) for entry in json.load(file) if "product" in entry]


class CatalogService(http.server.ThreadingHTTPServer):
    """`newest`: names of files that are offered, one a product and platform; others get their newest program, or the first
    one where `first` says so."""

    daemon_threads = True

    def __init__(self, folder, port=0, newest=(), first=False):
        super().__init__(("127.0.0.1", port), Handler)
        self.updates = read_updates(folder)
        self.newest, self.first = list(newest), first
        self.silent = False  # it has nothing for anybody
        self.requests = []   # paths that were asked for, in their order

    def address(self):
        return "http://127.0.0.1:%d" % self.server_port

    def catalog_address(self):
        return self.address() + QUERY_PATH

    def product_code(self, identity):
        for product in make_media.PRODUCTS:
            for platform in setup.PLATFORMS:
                if update_catalog.identity(product, platform) == identity:
                    return make_media.guid(product, platform, 1033, "product", product.NAME)
        return None

    def offer(self, key, identity):
        """The newest update of the product, or None."""
        code = self.product_code(identity)
        if code is None or not identity.startswith(key + "-") or self.silent:
            return None
        of_product = [update for update in self.updates if update.product_code == code]
        named = [update for update in of_product if update.file in self.newest]
        programs = sorted((update for update in of_product if update.is_program()), key=lambda update: update.version)
        return (named or programs[:1 if self.first else None] or [None])[-1]

    def answer(self, update):
        lines = ["<?xml version=\"1.0\" encoding=\"utf-8\"?>", "<PatchAnswer version=\"1\">"]
        if update:
            readme = self.address() + README_PATH + update.readme_name()
            download = self.address() + PATCH_PATH + update.file
            lines.append("  <Patch name=%s readme=%s download=%s>"
                         % tuple(map(quoteattr, (update.name, readme, download))))
            for name in update.files():
                data = update.read(name)
                lines.append("    <File name=\"%s\" size=\"%d\" sha256=\"%s\"/>"
                             % (os.path.basename(name), len(data), hashlib.sha256(data).hexdigest()))
            lines.append("  </Patch>")
        return "\r\n".join(lines + ["</PatchAnswer>", ""]).encode("utf-8")

    def patch_bytes(self, name):
        """What is sent of a file that is offered; a test may send something else."""
        for update in self.updates:
            if update.file == name:
                return update.read(name)
        return None

    def readme(self, name):
        for update in self.updates:
            if update.readme_name() == name:
                return (README % (update.name, update.name, update.version)).encode("utf-8")
        return None


class Handler(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        parts = urllib.parse.urlsplit(self.path)
        self.server.requests.append(parts.path)
        if parts.path == QUERY_PATH:
            words = dict(urllib.parse.parse_qsl(parts.query))
            update = self.server.offer(words.get("key", ""), words.get("product", ""))
            self.reply("text/xml; charset=utf-8", self.server.answer(update))
        elif parts.path.startswith(PATCH_PATH):
            self.reply("application/octet-stream", self.server.patch_bytes(parts.path[len(PATCH_PATH):]))
        elif parts.path.startswith(README_PATH):
            self.reply("text/html; charset=utf-8", self.server.readme(parts.path[len(README_PATH):]))
        else:
            self.reply("", None)

    def reply(self, kind, data):
        if data is None:
            self.send_error(404)
            return
        self.send_response(200)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(data)))
        self.send_header("Connection", "close")
        self.end_headers()
        self.wfile.write(data)

    def log_message(self, *_):
        pass  # the first line of output is the address, and there is no other


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--patches", required=True)
    parser.add_argument("--port", type=int, default=0)
    parser.add_argument("--first", action="store_true")
    parser.add_argument("--newest", action="append", default=[])
    arguments = parser.parse_args()
    service = CatalogService(arguments.patches, arguments.port, arguments.newest, arguments.first)
    for number in (signal.SIGTERM, signal.SIGINT):
        signal.signal(number, lambda *_: sys.exit(0))
    print(service.catalog_address(), flush=True)
    service.serve_forever()


if __name__ == "__main__":
    main()
