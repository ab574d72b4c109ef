"""Goes through every window, dialog, page, menu and message box, and takes a picture of each.

It checks only that each of them appears: a person should look at the pictures. It finds widgets by
their texts, looked up in the translations, so the same code works in each language.
"""

import os
import re
import signal
import socket
import sqlite3
import subprocess
import sys
import time
import traceback
import xml.etree.ElementTree as ElementTree
from pathlib import Path

import screen
from screen import Atspi, NotSeen, keys, type_text, wait_active, wait_for, wait_gone, xdotool

ROOT = Path(__file__).resolve().parents[2]
LONGEST_WALK_S = 540
DIALOG_PATIENCE_S = 8
MENU_COUNT = 7
FULL_LIST = 60
# A point that is in the list however small the window is, in the program's own pixels.
LIST_POINT = (350, 300)
LONG_IMPORT = 100000
CSV_HEAD = ("MAC,Product Model,Primary Account,SIP Server,SIP User ID,Authentication ID,Password,"
            "Speech Coding1,Speech Coding2,Username,language,Random Port,Keep-Alive,IP,Subnet,"
            "Gateway IP,DNS Server 1,DNS Server 2,Enterprise Directory Path,Dial Plan,City,Company,"
            "Department,Proxy Server")
CITIES = ("北京", "上海", "Nürnberg", "深圳", "Llanfairpwllgwyngyllgogerychwyrndrobwll")


def translations(language):
    texts = {}
    for message in ElementTree.parse(ROOT / "language" / f"{language}.ts").iter("message"):
        texts[message.findtext("source")] = message.findtext("translation")
    return texts


def device_row(number):
    return (f"02:00:A7:{number >> 16 & 255:02X}:{number >> 8 & 255:02X}:{number & 255:02X},"
            f"KTP16XX,{3000 + number},sip.example.net,{3000 + number}" + 16 * "," +
            f"{CITIES[number % 5]},Example {number % 7},Sales,")


class Gallery:
    def __init__(self, out, language, percent):
        self.out = out
        self.texts = translations(language)
        self.percent = percent
        self.folder = out / "program"
        self.log = open(out / "program.log", "w", encoding="utf-8")
        self.screen = screen.Screen("VlManager", out)
        self.program = None
        self.missed = []

    # --- actions

    def tr(self, source):
        """The text as a screen reader gets it: without the mark of a mnemonic."""
        return self.texts[source].replace("&&", "\0").replace("&", "").replace("\0", "&")

    def start(self, ready=None):
        self.program = subprocess.Popen([str(self.folder / "VlManager")], stdin=subprocess.DEVNULL,
                                        stdout=self.log, stderr=self.log)
        title = self.tr("Velloran Device Management Tool")
        wait_for("the window", lambda: screen.windows(title))
        wait_active(ready or title)

    def stop(self):
        if self.program and self.program.poll() is None:
            self.program.kill()
            self.program.wait()

    def node(self, role, source, window=None):
        return self.screen.find(role, self.tr(source), window and self.tr(window),
                                DIALOG_PATIENCE_S)

    def press(self, source, window=None, role="push button"):
        Atspi.Action.do_action(self.node(role, source, window), 0)

    def focus(self, source, window=None, role="text"):
        Atspi.Component.grab_focus(self.node(role, source, window))

    def fill(self, source, text, window=None):
        self.focus(source, window)
        keys("ctrl+a")
        type_text(text)

    def shot(self, name):
        self.screen.shot(name)

    def box(self, title, name, answer="Return"):
        """Takes the picture of a box that appears by itself, and closes the box."""
        title = self.tr(title)
        wait_active(title)
        self.shot(name)
        if answer:
            keys(answer)
            wait_gone(title)

    def path_page(self, key, name, field, select, dialog, box):
        """The import or export page, its file dialog, and its box for an empty path."""
        keys(key)
        self.node("text", field)
        time.sleep(0.5)  # it slides in
        self.shot(f"{name}-page")
        self.press(select)
        self.box(dialog, f"{name}-dialog", "Escape")
        self.focus(field)
        keys("Return")
        self.box(box, f"{name}-nothing")

    # --- the steps

    def run(self):
        self.start()
        for step in (self.empty_list, self.menus, self.device_dialog, self.batch_dialog,
                     self.list, self.search, self.import_page, self.export_page,
                     self.deletions, self.settings, self.user_guide, self.about, self.services,
                     self.save_errors, self.backup_error, self.damaged_store,
                     self.no_network_card, self.long_import):
            try:
                step()
            except NotSeen as missing:
                self.missed.append(f"{step.__name__}: {missing}")
                self.shot(f"in-vain-{step.__name__}")
                self.screen.dump(self.out / f"widgets-{step.__name__}.txt")
                active = screen.active_title()
                self.missed[-1] += f" (instead of {active!r})"
                self.stop()
                self.start()

    def empty_list(self):
        self.shot("empty-list")

    def menus(self):
        keys("alt")
        keys("Down")
        for number in range(MENU_COUNT):
            self.shot(f"menu-{number + 1}")
            keys("Right")
        keys("Escape", "Escape")

    def device_dialog(self):
        keys("ctrl+n")
        wait_active(self.tr("New Device"))
        self.shot("new-device")
        keys("Return")
        time.sleep(0.3)
        self.shot("new-device-wrong-mac")
        self.press("Show Advance Settings", "New Device")
        self.node("push button", "Hide Advance Settings")
        self.shot("new-device-advanced")
        self.focus("Department", "New Device")
        keys("Tab")  # brings the next field into view
        self.shot("new-device-advanced-end")
        self.focus("Username", "New Device")
        keys("Tab", "Down", "space")
        self.shot("new-device-languages")
        keys("Return")
        for field in ("Account", "SIP Server", "City"):
            self.fill(field, "Reception 1", "New Device")
        self.focus_mac("MAC", "New Device")
        type_text("a1b2c3")
        keys("Return")
        wait_gone(self.tr("New Device"))
        keys("ctrl+n")
        wait_active(self.tr("New Device"))
        type_text("a1b2c3")
        keys("Return")
        self.box("Replace action", "replace-device", "Escape")
        self.box("New Device", "new-device-again", "Escape")
        wait_active(self.tr("Velloran Device Management Tool"))

    def focus_mac(self, label, window):
        segment = self.texts["%1 %2 of %3"]
        for place, text in (("%1", self.tr(label)), ("%2", "4"), ("%3", "6")):
            segment = segment.replace(place, text)
        Atspi.Component.grab_focus(self.screen.find("text", segment, self.tr(window)))

    def batch_dialog(self):
        keys("ctrl+t")
        wait_active(self.tr("New Devices"))
        self.shot("new-devices")
        self.fill("Product Count", str(FULL_LIST), "New Devices")
        self.fill("Law of increasing MAC", "1", "New Devices")
        self.fill("SIP Server", "sip.example.net", "New Devices")
        keys("Return")
        time.sleep(0.3)
        self.shot("new-devices-wrong-mac")
        self.fill("First SIP User ID", "3000", "New Devices")
        self.focus_mac("First MAC", "New Devices")
        type_text("000010")
        keys("Return")
        wait_gone(self.tr("New Devices"))

    def list(self):
        window = screen.windows(self.tr("Velloran Device Management Tool"))[0]
        xdotool("mousemove", "--window", window,
                *(part * self.percent // 100 for part in LIST_POINT))
        self.shot("list-hover")
        xdotool("click", 1)
        keys("Down", "Down")
        self.shot("list-selected")
        keys("End")
        self.shot("list-end")
        keys("Home", "Return")
        self.box("Overview && Edit", "edit-device", "Escape")

    def search(self):
        name = self.texts["Search %1"].replace("%1", self.tr("Account"))
        Atspi.Component.grab_focus(self.screen.find("text", name))
        type_text("30")
        self.shot("search")
        type_text("zz")
        self.shot("search-no-match")
        keys("ctrl+a", "BackSpace")

    def import_page(self):
        self.path_page("ctrl+i", "import", "Import file", "Select File",
                       "Open an device list file (recommended devices.csv)", "Import Box")
        wrong = self.out / "wrong.csv"
        wrong.write_text("First Name,Last Name\nAnn,Bee\n", encoding="utf-8")
        self.fill("Import file", str(wrong))
        keys("Return")
        self.box("Import Box", "import-failed")
        again = self.out / "again.csv"
        again.write_text("\n".join([CSV_HEAD, device_row(16), device_row(17)]), encoding="utf-8")
        self.node("text", "Import file")  # the page came back for another try
        time.sleep(0.5)  # it slides in
        self.fill("Import file", str(again))
        self.press("Clear list", role="check box")
        self.shot("import-adding")
        keys("Return")
        wait_active(self.tr("Replace action"))
        self.shot("import-replace-many")
        self.press("No to All", "Replace action")
        wait_gone(self.tr("Replace action"))

    def long_import(self):
        """The cover that is shown while an import runs. This comes last, because a search for a
        widget takes very long with such a long list."""
        long = self.out / "long.csv"
        long.write_text("\n".join([CSV_HEAD, *map(device_row, range(LONG_IMPORT))]),
                        encoding="utf-8")
        keys("ctrl+i")
        self.fill("Import file", str(long))
        keys("Return")
        self.shot("busy")
        self.stop()

    def export_page(self):
        self.path_page("ctrl+e", "export", "Export to", "Select path",
                       "Select a folder to export", "Export Box")
        self.fill("Export to", str(self.out / "program" / "language"))
        keys("Return")
        self.box("Export Box", "exported")
        keys("ctrl+e")
        self.fill("Export to", str(self.out / "program" / "language"))
        keys("Return")
        self.box("Replace action", "replace-file", None)
        self.press("No", "Replace action")
        wait_gone(self.tr("Replace action"))
        self.press("Cancel")

    def deletions(self):
        keys("ctrl+d")
        wait_active(self.tr("Delete All Devices"))
        self.shot("delete-all")
        self.press("Yes", "Delete All Devices")
        wait_gone(self.tr("Delete All Devices"))

    def choose_menu(self, menu, item):
        keys("alt")
        keys("Down", *["Right"] * menu, *["Down"] * item, "Return")

    def settings(self):
        self.choose_menu(4, 2)
        title = self.tr("Configure Httpd Port")
        wait_active(title)
        self.shot("port-dialog")
        self.press("Use the Default Port 80:", role="check box")
        self.fill("Custom Port (5000-65535):", "4999")
        keys("Return")
        self.box("Port Error", "port-error")
        keys("Escape")
        wait_gone(title)
        own, other = (0, 1) if self.texts["Cancel"] != "Cancel" else (1, 0)
        # Each setting is changed and changed back, so that the next start has the same settings.
        for which in ("", "-back"):
            self.choose_menu(4, 1)
            self.box("Options change", "options-change" + which)
        for language, which in ((other, ""), (own, "-back")):
            self.choose_menu(3, language)
            self.box("Language change", "language-change" + which)

    def user_guide(self):
        self.choose_menu(5, 0)
        title = self.tr("Velloran Device Management Tool Help")
        wait_active(title)
        for number in range(1, 10):
            time.sleep(0.8)
            self.shot(f"guide-{number}")
            keys("Next")
        keys("Escape")
        wait_gone(title)

    def about(self):
        self.choose_menu(6, 0)
        self.box("Velloran Device Management Tool", "about", None)
        keys("Return")

    def services(self):
        self.press("&Enable PNP Server")
        self.box("Enable PNP Server", "plug-and-play-refused")
        self.press("&Open HTTPD")
        self.box("Select avaliable NIC", "choose-card", "Escape")
        with socket.create_server(("", 80)):
            self.press("&Open HTTPD")
            self.box("Select avaliable NIC", "choose-card-again")
            self.box("Httpd Server", "port-80-taken")
            self.node("push button", "&Close HTTPD")
        self.press("&Close HTTPD")
        self.node("push button", "&Open HTTPD")
        (self.folder / "port.xml").write_text(
            "<configHttpdPort><useDefault>0</useDefault><port>5999</port></configHttpdPort>")
        with socket.create_server(("", 5999)):
            self.press("&Open HTTPD")
            self.box("Select avaliable NIC", "choose-card-once-more")
            self.box("Httpd Server", "custom-port-taken")
            self.node("push button", "&Close HTTPD")
        self.press("&Close HTTPD")
        self.node("push button", "&Open HTTPD")
        (self.folder / "port.xml").unlink()
        self.press("&Open HTTPD")
        wait_active(self.tr("Select avaliable NIC"))
        keys("Return")
        self.node("push button", "&Close HTTPD")
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as holder:
            holder.bind(("", 5060))
            self.press("&Enable PNP Server")
            self.box("Enable PNP Server", "port-5060-taken")
        self.press("&Enable PNP Server")
        self.node("push button", "&Disable PNP Server")
        for name in ("cfg0200a7000010.xml", "cfg0200a7000011.xml"):
            subprocess.run(["curl", "-s", "-o", os.devnull, "--max-time", "5", "-A",
                            "Velloran KTP16XX 1.0.4.9 02:00:a7:00:00:10",
                            f"http://127.0.0.1:80/{name}"])
        self.shot("services-running")
        self.press("&Close HTTPD")

    def save_errors(self):
        holder = sqlite3.connect(self.folder / "phonebook.db")
        holder.execute("begin exclusive")
        try:
            keys("ctrl+n")
            wait_active(self.tr("New Device"))
            type_text("00cafe")
            keys("Return")
            self.box("Save Error", "save-error")
            backup = self.folder / "backup"
            backup.rename(self.folder / "backup-aside")
            backup.write_text("no folder")
            wait_active(self.tr("Velloran Device Management Tool"))
            keys("alt+F4")
            self.box("Save Error", "save-error-at-end", None)
            self.press("Yes", "Save Error")
            self.program.wait(10)
        finally:
            holder.close()

    def backup_error(self):
        self.start()
        keys("ctrl+n")
        wait_active(self.tr("New Device"))
        type_text("00beef")
        keys("Return")
        wait_gone(self.tr("New Device"))
        keys("ctrl+d")
        wait_active(self.tr("Delete All Devices"))
        self.press("Yes", "Delete All Devices")
        self.box("Backup Error", "backup-error", None)
        self.press("No", "Backup Error")
        wait_gone(self.tr("Backup Error"))

    def damaged_store(self):
        self.stop()
        (self.folder / "phonebook.db").write_bytes(b"no database at all" * 400)
        self.start(self.tr("Database Error"))
        self.box("Database Error", "database-error")

    def no_network_card(self):
        if not os.environ.get("TOUR_SERVER"):
            return  # the machine's own cards must not be changed
        for card in ("tour0", "tour1"):
            subprocess.run(["ip", "link", "delete", card], check=True)
        self.press("&Open HTTPD")
        self.box("Select avaliable NIC", "choose-no-card")
        self.box("Httpd Server", "no-network-card")


def stop(number, _frame):
    raise SystemExit(f"stopped by signal {number}")


def main():
    out, language, percent = sys.argv[1:4]
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGALRM):
        signal.signal(number, stop)
    signal.alarm(LONGEST_WALK_S)
    gallery = Gallery(Path(out), language, int(percent))
    try:
        gallery.run()
    except Exception:
        gallery.missed.append("the script itself failed")
        traceback.print_exc()
    finally:
        gallery.stop()
        gallery.log.close()
    for missed in gallery.missed:
        print(f"FAILED  {missed}")
    print(f"{len(list(gallery.out.glob('*.png')))} pictures in {gallery.out}")
    return 1 if gallery.missed else 0


if __name__ == "__main__":
    sys.exit(main())
