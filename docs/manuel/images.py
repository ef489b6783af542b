#!/usr/bin/python3
"""Takes the pictures of the manual; started by images.sh, on an X server and a bus of its own.

    images.py FOLDER-OF-THE-PROGRAMS FOLDER-FOR-WORK [NAME...]

Each picture is a function of its name. The program runs with the light default theme, at two pixels a
point, and is driven by keys and clicks. Where things are is asked of the accessibility tree, so that
a crop follows the window when its layout changes. The form takes the settings of the case of the
tests that the manual shows beside the picture, as a PARAM.INI.
"""
import os
import re
import shutil
import subprocess
import sys
import time
from pathlib import Path

import gi
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

ROOT = Path(__file__).resolve().parents[2]
IMAGES = Path(__file__).resolve().parent / "images"
DATA = ROOT / "tests" / "data"
SCALE = 2  # pixels a point
RED = "#c0182b"

# What the companion is shown with: one of most things that it repairs.
UNPREPARED = """\
0 HEAD
1 SOUR ANCIEN
1 CHAR ANSI
0 @U1@ SUBM
0 @I1@ INDI
1 NAME Zoé /LEFÈVRE/
1 BIRT
3 DATE 6 MAR 1812
1 NOTE Baptisée le lendemain,
marraine Thérèse Dubois
0 @P2@ INDI
  1 NAME Jérôme /LEFÈVRE/
1 BIRT
2 OBJE
3 FILE photos/jerome.jpg
0 @N1@ NOTE
1 CONC Relevés faits à Tours
"""


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def wait_for(answer, what):
    """The first true result of answer, which is asked for ten seconds."""
    end = time.monotonic() + 10
    while time.monotonic() < end:
        result = answer()
        if result:
            return result
        time.sleep(0.1)
    sys.exit(f"images: no {what}")


def keys(*names):
    run("xdotool", "key", "--delay", "60", *names)


def typed(text):
    run("xdotool", "type", "--delay", "15", text)


class Area:
    """A rectangle of a window, in points."""

    def __init__(self, left, top, right, bottom):
        self.left, self.top, self.right, self.bottom = left, top, right, bottom

    def grown(self, by):
        return Area(self.left - by, self.top - by, self.right + by, self.bottom + by)

    def united(self, other):
        return Area(min(self.left, other.left), min(self.top, other.top),
                    max(self.right, other.right), max(self.bottom, other.bottom))


def area(node):
    """Where a node is, in its window."""
    place = node.get_extents(Atspi.CoordType.SCREEN)
    return Area(place.x, place.y, place.x + place.width, place.y + place.height)


class Program:
    """A program at work in a folder of its own, with a PARAM.INI of the given lines."""

    def __init__(self, programs, work, settings=(), program="varlune", arguments=()):
        self.folder = Path(work) / "programme"
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir()
        executable = shutil.copy(Path(programs) / program, self.folder)
        (self.folder / "PARAM.INI").write_text("\n".join(settings) + "\n", encoding="utf-8")
        (self.folder / "SEQUENCE.INI").write_text("", encoding="utf-8")
        environment = dict(os.environ, QT_QPA_PLATFORM="xcb", QT_QPA_PLATFORMTHEME="",
                           QT_STYLE_OVERRIDE="Fusion", QT_SCALE_FACTOR=str(SCALE),
                           QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", LC_ALL="C.UTF-8", HOME=str(work))
        self.process = subprocess.Popen([executable, *arguments], cwd=self.folder, env=environment,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()

    def windows(self):
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            program = desktop.get_child_at_index(index)
            if program and program.get_process_id() == self.process.pid:
                return [program.get_child_at_index(i) for i in range(program.get_child_count())]
        return []

    def window(self, title):
        """The identifier of the window whose title matches; it has the keys from now on."""
        found = wait_for(lambda: subprocess.run(
            ("xdotool", "search", "--all", "--onlyvisible", "--pid", str(self.process.pid),
             "--name", title), check=False, capture_output=True, text=True).stdout.split(),
            f"window {title}")[-1]

        def active():
            run("xdotool", "windowfocus", found)
            time.sleep(0.2)
            return [window for window in self.windows() if window and re.search(title, window.get_name())
                    and window.get_state_set().contains(Atspi.StateType.ACTIVE)]
        wait_for(active, f"keys for the window {title}")
        return found

    def find(self, fits, what):
        """The first widget that fits, in any window."""
        def search(node):
            if node is None:
                return None
            if fits(node):
                return node
            if node.get_role_name() == "tree":
                return None  # its rows are many, and have a query of their own
            for index in range(node.get_child_count()):
                found = search(node.get_child_at_index(index))
                if found:
                    return found
            return None

        def anywhere():
            for window in self.windows():
                found = search(window)
                if found:
                    return found
            return None
        return wait_for(anywhere, what)

    def node(self, name):
        return self.find(lambda node: node.get_name() == name, f"widget {name}")

    def area(self, name):
        return area(self.node(name))

    def click(self, name):
        place = self.area(name)
        self.click_at((place.left + place.right) / 2, (place.top + place.bottom) / 2)

    def click_at(self, x, y):
        run("xdotool", "mousemove", str(int(x * SCALE)), str(int(y * SCALE)), "click", "1",
            "mousemove", "2599", "2399")
        time.sleep(0.3)

    def point_at(self, place):
        """Rests the pointer there until the tool tip shows."""
        x, y = int((place.left + 20) * SCALE), int((place.top + 6) * SCALE)
        run("xdotool", "mousemove", str(x - 4), str(y), "mousemove", str(x), str(y))
        time.sleep(1.5)

    def open(self, file, refused=False):
        """Opens a file by the menu, as a user without a mouse does, and waits for its end."""
        self.window("^Varlune v")
        keys("alt", "Down", "Return")
        self.window("^Ouvrir un fichier")
        self.find(lambda node: node.get_role_name() == "text"
                  and node.get_state_set().contains(Atspi.StateType.FOCUSED), "field of the dialog")
        typed(str(file))
        keys("Return")
        if not refused:
            self.row("personnes")
            time.sleep(0.5)

    def rows(self):
        """The rows of the tree that are on screen, each a list of (text, area) of its cells."""
        tree = self.node("Lignes du fichier GEDCOM")
        view = area(tree)
        rows = {}
        for index in range(tree.get_child_count()):
            cell = tree.get_child_at_index(index)
            place = area(cell)
            if place.top > view.bottom:
                break
            if cell.get_name() and view.top <= place.top < place.bottom <= view.bottom:
                rows.setdefault(place.top, []).append((cell.get_name(), place))
        return [rows[top] for top in sorted(rows)]

    def row(self, text, below=0):
        """Where the first row is that has this text in a cell, from this height on."""
        def find():
            for cells in self.rows():
                if cells[0][1].top >= below and text in [name for name, _ in cells]:
                    return cells[0][1].united(cells[-1][1])
            return None
        return wait_for(find, f"row {text}")

    def unfold(self, *texts):
        """Opens a row of the tree, then one below it, and so on, by the keyboard."""
        below = 0
        for text in texts:
            place = self.row(text, below)
            self.click_at(place.left + 20, place.top + 5)
            keys("Right")
            time.sleep(0.3)
            below = place.bottom

    def widened(self, width, height=967, title="^Varlune v"):
        """The main window, of this size in points."""
        window = self.window(title)
        run("xdotool", "windowsize", "--sync", window, str(width * SCALE), str(height * SCALE))
        time.sleep(0.5)
        return window

    def take(self, picture, window, crop=None, marks=(), folder=IMAGES):
        """Takes a window, its crop of this area, with a frame around each mark and its number."""
        raw = Path(self.folder) / "raw.png"
        target = Path(folder) / f"{picture}.png"
        run("import", "-window", window, str(raw))
        draw = []
        for number, mark in enumerate(marks, 1):
            left, top, right, bottom = (int(SCALE * side) for side in
                                        (mark.left, mark.top, mark.right, mark.bottom))
            draw += ["-fill", "none", "-stroke", RED, "-strokewidth", "4", "-draw",
                     f"roundrectangle {left},{top} {right},{bottom} 8,8"]
            if len(marks) > 1:
                draw += ["-fill", RED, "-stroke", "white", "-strokewidth", "3", "-draw",
                         f"circle {right - 6},{max(top + 4, 20)} {right - 6},{max(top + 4, 20) - 18}",
                         "-fill", "white", "-stroke", "none", "-font", "DejaVu-Sans-Bold",
                         "-pointsize", "22", "-draw",
                         f"text {right - 6 - 7},{max(top + 4, 20) + 8} '{number}'"]
        cut = []
        if crop:
            left, top = max(0, int(SCALE * crop.left)), max(0, int(SCALE * crop.top))
            cut = ["-crop", f"{int(SCALE * crop.right) - left}x{int(SCALE * crop.bottom) - top}"
                            f"+{left}+{top}", "+repage"]
        run("convert", str(raw), *draw, *cut, "-strip", "-define", "png:color-type=2", str(target))
        run("optipng", "-quiet", "-o2", "-nc", "-nb", str(target))  # -nc: stays true colour
        print(target.relative_to(ROOT))


def settings_of(case):
    """The lines of a PARAM.INI with what the first step of a case puts into the form."""
    separator = ""
    for line in (DATA / f"{case}.sequence").read_text(encoding="utf-8").splitlines():
        if line.startswith("separator="):
            separator = line.removeprefix("separator=")
        elif line and line[0] not in ";#":
            return line.split(separator)
    sys.exit(f"images: no step in {case}")


class Pictures:
    """One method a picture; its name is that of the file, with _ for -."""

    def __init__(self, programs, work):
        self.programs, self.work = programs, work
        self.sample = Path(work) / "famille.ged"
        shutil.copy(ROOT / "exemples" / "famille.ged", self.sample)

    def _program(self, settings=()):
        return Program(self.programs, self.work, settings)

    # ---- the window

    def fenetre(self):
        with self._program(settings=["delTags=true", "delTagsList=_UID;CHAN"]) as varlune:
            varlune.open(self.sample)
            window = varlune.widened(1060)
            varlune.unfold("personnes", "@I1@", "BIRT")
            varlune.take("fenetre", window, folder=ROOT / "docs")
            apply, play = (varlune.area(name) for name in
                           ("Appliquer les modifications", "Jouer la séquence"))
            menus = varlune.area("Fichier").united(varlune.area("Aide"))
            menus.right += 20
            tree = varlune.area("Lignes du fichier GEDCOM")
            review = varlune.area("Filtrer l'arbre").united(
                varlune.area("Sources utilisées plusieurs fois"))
            form = varlune.area("Opérations sur le fichier")
            status = Area(4, form.bottom + 8, form.right, form.bottom + 34)
            form.bottom = apply.top - 8
            varlune.take("fenetre", window, marks=[menus, tree.grown(-2), review.grown(2), form.grown(-2),
                                                   apply.united(play).grown(4), status])

    def arbre(self):
        with self._program() as varlune:
            varlune.open(self.sample)
            window = varlune.widened(1060)
            varlune.unfold("personnes", "@I1@", "BIRT")
            tree = varlune.area("Lignes du fichier GEDCOM")
            section = varlune.row("personnes")
            first, last = varlune.row("@I1@").bottom, varlune.row("@I2@").top
            inside = [cells for cells in varlune.rows() if first <= cells[0][1].top < last]
            columns = []
            for column in range(3):
                places = [cells[column][1] for cells in inside if len(cells) > column]
                columns.append(Area(min(place.left for place in places) - 2, places[0].top,
                                    max(place.right for place in places) - 6, places[-1].bottom))
            columns[2].right = tree.right - 24
            columns[2].bottom = columns[0].bottom
            tree.bottom = columns[0].bottom + 30
            section = Area(section.left - 22, section.top, tree.right - 24, section.bottom)
            varlune.take("arbre", window, tree, marks=[section, *columns])

    def pipette_piege(self):
        with self._program(settings=["delTags=true"]) as varlune:
            varlune.open(self.sample)
            window = varlune.window("^Varlune v")
            varlune.unfold("personnes", "@I1@")
            row = varlune.row("@I1@")
            row.right = varlune.area("Lignes du fichier GEDCOM").right - 24
            varlune.click_at(row.left + 60, row.top + 5)
            varlune.click("Choisir dans l'arbre la balise à supprimer")
            group = varlune.area("Supprimer les balises")
            strip = Area(0, 24, group.right + 14, group.bottom + 8)
            varlune.take("pipette-piege", window, strip, marks=[
                row.grown(1), varlune.area("Choisir dans l'arbre la balise à supprimer").grown(2),
                varlune.area("Balises à supprimer").grown(2)])

    # ---- the form, with the settings of a case

    def _form(self, picture, case, group):
        with self._program(settings=settings_of(case)) as varlune:
            varlune.open(self.sample)
            window = varlune.window("^Varlune v")
            varlune.take(picture, window, varlune.area(group).grown(6))

    def form_espacement(self):
        self._form("form-espacement", "espacement/manuel-espacement", "Espacer les Prénoms/NOMS/")

    def form_suppression(self):
        self._form("form-suppression", "suppression/manuel-suppression", "Supprimer les balises")

    def form_liens_medias(self):
        self._form("form-liens-medias", "liens-medias/manuel-liens-medias",
                   "Générer les URL des médias sources")

    def form_liens_cliquables(self):
        self._form("form-liens-cliquables", "liens/manuel-liens-cliquables",
                   "Rendre les liens cliquable")

    def form_chemins(self):
        self._form("form-chemins", "chemins/manuel-chemins", "Changer le chemin des médias")

    def form_deplacement(self):
        self._form("form-deplacement", "deplacement/manuel-deplacement",
                   "Copier / Déplacer des balises")

    def form_remplacement(self):
        self._form("form-remplacement", "remplacement/manuel-remplacement", "Remplacer du texte")

    # ---- the other windows

    def journal(self):
        """The end of the journal of the deletion in the first chapter."""
        with self._program(settings=["delTags=true", "delTagsList=INDI._UID"]) as varlune:
            varlune.open(self.sample)
            varlune.click("Appliquer les modifications")
            window = varlune.window("^Journal$")
            keys("ctrl+End")
            time.sleep(0.3)
            varlune.take("journal", window, Area(0, 540, 900, 800))

    def journal_lignes(self):
        case = "journal/manuel-journal"
        with self._program(settings=settings_of(case)) as varlune:
            document = Path(self.work) / "arbre.ged"
            shutil.copy(DATA / f"{case}.avant.ged", document)
            varlune.open(document)
            varlune.click("Appliquer les modifications")
            varlune.window("^Erreur$")
            keys("Return")
            varlune.take("journal-lignes", varlune.window("^Journal$"), Area(0, 0, 900, 262))

    def boite_refus(self):
        document = Path(self.work) / "arbre.ged"
        document.write_text("0 HEAD\n1 CHAR UTF-8\n0 @U1@ SUBM\n0 TRLR\n", encoding="utf-8")
        with self._program() as varlune:
            varlune.open(document, refused=True)
            varlune.take("boite-refus", varlune.window("^Erreur$"))

    # ---- the review tools

    def _review(self, picture, tool, act, tip=""):
        """The tree and the tools below it, after an act of review, with all that is left unfolded."""
        with self._program() as varlune:
            varlune.open(self.sample)
            window = varlune.widened(1060, 640)
            act(varlune)
            section = varlune.row("personnes")
            varlune.click_at(section.left + 20, section.top + 5)
            keys("asterisk", "Home")
            time.sleep(0.5)
            if tip:
                varlune.point_at(varlune.row(tip))
                window = "root"
            tree = varlune.area("Lignes du fichier GEDCOM")
            status = varlune.area("Sources utilisées plusieurs fois").bottom + 6
            varlune.take(picture, window, Area(0, tree.top - 6, tree.right + 10, 640), marks=[
                varlune.area(tool).grown(3), Area(3, status, tree.right, 637)])

    def recherche(self):
        def search(varlune):
            varlune.click("Filtrer l'arbre")
            typed("tisserand")
            keys("Return")
        self._review("recherche", "Filtrer l'arbre", search)

    def filtre_dates(self):
        tool = "Sources dont la date diffère de celle de l'évènement (Sources!=date)"
        self._review("filtre-dates", tool, lambda varlune: varlune.click(tool), "@S91@")

    def filtre_multiusage(self):
        tool = "Sources utilisées plusieurs fois"
        self._review("filtre-multiusage", tool, lambda varlune: varlune.click(tool))

    # ---- the companion

    def preparer(self):
        document = Path(self.work) / "arbre.ged"
        document.write_text(UNPREPARED, encoding="cp1252")
        with Program(self.programs, self.work, program="preparation/varlune-preparer",
                     arguments=[document]) as companion:
            window = companion.widened(1100, 500, "^Préparer pour Varlune$")

            def begins(text):
                return area(companion.find(lambda node: node.get_name().startswith(text), text))
            verdict = begins("Varlune ouvrira ce fichier")
            verdict.right -= 12  # its number stands clear of the buttons
            companion.click("marraine Thérèse Dubois")
            found = begins("Trouvé dans le fichier").united(
                companion.area("Réparations et avertissements"))
            listed = begins("Liste : ").united(companion.area("Ligne choisie dans la liste"))
            companion.take("preparer", window, marks=[
                companion.area("Choisir un fichier…").united(companion.area("Fichier choisi")).grown(2),
                companion.area("Codage :").united(begins("Windows-1252 : ")).grown(1), verdict,
                found.grown(2), listed.grown(2),
                companion.area("Enregistrer la copie…").united(
                    companion.area("Enregistrer le rapport…")).grown(2)])


def main():
    programs, work, *names = sys.argv[1:]
    Atspi.init()
    pictures = Pictures(programs, work)
    for name in names or [name for name in vars(Pictures) if not name.startswith("_")]:
        getattr(pictures, name.replace("-", "_"))()


if __name__ == "__main__":
    main()
