#!/usr/bin/env python3
"""Holds the manual in docs/manuel against the program.

    tests/manual.py FOLDER     which receives the page of HTML

Checked: its links and anchors, its pictures and their texts, that each text of the program that it
quotes, as **"..."**, stands in the sources, that each key of the .INI files and each label of the
form is told, its figures of speed, its spelling, and that nothing makes the page wider than a phone.
"""
import html
import html.parser
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
MANUAL = ROOT / "docs" / "manuel"
CHAPTERS = sorted(MANUAL.glob("[0-9][0-9]-*.adoc"))

# The rows of the chapter on limits, and the rows of docs/performance.md that they come from.
MEASURED = {
    "ouvrir": "load",
    "rattacher les `CONC`": "CONC folding, 5.5 % of the lines",
    "supprimer une ligne sur cent": "deletion, 1 %",
    "remplacer un texte dans toutes les lignes": "replacement, every line",
    "écrire un lien pour chaque média": "links, every media",
    "déplacer une balise de chaque personne": "move, every person",
    "chercher": "search, none",
    "filtrer par les dates des sources": "date filter, on",
    "jouer une séquence de dix étapes": "a sequence of ten steps",
    "enregistrer": "save, 1 % of the lines to cut, 5.5 % hidden",
}

faults = []


def fault(text):
    faults.append(text)


def plain(text):
    """A text with one kind of blank and without line breaks."""
    return re.sub(r"[\n\r]+ *", " ", text.replace("\u00a0", " "))


# ---- what the program says

LITERALS = r'(?:"(?:\\.|[^"\\])*"\s*)+'


def literal(text):
    """The value of C++ string literals that stand side by side."""
    joined = "".join(re.findall(r'"((?:\\.|[^"\\])*)"', text))
    return joined.replace("\\r\\n", " ").replace("\\n", " ").replace('\\"', '"').replace("\\\\", "\\")


def without_markup(text):
    return html.unescape(re.sub(r"<[^>]*>", "", text))


def sources():
    for folder in ("src", "preparation"):
        yield from sorted((ROOT / folder).glob("**/*.cpp"))


def program_texts():
    texts = set()
    for file in sources():
        for found in re.finditer(rf'\b(?:tr|translate)\(\s*(?:"\w+",\s*)?({LITERALS})',
                                 file.read_text(encoding="utf-8")):
            texts.add(without_markup(literal(found[1])).strip())
    return texts


def template(text):
    """The expression of all that the program can make of a text: %1 stands for anything."""
    pieces = re.split(r"%\d", plain(text).replace("&", ""))
    return re.compile(".*".join(re.escape(piece) for piece in pieces).strip() or "(?!)")


def check_quotes():
    templates = [template(text) for text in program_texts() if re.sub(r"%\d|\W", "", text)]
    for chapter in [*CHAPTERS, MANUAL / "manuel.adoc"]:
        for found in re.finditer(r'\*\*"(.+?)"\*\*', chapter.read_text(encoding="utf-8"), re.DOTALL):
            quote = plain(found[1]).replace("\\", "").replace("&", "").strip()
            # A quote may leave out what comes at the end, behind a blank.
            if not any(one.fullmatch(quote) or one.fullmatch(quote + " ") for one in templates):
                fault(f"{chapter.name}: the program does not say: {quote}")


# ---- what the manual must tell

def manual_text():
    return plain("\n".join(chapter.read_text(encoding="utf-8") for chapter in CHAPTERS))


def check_keys(text):
    window = (ROOT / "src" / "mainwindow.cpp").read_text(encoding="utf-8")
    keys = set(re.findall(r'"(\w+)="_L1', window)) | {"separator"}
    if len(keys) < 38:
        fault(f"only {len(keys)} keys found in src/mainwindow.cpp")
    for key in sorted(keys):
        if f"`{key}`" not in text and f"`{key}=" not in text:
            fault(f"the manual does not tell the key {key}")


def check_labels(text):
    form = (ROOT / "src" / "ui_mainwindow.cpp").read_text(encoding="utf-8")
    labels = {literal(found[1]) for found in re.finditer(
        rf'->set(?:Text|Title|PlaceholderText)\(\s*QCoreApplication::translate\(\s*"\w+",\s*({LITERALS})',
        form)}
    if len(labels) < 45:
        fault(f"only {len(labels)} labels found in src/ui_mainwindow.cpp")
    for label in sorted(labels):
        if f'**"{label.strip()}"**' not in text and f'**"{label}"**' not in text \
                and f"`{label}`" not in text:
            fault(f"the manual does not tell the label {label}")


def check_companion():
    """The chapter on the companion tells each of its options, repairs and warnings."""
    chapter = plain((MANUAL / "10-preparer.adoc").read_text(encoding="utf-8"))
    console, findings = (ROOT / "preparation" / name for name in ("console.cpp", "findings.cpp"))
    options = set()
    for found in re.finditer(r"m_\w+\(\s*(u\"[\w-]+\"_s|\{[^}]*\})", console.read_text(encoding="utf-8")):
        options |= set(re.findall(r'u"([\w-]+)"_s', found[1]))
    types = findings.read_text(encoding="utf-8")
    repairs = set(re.findall(r'\{Finding::\w+, (?:repair|onRequest), u"([\w-]+)"_s', types))
    titles = {literal(found[1]) for found in re.finditer(
        rf'\{{Finding::\w+, \w+, u"[\w-]+"_s,\s*tr\(({LITERALS})', types)}
    if not options or not repairs or len(titles) <= len(repairs):
        fault("no options, repairs or warnings found in preparation/")
    for option in sorted(options):
        if not re.search(rf"`{'-' * min(len(option), 2)}{option}[` ]", chapter):
            fault(f"10-preparer.adoc does not tell the option {option}")
    for repair in sorted(repairs):
        if f"`{repair}`" not in chapter:
            fault(f"10-preparer.adoc does not tell the repair {repair}")
    for title in sorted(titles):
        if f'**"{title}"**' not in chapter:
            fault(f"10-preparer.adoc does not tell what is found: {title}")


def check_figures():
    measures = {}
    for line in (ROOT / "docs" / "performance.md").read_text(encoding="utf-8").splitlines():
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if len(cells) == 9 and cells[3].replace(".", "").isdigit():
            measures[cells[0]] = (cells[3], cells[5])
    told = {}
    for line in (MANUAL / "11-limites.adoc").read_text(encoding="utf-8").splitlines():
        found = re.fullmatch(r"\| (.+?) \| (\d+,\d) s \| (\d+) Mo", plain(line))
        if found:
            told[found[1]] = (found[2].replace(",", "."), found[3])
    for row, measure in MEASURED.items():
        seconds, memory = measures[measure]
        expected = (f"{float(seconds):.1f}", memory)
        if told.pop(row, None) != expected:
            fault(f"11-limites.adoc: {row}: docs/performance.md has {' s, '.join(expected)} Mo")
    for row in told:
        fault(f"11-limites.adoc: {row}: nothing of docs/performance.md is tied to it")


# ---- the page

class Page(html.parser.HTMLParser):
    """What the page of HTML holds that the checks ask about."""

    # What stands in these is no French.
    FOREIGN = ("code", "pre", "kbd", "style", "script", "head")
    VOID = ("meta", "link", "br", "img", "col", "hr", "input")

    def __init__(self):
        super().__init__()
        self.ids, self.targets, self.alternatives, self.words = set(), [], [], []
        self.open = []

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        if attributes.get("id"):
            self.ids.add(attributes["id"])
        if tag == "a" and "href" in attributes:
            self.targets.append(attributes["href"])
        if tag == "img":
            self.alternatives.append(attributes.get("alt") or "")
            self.words.append(attributes.get("alt") or "")
        if tag not in self.VOID:
            self.open.append(tag)

    def handle_endtag(self, tag):
        if tag in self.open:
            while self.open.pop() != tag:
                pass

    def handle_data(self, data):
        quote = self.open[-1:] == ["strong"] and data.startswith('"')  # the program's own words
        if not quote and not any(tag in self.FOREIGN for tag in self.open):
            self.words.append(data)


def build(folder):
    built = subprocess.run([MANUAL / "build.sh", folder, "--html"], check=False, capture_output=True,
                           text=True)
    for line in built.stderr.splitlines():
        fault(f"asciidoctor: {line}")
    if built.returncode:
        fault("the manual cannot be built")
        return None
    page = Page()
    text = (Path(folder) / "varlune.html").read_text(encoding="utf-8")
    page.feed(text)
    page.text = text
    return page


def check_links(page):
    for target in page.targets:
        if target.startswith("#"):
            if target[1:] not in page.ids:
                fault(f"the page has no {target}")
        elif not re.match(r"(https?|mailto):", target):
            if not (MANUAL / target).exists():
                fault(f"there is no file {target}")


def check_pictures(page):
    named = {}
    for chapter in CHAPTERS:
        text = chapter.read_text(encoding="utf-8")
        # The repository's page shows a chapter alone.
        if "image::" in text and not text.startswith("ifndef::imagesdir[:imagesdir: images]\n"):
            fault(f"{chapter.name}: by itself it does not find its pictures")
        for found in re.finditer(r"image::?([\w.-]+)\[([^\]]*)\]", text):
            named[found[1]] = chapter.name
            if len(found[2].strip('"')) < 15:
                fault(f"{chapter.name}: {found[1]} has no text for those who do not see it")
    existing = {file.name for file in (MANUAL / "images").iterdir()}
    for name in sorted(set(named) - existing):
        fault(f"{named[name]}: there is no picture {name}")
    for name in sorted(existing - set(named)):
        fault(f"no chapter shows the picture {name}")
    if not all(page.alternatives):
        fault("an image of the page has no text for those who do not see it")


def check_spelling(page):
    words = MANUAL / "mots.txt"
    listed = words.read_text(encoding="utf-8").split()
    if listed != sorted(set(listed)):
        fault("mots.txt: sort it with: LC_ALL=C sort -u -o docs/manuel/mots.txt docs/manuel/mots.txt")
    text = " ".join(page.words).replace("\u2019", "'").replace("\u200b", "").replace("\u00a0", " ")
    text = re.sub(r"\S*[@_=\\/.]\w\S*|\b[\w-]*\d[\w-]*\b", " ", text)  # identifiers, paths, numbers
    unknown = subprocess.run(["hunspell", "-i", "utf-8", "-d", "fr", "-p", words, "-l"], check=True,
                             input=text, capture_output=True, text=True).stdout.split()
    for word in sorted({word.rstrip(".") for word in unknown if re.search(r"\w", word)}):
        fault(f"spelling: {word}")


def check_width(page):
    """The rules of docinfo.html by which nothing is wider than the window are in the page."""
    for rule in ("img { max-width: 100%", ".literalblock pre { overflow-x: auto", "li { overflow-wrap: anywhere",
                 "table.tableblock { display: block; overflow-x: auto"):
        if rule not in page.text:
            fault(f"the page has lost the rule: {rule}")
    if 'name="viewport" content="width=device-width' not in page.text:
        fault("the page does not follow the width of the window")


def main():
    page = build(sys.argv[1])
    text = manual_text()
    check_quotes()
    check_keys(text)
    check_labels(text)
    check_companion()
    check_figures()
    if page:
        check_links(page)
        check_pictures(page)
        check_spelling(page)
        check_width(page)
    for text in faults:
        print(text)
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
