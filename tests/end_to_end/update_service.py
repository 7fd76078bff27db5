"""An update service for whole runs: that of the sample, which a test can have fail in some way."""

import os
import subprocess
import sys
import threading

from wizard import BUILD, MEDIA, ROOT, windows_path

for folder in ("sample", "scripts"):
    sys.path.insert(0, os.path.join(ROOT, folder))

from catalog_service import CatalogService  # noqa: E402 - the folder has to be known first
from catalog_settings import settings  # noqa: E402

PATCHES = os.path.join(BUILD, "windows", "sample_patches")
NOBODY = "http://127.0.0.1:9/patchrelay/GetAvailableContent"  # refused at once


class UpdateService(CatalogService):
    """Serves on a thread of its own until it is closed."""

    def __init__(self, newest=()):
        super().__init__(PATCHES, newest=newest)
        self.spoil = None  # changes the bytes of a patch file that is sent
        self.thread = threading.Thread(target=self.serve_forever, kwargs={"poll_interval": 0.05})
        self.thread.start()

    def patch_bytes(self, name):
        data = super().patch_bytes(name)
        return self.spoil(data) if self.spoil and data is not None else data

    def downloads(self):
        return [path for path in self.requests if path.startswith("/patches/")]

    def close(self):
        self.shutdown()
        self.thread.join()
        self.server_close()


def point_products_to(address, folder, media=MEDIA):
    """Has the products of the media ask at that address, by the registry of the run's prefix."""
    path = os.path.join(folder, "service.reg")
    with open(path, "w", encoding="ascii") as file:
        file.write(settings(media, address))
    subprocess.run(["taskset", "-c", os.environ.get("ROLLOUT_CORE", "0"), "wine", "regedit", "/S", windows_path(path)],
                   check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
