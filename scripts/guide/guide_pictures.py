"""Takes the pictures of the user guide and of README.md; scripts/guide-pictures.sh
prepares the screen and the network and calls it once for each language.

The script uses the program by keyboard, mouse and accessibility bus, as the tour does. It names the
widgets by their English texts and looks up their texts on the screen in the language's .ts file.
"""

import csv
import os
import re
import shlex
import subprocess
import sys
import time
import xml.etree.ElementTree as ET
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent.parent / "tour"))
import screen  # noqa: E402
from screen import Atspi, NotSeen, keys, type_text, wait_active, wait_for, wait_gone, xdotool  # noqa: E402

# The program's scale on this screen, and the screen's size in the program's own pixels.
SCALE = 2
WIDTH, HEIGHT = 1040, 650
# Parts of the screen with about the proportions of the pictures in the guide.
PART_WIDTH = 800
MENU_WIDTH, MENU_HEIGHT = 600, 488
DIALOG_TOP = 180
# The README shows its pictures small, so they keep only this share of the screen's pixels. The guide's
# pictures keep all pixels, because the guide is large on a large screen.
README_PART = 0.75
COLORS = 96
ROLES = {"Password": "password text"}
RING = "#f97316"
RING_GAP = 4

FIRST_MAC = 0x0200A7100001
FIRST_USER = 2001
LIST_HEADER = ["MAC", "Product Model", "SIP Server", "SIP User ID", "Primary Account",
               "Authentication ID", "Password", "City", "Company", "Department", "Random Port",
               "Gateway IP", "Dial Plan", "Speech Coding1", "Speech Coding2"]
DEVICES = {
    "en": [
        ("KTP21XX", "Reception", "Boston", "Office"),
        ("KTP2200", "A. Miller", "Boston", "Sales"),
        ("KTP2200", "B. Carter", "Boston", "Sales"),
        ("KTV32XX", "Room 101", "Boston", "Office"),
        ("KTV32XX", "Room 102", "Boston", "Office"),
        ("KTP16XX", "Workshop", "Austin", "Production"),
        ("DK71X", "Store", "Austin", "Production"),
        ("DK71X", "Porter", "Austin", "Security"),
        ("KTP2200", "C. Jones", "Austin", "Sales"),
        ("KTV31XX", "Room 201", "Austin", "Office"),
    ],
    "zh": [
        ("KTP21XX", "8001", "杭州", "行政部"),
        ("KTP2200", "8002", "杭州", "销售部"),
        ("KTP2200", "8003", "杭州", "销售部"),
        ("KTV32XX", "8004", "杭州", "行政部"),
        ("KTV32XX", "8005", "杭州", "行政部"),
        ("KTP16XX", "8006", "苏州", "生产部"),
        ("DK71X", "8007", "苏州", "生产部"),
        ("DK71X", "8008", "苏州", "保安部"),
        ("KTP2200", "8009", "苏州", "销售部"),
        ("KTV31XX", "8010", "苏州", "行政部"),
    ],
}
COMPANY = {"en": "Oakfield", "zh": "橡园贸易"}
SERVER = "sip.example"
# The text typed into the search box of the departments.
SEARCHED = {"en": "Sales", "zh": "销售"}
NEW_ACCOUNT = {"en": "E. Stone", "zh": "8011"}
# The folder in the path fields while their picture is taken.
SHOWN_FOLDER = "/home/office/telephones"


def mac_of(index):
    text = f"{FIRST_MAC + index:012X}"
    return ":".join(text[i:i + 2] for i in range(0, 12, 2))


class Texts:
    """The program's texts in one language, as a screen reader gets them."""

    def __init__(self, root, language):
        self._translations = {}
        for context in ET.parse(root / "language" / f"{language}.ts").iter("context"):
            for message in context.iter("message"):
                key = context.findtext("name"), message.findtext("source")
                self._translations[key] = message.findtext("translation")

    def __call__(self, context, source):
        text = self._translations.get((context, source)) or source
        return re.sub("&(.)", r"\1", text)


class Pictures:
    def __init__(self, root, out, language):
        self.root = root
        self.out = out
        self.language = language
        self.text = Texts(root, language)
        self.title = self.text("MainWindow", "Velloran Device Management Tool")
        self.screen = screen.Screen("VlManager", out, SCALE)
        guide = root / "resource" / "UserGuide"
        self.guide = guide if language == "en" else guide / "chinese"
        self.readme = root / "docs" / "pictures"
        for folder in (self.guide, self.readme):
            folder.mkdir(parents=True, exist_ok=True)
        self.program = None

    # What is on the screen

    def start(self):
        folder = self.out / "program"
        (folder / "language" / "config.xml").write_text(
            f"<root>\n    <Language>{self.language}</Language>\n</root>\n", encoding="utf-8")
        environment = dict(os.environ, QT_SCALE_FACTOR=str(SCALE))
        with open(self.out / "program.log", "w", encoding="utf-8") as log:
            self.program = subprocess.Popen([str(folder / "VlManager")], env=environment,
                                            stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        wait_active(self.title)

    def find(self, role, context, source, window=None):
        return self.screen.find(role, self.text(context, source), window or self.title)

    def command(self, source):
        """One of the buttons above the list."""
        return self.find("push button", "CommandBar", source)

    def cells(self):
        return self.screen.names("table cell", self.title)

    def wait_dialog(self, context, source, left):
        """Waits for a dialog and moves it to its place in the picture."""
        title = self.text(context, source)
        wait_active(title)
        xdotool("windowmove", "--sync", screen.windows(title)[0], left * SCALE, DIALOG_TOP * SCALE)
        return title

    def close_dialog(self, title):
        keys("Escape")
        wait_gone(title)

    def fill(self, context, labels, window):
        for label, text in labels:
            field = self.find(ROLES.get(label, "text"), context, label, window)
            self.screen.click(field)
            keys("ctrl+a")
            type_text(text)
            if label not in ROLES:  # the bus does not give the text of a password field
                wait_for(f'"{label}" to hold {text!r}', lambda: self.content(field) == text)

    @staticmethod
    def content(field):
        return Atspi.Text.get_text(field, 0, Atspi.Text.get_character_count(field))

    # The pictures

    def take(self, path, part=None, ring=None, kept=1.0):
        """Saves the screen, or part of it (x, y, width, height), with a ring around a place."""
        xdotool("mousemove", 0, HEIGHT * SCALE - 1)  # hides the pointer and ends any hover effect
        time.sleep(0.8)
        raw = self.out / f"{path.stem}-raw.png"
        subprocess.run(["import", "-window", "root", str(raw)], check=True)
        command = ["convert", str(raw)]
        if ring:
            x, y, width, height = (value * SCALE for value in ring)
            gap = RING_GAP * SCALE
            command += ["-fill", "none", "-stroke", RING, "-strokewidth", "6", "-draw",
                        f"roundrectangle {x - gap},{y - gap} {x + width + gap},{y + height + gap} "
                        "16,16"]
        if part:
            x, y, width, height = (int(value * SCALE) for value in part)
            command += ["-crop", f"{width}x{height}+{x}+{y}", "+repage"]
        command += ["-filter", "Lanczos", "-resize", f"{kept * 100}%", "-dither", "None",
                    "-colors", str(COLORS), "-strip", "-define", "png:compression-level=9",
                    "-define", "png:exclude-chunks=date,time", f"PNG8:{path}"]
        subprocess.run(command, check=True)

    def guide_picture(self, name, ring, left=0, width=PART_WIDTH, height=HEIGHT):
        self.take(self.guide / f"{name}.png", (left, 0, width, height), ring)

    def readme_picture(self, name):
        self.take(self.readme / f"{name}-{self.language}.png", kept=README_PART)

    # The steps

    def run(self):
        self.start()
        self.import_list()
        self.path_pages()
        self.search()
        self.new_device()
        self.new_devices()
        self.edit_device()
        self.menus()
        self.services()

    def list_file(self):
        folder = Path(os.environ["HOME"]) / self.language
        folder.mkdir()
        file = folder / "devices.csv"
        with open(file, "w", encoding="utf-8", newline="") as opened:
            rows = csv.writer(opened)
            rows.writerow(LIST_HEADER)
            for i, (product, account, city, department) in enumerate(DEVICES[self.language]):
                number = str(FIRST_USER + i)
                rows.writerow([mac_of(i), product, SERVER, number, account, number,
                               "secret", city, COMPANY[self.language], department, "No", "", "", "PCMU", "PCMA"])
        return file

    def import_list(self):
        file = self.list_file()
        self.path_page("i", "ImportPage", "Import file", str(file))
        keys("Return")
        wait_for("the imported devices", lambda: mac_of(0) in self.cells())
        wait_for("the page to go away",
                 lambda: not self.screen.sees("text", self.text("ImportPage", "Import file")))
        self.readme_picture("main-window")

    def path_page(self, key, context, label, path):
        keys(f"ctrl+{key}")
        self.find("text", context, label)
        type_text(path)

    def path_pages(self):
        self.path_page("i", "ImportPage", "Import file", f"{SHOWN_FOLDER}/devices.csv")
        self.guide_picture("import", self.page_button("ImportPage", "Import"), width=WIDTH)
        self.readme_picture("import")
        keys("Escape")
        self.path_page("e", "ExportPage", "Export to", SHOWN_FOLDER)
        self.guide_picture("export", self.page_button("ExportPage", "Export"), width=WIDTH)
        keys("Escape")
        wait_for("the page to go away",
                 lambda: not self.screen.sees("text", self.text("ExportPage", "Export to")))

    def page_button(self, context, source):
        """The page's button. The button above the list has the same name and comes before it."""
        named = list(self.screen.all("push button", self.text(context, source), self.title))
        return self.screen.place(named[-1])

    def search(self):
        name = self.text("SearchBar", "Search %1").replace(
            "%1", self.text("ContactTitle", "Department"))
        edit = self.screen.find("text", name, self.title)
        self.screen.click(edit)
        # There is no key for a Chinese character.
        Atspi.EditableText.set_text_contents(edit, SEARCHED[self.language])
        self.guide_picture("search", self.screen.place(edit), left=WIDTH - PART_WIDTH)
        keys("ctrl+a", "Delete")

    def new_device(self):
        ring = self.screen.place(self.command("New"))
        keys("ctrl+n")
        title = self.wait_dialog("DeviceFlow", "New Device", 140)
        type_text("10000b")
        self.fill("ContactDialog", [("Account", NEW_ACCOUNT[self.language]),
                                    ("SIP Server", SERVER), ("SIP User ID", "2011"),
                                    ("Authentication ID", "2011"), ("Password", "secret")], title)
        self.guide_picture("new_device", ring)
        self.readme_picture("device-dialog")
        self.close_dialog(title)

    def new_devices(self):
        ring = self.screen.place(self.command("News"))
        keys("ctrl+t")
        title = self.wait_dialog("DeviceFlow", "New Devices", 140)
        self.fill("ContactsDialog", [("Product Count", "20"), ("Law of increasing MAC", "1"),
                                     ("Law of increasing User ID", "1"),
                                     ("SIP Server", SERVER),
                                     ("First SIP User ID", "3001")], title)
        part = self.text("IpLine", "%1 %2 of %3")
        for place, number in (("%1", self.text("ContactsDialog", "First MAC")), ("%2", "4"),
                              ("%3", "6")):
            part = part.replace(place, number)
        self.screen.click_on("text", part, title)
        type_text("100020")
        self.guide_picture("new_devices", ring)
        self.close_dialog(title)

    def edit_device(self):
        eye = self.find("table cell", "ContactTitle", "Detail")
        ring = self.screen.place(eye)
        self.screen.click(eye)
        title = self.wait_dialog("DeviceFlow", "Overview && Edit", WIDTH - PART_WIDTH + 16)
        self.guide_picture("edit", ring, left=WIDTH - PART_WIDTH)
        self.close_dialog(title)

    def menus(self):
        for name, menu in (("language", "&Language"), ("options", "&Options")):
            item = self.find("menu item", "MainMenu", menu)
            self.screen.click(item)
            self.guide_picture(name, self.screen.place(item), width=MENU_WIDTH, height=MENU_HEIGHT)
            keys("Escape", "Escape")

    def services(self):
        x, y, _, height = self.screen.place(self.command("&Open HTTPD"))
        last = self.command("&Enable PNP Server")
        self.screen.click(self.command("&Open HTTPD"))
        chooser = self.text("NetCardSelectDialog", "Select avaliable NIC")
        wait_active(chooser)
        if os.environ.get("TOUR_SERVER"):
            card = self.screen.find("radio button", "tour0", chooser)
            self.screen.click(card, on_sign=True)
        keys("Return")
        wait_gone(chooser)
        self.command("&Close HTTPD")
        self.screen.click(last)
        self.command("&Disable PNP Server")
        self.ask_for_files()
        last_x, _, last_width, _ = self.screen.place(self.command("&Disable PNP Server"))
        self.guide_picture("services", (x, y, last_x + last_width - x, height), width=WIDTH)

    def ask_for_files(self):
        """Two phones fetch their documents, so that the report box has something to show."""
        phone = shlex.split(os.environ.get("TOUR_PHONE", ""))
        for i in (0, 1):
            bare = mac_of(i).replace(":", "").lower()
            subprocess.run([*phone, "curl", "-s", "-o", "/dev/null", "--max-time", "10",
                            "-A", f"Velloran {DEVICES[self.language][i][0]} 1.0.4.9 {mac_of(i)}",
                            f"http://{os.environ.get('TOUR_SERVER') or '127.0.0.1'}/cfg{bare}.xml"])


def main():
    root, out, language = Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3]
    pictures = Pictures(root, out, language)
    try:
        pictures.run()
    except NotSeen as missing:
        print(f"guide-pictures: timed out waiting for {missing}", file=sys.stderr)
        pictures.screen.shot("in-vain")
        pictures.screen.dump(out / "widgets.txt")
        return 1
    finally:
        if pictures.program:
            pictures.program.kill()
            pictures.program.wait()
    return 0


if __name__ == "__main__":
    sys.exit(main())
