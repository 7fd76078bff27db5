"""The rows of include/page_table.h, for what is written in Python: the sample's media, the checks."""

import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
HEADER = os.path.join(ROOT, "include", "page_table.h")


class Page:
    """A row. Texts stand without their quotes, all else as it is written there; a field that a row omits is None."""

    def __init__(self, fields):
        self.stem = fields["stem"]
        self.role = fields.get("role", "PageRole::Choosing")
        self.has_tab = fields.get("bTab") == "true"
        self.of_product = fields.get("bOfProduct") == "true"
        self.section = fields.get("section")
        self.caption = fields.get("caption")
        self.help_file = fields["helpFile"]
        self.wizard_template = fields.get("wizardTemplate")
        self.tab_template = fields.get("tabTemplate")
        self.wizard_export = self.stem + "Dialog"
        self.tab_export = self.stem + "Page" if self.has_tab else None
        self.is_written = self.wizard_template is not None


def read_pages(header=HEADER):
    """All rows in their order. A row that can't be read is an error, not a row less."""
    with open(header, encoding="utf-8") as file:
        text = re.sub(r"//.*", "", file.read())
    table = re.search(r"PAGE_TABLE\[\] = \{(.*?)\n\};", text, re.DOTALL)
    if not table:
        raise ValueError(header + " has no PAGE_TABLE")
    pages = []
    for row in re.findall(r"\{(\.stem[^{}]*)\}", table.group(1)):
        fields = {}
        for field in re.split(r",\s*(?=\.)", row.strip()):
            match = re.fullmatch(r'\.(\w+) = (?:L"([\w.]+)"|([\w:]+))', field)
            if not match:
                raise ValueError("%s: a field can't be read: %s" % (header, field))
            fields[match.group(1)] = match.group(2) or match.group(3)
        pages.append(Page(fields))
    if len(pages) != table.group(1).count("{"):
        raise ValueError(header + ": a row of PAGE_TABLE doesn't begin with its stem")
    return pages


def written_pages():
    return [page for page in read_pages() if page.is_written]


def default_answers(media):
    """The answers file that suits media, or a deployment's folder: the sample's when they have each page and each product
    that it answers. A lone package has no flow."""
    with open(os.path.join(ROOT, "run-answers.txt"), encoding="utf-8") as file:
        answers = file.read()
    sections = set(re.findall(r"^\[(\w+)", answers, re.M))
    answered = [page.wizard_export for page in written_pages() if page.section in sections]
    answered += re.findall(r'^\[\w+ "(.*)"\]', answers, re.M)  # products
    for description in (os.path.join(media, "Setup.xml"), os.path.join(media, "Image", "Setup.xml")):
        if os.path.isfile(description):
            with open(description, encoding="utf-8", errors="replace") as file:
                text = file.read()
            if all('name="%s"' % name in text for name in answered):
                return "run-answers.txt"
    return "run-answers-package.txt"


if __name__ == "__main__":
    if len(sys.argv) != 3 or sys.argv[1] != "--default-answers":
        sys.exit("usage: page_table.py --default-answers MEDIA")
    print(default_answers(sys.argv[2]))
