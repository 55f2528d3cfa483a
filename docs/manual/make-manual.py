#!/usr/bin/env python3
"""Makes the help that stands beside the program from the pages in docs/manual.

    make-manual.py --out DIR --work DIR [--chmcmd PROGRAM]

DIR then holds help/<language>/*.html with its pictures and, where there is a compiler for it, the
compiled help files. The same pages give the same bytes, whenever and wherever they are made.
"""

import argparse
import html
import pathlib
import re
import shutil
import subprocess
import sys

import markdown

SOURCE = pathlib.Path(__file__).resolve().parent
TITLE = "Tessmar Logger"

# The languages of the manual: folder, its own name, words of the frame around a page.
LANGUAGES = {
    "en": {"name": "English", "contents": "Contents", "back": "Back", "next": "Next"},
    "de": {"name": "Deutsch", "contents": "Inhalt", "back": "Zurück", "next": "Weiter"},
}

# The help files and their pages, in reading order. Each gets a page of contents of its own name.
OXYGEN_PAGES = ["oxygen", "oxygen-formulas"]
BOOKS = {
    "TessmarLoggerII": {
        "title": {"en": "Tessmar Logger", "de": "Tessmar Logger"},
        "pages": [
            "first-connection", "ports", "live", "history", "plot", "archive", "exports", "setup", "calibration",
            *OXYGEN_PAGES,
            "modem", "image-files", "command", "sharing", "start-and-settings", "troubleshooting",
        ],
    },
    "TessmarDOHelp": {
        "title": {"en": "Dissolved Oxygen and Salinity", "de": "Gelöstsauerstoff und Salinität"},
        "pages": OXYGEN_PAGES,
    },
}

PAGE = """<!DOCTYPE html>
<html lang="{language}">
<head>
<meta http-equiv="Content-Type" content="text/html; charset=utf-8">
<meta name="viewport" content="width=device-width">
<title>{title}</title>
<link rel="stylesheet" href="../manual.css">
</head>
<body>
{above}{body}{below}</body>
</html>
"""

CONTENTS_HEAD = """<!DOCTYPE HTML PUBLIC "-//IETF//DTD HTML//EN">
<html><head><meta name="GENERATOR" content="make-manual"></head><body>
"""


class Manual:
    """All pages of one language as HTML."""

    def __init__(self, language):
        self.language = language
        self.words = LANGUAGES[language]
        self.missing_pictures = []
        self.pages = {}
        for name in BOOKS["TessmarLoggerII"]["pages"]:
            text = (SOURCE / language / f"{name}.md").read_text(encoding="utf-8")
            title = re.match(r"# (.+)\n", text)
            if title is None:
                sys.exit(f"{language}/{name}.md does not begin with a heading")
            self.pages[name] = (title.group(1).strip(), self.to_html(text, name))

    def to_html(self, text, name):
        body = markdown.markdown(text, extensions=["tables", "toc"], output_format="html")
        for target in re.findall(r'href="([a-z-]+)\.md', body):
            if target not in BOOKS["TessmarLoggerII"]["pages"]:
                sys.exit(f"{self.language}/{name}.md leads to {target}.md, which is no page")
        body = re.sub(r'href="([a-z-]+)\.md', r'href="\1.html', body)
        # Viewers of compiled help know no style sheets; this is what they draw lines from.
        body = body.replace("<table>", '<table border="1" cellpadding="4" cellspacing="0">')
        return re.sub(r'<p><img alt="[^"]*" src="([^"]+)"[^>]*></p>\n?', self.keep_picture, body)

    def keep_picture(self, match):
        if (SOURCE / self.language / match.group(1)).is_file():
            return match.group(0)
        self.missing_pictures.append(match.group(1))
        return ""

    def frame(self, title, body, above="", below=""):
        return PAGE.format(language=self.language, title=html.escape(title), body=body,
                           above=above, below=below)

    def page(self, name, book):
        """A page as it stands in one of the help files, with links to its neighbours there."""
        title, body = self.pages[name]
        order = BOOKS[book]["pages"]
        place = order.index(name)
        links = [f'<a href="{book}.html">{self.words["contents"]}</a>']
        if place > 0:
            links.append(f'<a href="{order[place - 1]}.html">{self.words["back"]}</a>')
        if place + 1 < len(order):
            links.append(f'<a href="{order[place + 1]}.html">{self.words["next"]}</a>')
        line = f'<p class="frame">{" | ".join(links)}</p>\n'
        return self.frame(f"{title} - {TITLE}", body + "\n", above=line, below=line)

    def contents(self, book):
        title = BOOKS[book]["title"][self.language]
        rows = "".join(f'<li><a href="{name}.html">{html.escape(self.pages[name][0])}</a></li>\n'
                       for name in BOOKS[book]["pages"])
        body = f"<h1>{html.escape(title)}</h1>\n<ul>\n{rows}</ul>\n"
        others = [f'<a href="../{language}/{book}.html">{words["name"]}</a>'
                  for language, words in LANGUAGES.items() if language != self.language]
        return self.frame(title, body, below=f'<p class="frame">{" | ".join(others)}</p>\n')


def ascii_bytes(text):
    """Viewers differ in what they take a page's characters for; these they all read alike."""
    return text.encode("ascii", "xmlcharrefreplace")


def write_pages(manuals, out):
    shutil.rmtree(out, ignore_errors=True)
    for language, manual in manuals.items():
        folder = out / language
        folder.mkdir(parents=True)
        for name in manual.pages:
            page = manual.page(name, "TessmarLoggerII")
            (folder / f"{name}.html").write_bytes(ascii_bytes(page))
        for book in BOOKS:
            (folder / f"{book}.html").write_bytes(ascii_bytes(manual.contents(book)))
        pictures = SOURCE / "pictures" / language
        if pictures.is_dir():
            shutil.copytree(pictures, out / "pictures" / language,
                            copy_function=shutil.copyfile)
    shutil.copyfile(SOURCE / "manual.css", out / "manual.css")


def sitemap_entry(name, local):
    return (f'<li><object type="text/sitemap"><param name="Name" value="{html.escape(name)}">'
            f'<param name="Local" value="{local}"></object>\n')


def write_project(book, manuals, folder, files):
    """The compiler's project, and the contents with a branch for each language."""
    contents = CONTENTS_HEAD + "<ul>\n"
    for language, manual in manuals.items():
        contents += sitemap_entry(manual.words["name"], f"{language}/{book}.html") + "<ul>\n"
        for name in BOOKS[book]["pages"]:
            contents += sitemap_entry(manual.pages[name][0], f"{language}/{name}.html")
        contents += "</ul>\n"
    contents += "</ul>\n</body></html>\n"
    # The contents are read in the character set of the project's language.
    (folder / f"{book}.hhc").write_bytes(contents.encode("cp1252"))
    title = BOOKS[book]["title"]["en"]
    project = ["[OPTIONS]", "Compatibility=1.1 or later", f"Compiled file={book}.chm",
               f"Contents file={book}.hhc", f"Default topic=en/{book}.html", f"Title={title}",
               "Language=0x0409", "", "[FILES]", *files]
    (folder / f"{book}.hhp").write_text("\n".join(project) + "\n", encoding="ascii")


def without_times(data):
    """The compiler writes the time of day into the head of the file and into its system entry."""
    content = int.from_bytes(data[0x58:0x60], "little")
    entry = b"\x03\x00\x00\x00\x0a\x00\x04\x00"  # Version 3, then entry 10, the time, 4 bytes.
    place = data.find(entry, content)
    if data[:4] != b"ITSF" or place < 0:
        sys.exit("the compiled help is not of the form that is known here")
    time = place + len(entry)
    return data[:16] + bytes(4) + data[20:time] + bytes(4) + data[time + 4:]


def keep_book(book, manuals, work):
    """Leaves the pages of one help file and the pictures in them, and no link out of it."""
    wanted = {*BOOKS[book]["pages"], book}
    shown = set()

    def inner_link(link):
        return link.group(0) if link.group(1) in wanted else link.group(2)

    for page in work.glob("*/*.html"):
        if page.stem not in wanted:
            page.unlink()
            continue
        manual = manuals[page.parent.name]
        text = manual.contents(book) if page.stem == book else manual.page(page.stem, book)
        text = re.sub(r'<a href="([A-Za-z-]+)\.html">(.*?)</a>', inner_link, text)
        page.write_bytes(ascii_bytes(text))
        shown |= set(re.findall(r'src="\.\./([^"]+)"', text))
    for picture in work.glob("pictures/*/*"):
        if str(picture.relative_to(work)) not in shown:
            picture.unlink()


def compile_book(book, manuals, pages, chmcmd, work, out):
    shutil.rmtree(work, ignore_errors=True)
    shutil.copytree(pages, work)
    keep_book(book, manuals, work)
    files = sorted(str(path.relative_to(work)) for path in work.rglob("*") if path.is_file())
    write_project(book, manuals, work, files)
    result = subprocess.run([chmcmd, "--no-html-scan", f"{book}.hhp"], cwd=work,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    compiled = work / f"{book}.chm"
    if result.returncode != 0 or not compiled.is_file():
        sys.exit(f"{chmcmd} failed:\n{result.stdout}")
    (out / compiled.name).write_bytes(without_times(compiled.read_bytes()))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--out", type=pathlib.Path, required=True)
    parser.add_argument("--work", type=pathlib.Path, required=True)
    parser.add_argument("--chmcmd", default="")
    arguments = parser.parse_args()

    manuals = {language: Manual(language) for language in LANGUAGES}
    write_pages(manuals, arguments.out / "help")
    missing = sum(len(manual.missing_pictures) for manual in manuals.values())
    if missing > 0:
        print(f"manual: {missing} pictures are not there and left out")
    if arguments.chmcmd:
        for book in BOOKS:
            compile_book(book, manuals, arguments.out / "help", arguments.chmcmd,
                         arguments.work / book, arguments.out)


if __name__ == "__main__":
    main()
