"""What the sample's patches bring: two updates of each kind of product, from the files of the media to newer ones.

The second update of Zolt holds all that the first one brings, and supersedes it.
"""

import file_contents
import viewer_product
import zolt_product


class Update:
    def __init__(self, product, number, files, supersedes=()):
        self.product, self.number, self.files, self.supersedes = product, number, files, supersedes
        self.version = "27.0.%d" % number
        self.name = "%s Update %d" % (product.NAME, number)
        self.stem = "%sUpdate%d" % (product.PACKAGE[:-len(".msi")], number)

    def newer(self):
        """The files as make_media.compose_product wants them; each tells which update it comes from."""
        return [(feature, directory, name,
                 file_contents.contents("%s Update %d" % (self.product.NAME, since), directory, name)
                 + b"; Update %d\r\n" % since)
                for since, feature, directory, name in self.files]


# since which update, feature, directory, name; those that the media don't have are added
FIRST = [(1, "Zolt", "SUPPORTDIR", "Units.txt"), (1, "ZoltHelp", "HELPDIR", "Commands.html"),
         (1, "Zolt", "FONTDIR", "Engraving.zfont")]
SECOND = FIRST + [(2, "Zolt", "SUPPORTDIR", "Aliases.txt"), (2, "ZoltHelp", "HELPDIR", "What is New.html")]
VIEWER = [(1, "ZoltViewer", "SUPPORTDIR", "Units.txt"), (1, "ZoltViewer", "FONTDIR", "Engraving.zfont")]

ZOLT_1 = Update(zolt_product, 1, FIRST)
ZOLT_2 = Update(zolt_product, 2, SECOND, supersedes=(ZOLT_1,))
VIEWER_1 = Update(viewer_product, 1, VIEWER)
