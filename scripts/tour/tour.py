"""The tour itself; scripts/tour.sh prepares the screen and the network and starts it.

It begins with an empty list and does what a person does in the first hour with the program. Every
check prints a line; the last line counts them.
"""

import csv
import json
import os
import re
import shlex
import signal
import socket
import sqlite3
import stat
import subprocess
import sys
import time
import traceback
from contextlib import closing, contextmanager
from pathlib import Path
from xml.etree import ElementTree

import screen
from screen import NotSeen, keys, type_text, wait_active, wait_for, wait_gone, xdotool

TITLE = "Velloran Device Management Tool"
MAC_TYPED = "a1b2c3"
MAC = "02:00:A7:A1:B2:C3"
BARE_MAC = "0200a7a1b2c3"
FILE = f"cfg{BARE_MAC}.xml"
# Label in the dialog, column of the table, text to type. The password contains characters that XML and
# SQL must escape.
TYPED = [
    ("Account", "first_account", "Front desk"),
    ("SIP Server", "sip_server", "sip.example.net"),
    ("SIP User ID", "sip_user_id", "2001"),
    ("Authentication ID", "auth_id", "auth2001"),
    ("Password", "password", "s3<c&r'et"),
]
DESK_PHONE = {"P47": "sip_server", "P35": "sip_user_id", "P270": "first_account",
              "P36": "auth_id", "P34": "password"}
CORDLESS = {"P47": "sip_server", "P4060": "sip_user_id", "P270": "first_account",
            "P4090": "auth_id", "P4120": "password"}
KTP_AGENT = "Velloran KTP16XX 1.0.4.9 02:00:a7:a1:b2:c3"
DK_AGENT = "Velloran DK715 1.0.2.3"
CURL_EMPTY_REPLY = 52
LONGEST_TOUR_S = 480
# Qt asks for the place of a window while the window manager removes it; this is harmless.
WINDOW_RACE = "qt.qpa.xcb: QXcbConnection: XCB error: 3 (BadWindow)"

passed = failed = 0


def say(text):
    print(text, flush=True)


def check(good, what, saw=None):
    global passed, failed
    if good:
        passed += 1
        say(f"ok      {what}")
    else:
        failed += 1
        say(f"FAILED  {what}" + (f"; saw: {saw!r}" if saw is not None else ""))
    return bool(good)


def check_equal(saw, wanted, what):
    return check(saw == wanted, f"{what}: {wanted!r}", saw)


def check_soon(look, what):
    """Checks something that may take the program a moment."""
    try:
        wait_for(what, look, 10)
    except NotSeen:
        return check(False, what)
    return check(True, what)


class Program:
    """The program in its own folder, and the files it keeps there."""

    def __init__(self, folder, log):
        self.folder = folder
        self._log = log
        self._process = None

    def start(self, title=TITLE):
        """Starts the program and waits until the window with this title has the focus."""
        # The current folder is another one, as with a desktop entry.
        self._process = subprocess.Popen([str(self.folder / "VlManager")], cwd="/",
                                         stdin=subprocess.DEVNULL, stdout=self._log,
                                         stderr=self._log)
        wait_active(title)

    def start_again(self):
        """Starts a second copy. Returns its exit status, or None if it does not end."""
        try:
            return subprocess.run([str(self.folder / "VlManager")], cwd="/", timeout=10,
                                  stdin=subprocess.DEVNULL, stdout=self._log,
                                  stderr=self._log).returncode
        except subprocess.TimeoutExpired:
            return None

    def wait_end(self):
        try:
            return self._process.wait(20)
        except subprocess.TimeoutExpired:
            return None

    def kill(self):
        if self._process and self._process.poll() is None:
            self._process.kill()
            self._process.wait()

    def ports(self):
        """The TCP ports on which the program listens."""
        listing = subprocess.run(["ss", "-Hltnp"], capture_output=True, text=True).stdout
        return [int(line.split()[3].rsplit(":", 1)[1]) for line in listing.splitlines()
                if f"pid={self._process.pid}," in line]

    def rows(self):
        """The stored devices, each a mapping from column to value."""
        file = self.folder / "phonebook.db"
        with closing(sqlite3.connect(f"file:{file}?mode=ro", uri=True)) as connection:
            connection.row_factory = sqlite3.Row
            return [dict(row) for row in connection.execute("select * from contact1")]

    def settings(self, name):
        """The elements of the settings document with their texts, in order."""
        root = ElementTree.parse(self.folder / name).getroot()
        return [(element.tag, element.text or "") for element in root]


class Phone:
    """The phone: another host on the network if there is one, otherwise this one."""

    def __init__(self):
        self._prefix = shlex.split(os.environ.get("TOUR_PHONE", ""))

    def get(self, url, agent):
        """curl's status and the whole answer."""
        done = subprocess.run([*self._prefix, "curl", "-s", "-i", "--max-time", "10", "-A", agent,
                               url], capture_output=True)
        return done.returncode, done.stdout.decode("utf-8")

    def boot(self, mac, model):
        """Asks by SIP where its file is; returns the datagrams that answer."""
        script = Path(__file__).parents[2] / "tests" / "network" / "phones.py"
        done = subprocess.run([*self._prefix, sys.executable, "-B", str(script),
                               os.environ["TOUR_PHONE_ADDRESS"], mac, model],
                              capture_output=True, check=True)
        return json.loads(done.stdout)[0]["heard"]


def free_port():
    with socket.socket() as taken:
        # The system does not choose ports as low as these.
        for port in range(8080, 8180):
            try:
                taken.bind(("", port))
                return port
            except OSError:
                continue
    raise NotSeen("a free port")


@contextmanager
def port_80_held(address=""):
    """Another program holds port 80 meanwhile."""
    holder = subprocess.Popen(
        [sys.executable, "-c", "import socket, sys, time; s = socket.create_server("
         "(sys.argv[1], 80)); print(flush=True); time.sleep(600)", address],
        stdout=subprocess.PIPE)
    try:
        holder.stdout.readline()
        yield
    finally:
        holder.kill()
        holder.wait()


def chinese(source):
    """The Chinese translation of an English text, as a screen reader gets it."""
    texts = ElementTree.parse(Path(__file__).parents[2] / "language" / "zh.ts")
    found = {message.findtext("source"): message.findtext("translation")
             for message in texts.iter("message")}
    return found[source].replace("&", "")


def xpath(document, expression):
    done = subprocess.run(["xmllint", "--xpath", expression, "-"], input=document.encode(),
                          capture_output=True)
    return done.stdout.decode().rstrip("\n")


class Tour:
    def __init__(self, out):
        self.out = out
        self.log = open(out / "program.log", "w", encoding="utf-8")
        self.program = Program(out / "program", self.log)
        self.screen = screen.Screen("VlManager", out)
        # In a private network the cards are known, and port 80 is free.
        self.private_server = os.environ.get("TOUR_SERVER", "")
        self.phone = Phone()
        self.port = 0
        self.custom_port = 0

    def url(self):
        return f"http://{self.private_server or '127.0.0.1'}:{self.port}/"

    def run(self):
        self.first_start()
        self.new_device()
        self.plug_and_play_needs_httpd()
        self.open_httpd()
        self.phone_fetches()
        if self.private_server:
            self.plug_and_play()
        self.second_start()
        self.edit_device()
        self.search()
        self.user_guide()
        self.close_httpd()
        self.close_window()
        self.device_is_still_there()
        if self.private_server:
            self.port_80_taken()
        self.new_devices()
        self.list_out_and_in()
        self.configure_port()
        self.choose_options()
        self.choose_language()
        self.delete()
        self.leave_by_menu()

    def count_reads(self, number):
        return self.screen.sees("label", f"Total device:{number}")

    def cells(self):
        return self.screen.names("table cell", TITLE)

    def first_start(self):
        say("-- first start, empty folder")
        self.program.start()
        self.screen.shot("empty-list")
        check_soon(lambda: self.count_reads(0), 'the window counts "Total device:0"')
        for name in ("New", "Delete All", "Open HTTPD"):
            check_soon(lambda: self.screen.sees("push button", name), f'a button "{name}"')

    def new_device(self):
        say("-- a new device, by keyboard")
        keys("ctrl+n")
        wait_active("New Device")
        self.screen.shot("new-device")
        type_text(MAC_TYPED)
        keys("Tab")
        # A choice has the name of the chosen entry.
        check_equal(self.screen.focused(), ("combo box", "KTP16XX"),
                    "after the MAC, Tab leads to")
        for label, _, text in TYPED:
            keys("Tab")
            check_equal(self.screen.focused()[1], label, "Tab leads to")
            type_text(text)
        self.screen.shot("new-device-filled")
        self.screen.click_on("push button", "Save", "New Device")
        wait_gone("New Device")
        wait_active(TITLE)
        check_soon(lambda: self.count_reads(1), 'the window counts "Total device:1"')
        self.screen.shot("one-device")
        cells = self.cells()
        for text in (MAC, "Front desk", "sip.example.net", "2001"):
            check(text in cells, f"the list shows {text!r}", cells)
        self.check_stored("Front desk")
        mode = stat.S_IMODE((self.program.folder / "phonebook.db").stat().st_mode)
        check_equal(oct(mode), oct(0o600), "phonebook.db holds passwords, so its mode is")

    def check_stored(self, account):
        rows = self.program.rows()
        if not check_equal(len(rows), 1, "rows in phonebook.db"):
            return
        check_equal(rows[0]["mac"], MAC, "stored mac")
        for _, column, text in TYPED:
            wanted = account if column == "first_account" else text
            check_equal(rows[0][column], wanted, f"stored {column}")

    def choose_card(self, by_keyboard=False, chooser="Select avaliable NIC"):
        wait_active(chooser)
        # The card of the private network; on the machine's own network, the card already chosen.
        if self.private_server:
            def radio():
                return self.screen.find("radio button", "tour0", chooser)
            check(self.screen.sees("label", self.private_server, chooser),
                  f"the card shows its address {self.private_server}")
            if not self.screen.is_checked(radio()):
                self.screen.click(radio(), on_sign=True)
                check_soon(lambda: self.screen.is_checked(radio()), "a click chooses the card")
        self.screen.shot("choose-card")
        if by_keyboard:
            keys("Return")
        else:
            self.screen.click_on("push button", "OK", chooser)
        wait_gone(chooser)

    def answer_port_warning(self):
        """True if the program said that port 80 is taken."""
        def answered():
            return bool(screen.windows("Httpd Server")) or \
                self.screen.sees("push button", "Close HTTPD")
        wait_for("the service to open or a warning about its port", answered)
        if not screen.windows("Httpd Server"):
            return False
        wait_active("Httpd Server")
        self.screen.shot("port-80-taken")
        keys("Return")
        wait_gone("Httpd Server")
        return True

    def report(self):
        return self.screen.text("text", "HTTPD server request informations")

    def read_port(self):
        """The port that the report box names, checked against those that the system reports."""
        self.screen.find("push button", "Close HTTPD")
        check_soon(lambda: "HTTPD server is running." in self.report(),
                   'the report box says "HTTPD server is running."')
        lines = self.report().splitlines()
        ports = [line[len("Port:"):] for line in lines if line.startswith("Port:")]
        check_equal(ports, [str(port) for port in self.program.ports()],
                    "the report box names the port on which the program listens")
        if self.private_server:
            check(f"ServerIP:{self.private_server}" in lines,
                  f'the report box says "ServerIP:{self.private_server}"', lines)
        self.port = int(ports[0])

    def open_httpd(self):
        say("-- open the service, by mouse")
        self.screen.click_on("push button", "Open HTTPD")
        self.choose_card()
        warned = self.answer_port_warning()
        self.read_port()
        self.screen.shot("httpd-open")
        if self.private_server:
            check(not warned, "no warning, as port 80 is free here")
            check_equal(self.port, 80, "the port is")

    def fetch(self, name, agent):
        status, answer = self.phone.get(self.url() + name, agent)
        check_equal(status, 0, f"curl fetches {name} as {agent.split()[1]}, status")
        head, _, body = answer.partition("\r\n\r\n")
        return head.split("\r\n"), body

    def check_document(self, agent, elements, account="Front desk"):
        head, body = self.fetch(FILE, agent)
        say(body)
        check_equal(head[0], "HTTP/1.0 200 Ok", "the answer begins with")
        check("Content-Type: application/xml" in head, "the answer names its type", head)
        formed = subprocess.run(["xmllint", "--noout", "-"], input=body.encode(),
                                capture_output=True)
        check(formed.returncode == 0, "the document is well-formed", formed.stderr)
        typed = {column: text for _, column, text in TYPED}
        typed["first_account"] = account
        for element, column in elements.items():
            check_equal(xpath(body, f"string(/vl_provision/config/{element})"), typed[column],
                        f"{element} holds {column}")

    def phone_fetches(self):
        say("-- a desk phone fetches its file")
        self.check_document(KTP_AGENT, DESK_PHONE)
        say("-- a cordless base fetches its file")
        self.check_document(DK_AGENT, CORDLESS)
        say("-- requests that are not for a listed device")
        for name in ("cfg0200a7000000.xml", "cfg0200A7A1B2C3.xml", "firmware.bin",
                     "cfg/../../../phonebook.db.xml"):
            status, answer = self.phone.get(self.url() + name, KTP_AGENT)
            check((status, answer) == (CURL_EMPTY_REPLY, ""), f"no answer to {name}",
                  (status, answer))
        ended = r"\n\d\d:\d\d:\d\d [0-9.]+: sent \d+ bytes"
        wanted = ("One device request cfg\\.\nProduct:KTP\nFileName:" + FILE + ended +
                  "\n\nOne device request cfg\\.\nProduct:DK\nFileName:" + FILE + ended)
        check_soon(lambda: re.search(wanted, self.report()), "the report box shows both requests")
        self.read_log([(FILE, "KTP", "sent"), (FILE, "DK", "sent"),
                       ("cfg0200a7000000.xml", "KTP", "not listed"),
                       ("cfg0200A7A1B2C3.xml", "KTP", "no name")])
        say(self.report())
        self.screen.shot("phone-has-fetched")

    def read_log(self, wanted):
        """Checks that the log has all of these requests, with their outcomes."""
        def rows():
            log = self.program.folder / "log" / "requests.csv"
            if not log.exists():
                return []  # the log is written a moment after the answer is sent
            with log.open(newline="", encoding="utf-8") as file:
                return [tuple(row.values()) for row in csv.DictReader(file)]
        for entry in wanted:
            check_soon(lambda: any(set(entry) <= set(row) for row in rows()),
                       f"the log has {', '.join(entry)}")

    def plug_and_play_needs_httpd(self):
        say("-- plug and play while the service is closed")
        self.screen.click_on("push button", "Enable PNP Server")
        wait_active("Enable PNP Server")
        self.screen.shot("plug-and-play-refused")
        keys("Return")
        wait_gone("Enable PNP Server")
        check(self.screen.sees("push button", "Enable PNP Server"),
              "it is refused, with a message")

    def plug_and_play(self):
        say("-- a phone out of the box asks where its file is")
        self.screen.click_on("push button", "Enable PNP Server")
        check_soon(lambda: self.screen.sees("push button", "Disable PNP Server"),
                   'the button reads "Disable PNP Server"')
        self.screen.shot("plug-and-play")
        heard = self.phone.boot(BARE_MAC, "KTP16XX")
        for text in heard:
            say(text)
        heads = [text.partition("\r\n")[0] for text in heard]
        if check(len(heads) == 2 and heads[0].startswith("SIP/2.0 202 ") and heads[1].startswith(
                f"NOTIFY sip:{os.environ['TOUR_PHONE_ADDRESS']}:"), "two answers come", heads):
            check_equal(heard[1].partition("\r\n\r\n")[2], self.url(), "the phone is sent to")
        heard = self.phone.boot("0200a7000000", "KTP16XX")
        check_equal([text.split("\r\n")[0] for text in heard], ["SIP/2.0 501 Not Implemented"],
                    "a phone that is not listed is told")

    def second_start(self):
        say("-- a second start")
        xdotool("windowminimize", screen.windows(TITLE)[0])
        wait_for("the window to be minimised", lambda: not screen.windows(TITLE))
        check_equal(self.program.start_again(), 0, "a second copy ends with status")
        check_soon(lambda: screen.active_title() == TITLE, "and brings the window back")
        check_equal(len(screen.windows(TITLE)), 1, "windows on the screen")

    def edit_device(self):
        say("-- edit the device while the service runs")
        self.screen.click(self.screen.find("table cell", "Detail", TITLE))
        wait_active("Overview & Edit")
        self.screen.shot("edit-device")
        check_equal(self.screen.text("text", "Account"), "Front desk", "the dialog shows Account")
        check("s3<c&r'et" not in self.screen.text("password text", "Password"),
              "the password is not shown")
        self.screen.click_on("push button", "Show Advance Settings")
        self.screen.find("push button", "Hide Advance Settings")
        self.screen.shot("edit-device-advanced")
        self.screen.click(self.screen.find("text", "Account"))
        keys("ctrl+a")
        type_text("Reception")
        keys("Return")
        wait_gone("Overview & Edit")
        check_soon(lambda: "Reception" in self.cells(), "the list shows the new account")
        self.check_stored("Reception")
        self.check_document(KTP_AGENT, DESK_PHONE, account="Reception")

    def search(self):
        say("-- search a column")
        self.screen.click(self.screen.find("text", "Search Account"))
        type_text("zzz")
        check_soon(lambda: "Reception" not in self.cells(), 'no account contains "zzz"')
        self.screen.shot("search-no-match")
        keys("ctrl+a")
        type_text("cept")
        check_soon(lambda: "Reception" in self.cells(), '"cept" finds "Reception"')
        keys("ctrl+a", "BackSpace")
        check_soon(lambda: "Reception" in self.cells(), "an empty box shows every device")
        # On this desktop, a line edit takes this key for the end of the line.
        keys("ctrl+e")
        check_soon(lambda: self.screen.sees("text", "Export to"),
                   "Ctrl+E exports from a search box as well")
        keys("Escape")

    def user_guide(self):
        say("-- the user guide, by keyboard")
        help_title = f"{TITLE} Help"
        keys("alt+h", "Return")
        wait_active(help_title)
        check(self.screen.sees("label", "1/9", help_title), "it opens at the first of nine pages")
        self.screen.shot("user-guide")
        keys("Down", "Next", "Next")
        check_soon(lambda: self.screen.sees("label", "4/9", help_title), "three keys turn three pages")
        keys("Escape")
        wait_gone(help_title)
        wait_active(TITLE)

    def close_httpd(self):
        say("-- close the service")
        self.screen.click_on("push button", "Close HTTPD")
        check_soon(lambda: self.screen.sees("push button", "Open HTTPD"),
                   'the button reads "Open HTTPD" again')
        check_soon(lambda: not self.program.ports(), "the program no longer listens")
        check(self.screen.sees("push button", "Enable PNP Server"),
              "plug and play has gone with it")
        check(not self.screen.sees("text", "HTTPD server request informations"),
              "the report box is hidden")
        self.screen.shot("httpd-closed")

    def check_ended(self, began):
        check_equal(self.program.wait_end(), 0, "the program ends with status")
        seconds = time.monotonic() - began
        check(seconds < 5, "and within 5 seconds", round(seconds, 1))

    def close_window(self):
        say("-- close the window with Alt+F4")
        began = time.monotonic()
        keys("alt+F4")
        self.check_ended(began)

    def device_is_still_there(self):
        say("-- start again")
        self.program.start()
        check_soon(lambda: self.count_reads(1), 'the window counts "Total device:1"')
        cells = self.cells()
        for text in (MAC, "Reception", "sip.example.net", "2001"):
            check(text in cells, f"the list shows {text!r}", cells)
        self.check_stored("Reception")
        self.screen.shot("started-again")

    def port_80_taken(self):
        say("-- open the service while another program has port 80")
        with port_80_held():
            self.screen.click_on("push button", "Open HTTPD")
            self.choose_card(by_keyboard=True)
            check(self.answer_port_warning(), "the program warns that port 80 is taken")
            self.read_port()
            check(self.port not in (0, 80), "and uses another port", self.port)
            self.screen.shot("random-port")
            self.check_document(KTP_AGENT, DESK_PHONE, account="Reception")

    def fill(self, name, text):
        self.screen.click_on("text", name)
        keys("ctrl+a")
        type_text(text)

    def new_devices(self):
        say("-- three devices at once")
        keys("ctrl+t")
        wait_active("New Devices")
        for name, text in (("Product Count", "3"), ("Law of increasing MAC", "1"),
                           ("Law of increasing User ID", "1"), ("SIP Server", "sip.example.net"),
                           ("First SIP User ID", "3000")):
            self.fill(name, text)
        self.screen.click_on("text", "First MAC 4 of 6")
        type_text("000010")
        self.screen.shot("new-devices")
        self.screen.click_on("push button", "Save", "New Devices")
        wait_gone("New Devices")
        check_soon(lambda: self.count_reads(4), 'the window counts "Total device:4"')
        check_equal([(row["mac"], row["sip_user_id"]) for row in self.program.rows()],
                    [(MAC, "2001"), ("02:00:A7:00:00:10", "3000"), ("02:00:A7:00:00:11", "3001"),
                     ("02:00:A7:00:00:12", "3002")], "stored devices")

    def list_out_and_in(self):
        say("-- the list to a file and back")
        lists = self.out / "lists"
        lists.mkdir()
        keys("ctrl+e")
        self.fill("Export to", str(lists))
        self.screen.shot("export")
        keys("Return")
        wait_active("Export Box")
        check(self.screen.sees("label", "File has been exported successfully!"),
              'the box says "File has been exported successfully!"')
        keys("Return")
        wait_gone("Export Box")
        file = lists / "devices.csv"
        if not check(file.is_file(), "the folder holds devices.csv", os.listdir(lists)):
            return
        before = self.program.rows()

        self.screen.click(self.screen.find("table cell", "Delete", TITLE))
        check_soon(lambda: self.count_reads(3), "the first device is deleted by its trash can")
        self.screen.shot("deleted")
        self.screen.click_on("push button", "Undo", TITLE)
        check_soon(lambda: self.count_reads(4), "the deletion is undone")
        check_equal(self.program.rows(), before, "stored devices, after taking it back")
        keys("ctrl+shift+z")
        check_soon(lambda: self.count_reads(3), "the deletion is redone")
        keys("ctrl+i")
        self.fill("Import file", str(file))
        self.screen.shot("import")
        keys("Return")
        check_soon(lambda: self.count_reads(4), "the file brings it back")
        check_soon(lambda: not self.screen.sees("text", "Import file"), "the page goes away")
        check_equal(self.program.rows(), before, "stored devices, field by field")
        self.screen.shot("imported")

    def choose(self, menu, entry):
        self.screen.click_on("menu item", menu)
        self.screen.click_on("menu item", entry)

    def read_notice(self, title, text, picture):
        wait_active(title)
        check(self.screen.sees("label", text, title), f"the box says {text!r}")
        self.screen.shot(picture)
        keys("Return")
        wait_gone(title)

    def configure_port(self):
        say("-- a port of one's own")
        title = "Configure Httpd Port"
        self.choose("Options", title)
        wait_active(title)
        check(self.screen.is_checked(self.screen.find("check box", "Use the Default Port 80:")),
              "the default port is chosen")
        self.screen.shot("port")
        keys("space", "Tab")
        check_equal(self.screen.focused(title), ("text", "Custom Port (5000-65535):"),
                    "unchecked, Tab leads to")
        type_text("4999")
        keys("Return")
        self.read_notice("Port Error", "The port should between 5000 and 65535!", "port-error")
        self.custom_port = free_port()
        type_text(str(self.custom_port))
        self.screen.shot("port-filled")
        self.screen.click_on("push button", "OK", title)
        wait_gone(title)
        check_equal(self.program.settings("port.xml"),
                    [("useDefault", "0"), ("port", str(self.custom_port))], "port.xml holds")

    def choose_options(self):
        say("-- the options")
        for entry in ("Auto Start", "Auto Httpd"):
            self.choose("Options", entry)
            self.read_notice("Options change", "Config's change will take effect after reboot.",
                             "options-change")
        check_equal(self.program.settings("language/options.xml"),
                    [("AutoStart", "1"), ("RecoveryData", "1"), ("AutoHttpd", "1")],
                    "options.xml holds")
        entry = Path.home() / ".config/autostart/VlManager.desktop"
        wanted = f'Exec="{self.program.folder / "VlManager"}"'
        check(entry.is_file() and wanted in entry.read_text(encoding="utf-8").splitlines(),
              f"the session is to start the program: {wanted}")

    def options_checked(self, menu, names):
        """The checked entries of the open menu."""
        self.screen.click_on("menu item", menu)
        return [self.screen.is_checked(self.screen.find("menu item", name)) for name in names]

    def choose_language(self):
        say("-- Chinese, after a restart, and with the options as they were left")
        self.choose("Language", "简体中文")
        self.read_notice("Language change", "Language change will take effect after reboot.",
                         "language-change")
        check(self.screen.sees("menu item", "Options"), "until then the window stays English")
        began = time.monotonic()
        keys("alt+F4")
        self.check_ended(began)

        self.program.start(chinese("Select avaliable NIC"))
        self.choose_card(by_keyboard=True, chooser=chinese("Select avaliable NIC"))
        wait_active(chinese(TITLE))
        check_soon(lambda: self.program.ports() == [self.custom_port],
                   f"the service opens by itself, on port {self.custom_port}")
        count = chinese("Total device") + chinese(":") + "4"
        check_soon(lambda: self.screen.sees("label", count), f'the window counts "{count}"')
        check_equal(self.options_checked(chinese("&Options"),
                                         [chinese("Auto Start"), chinese("Auto Httpd")]),
                    [True, True], "both options are checked")
        self.screen.shot("chinese")

        say("-- and English again")
        keys("Escape", "Escape")
        for entry in ("Auto Httpd", "Auto Start"):
            self.choose(chinese("&Options"), chinese(entry))
            self.read_notice(chinese("Options change"),
                             chinese("Config's change will take effect after reboot."),
                             "options-change-chinese")
        self.choose(chinese("&Language"), "English")
        self.read_notice(chinese("Language change"),
                         chinese("Language change will take effect after reboot."),
                         "language-change-chinese")
        began = time.monotonic()
        keys("alt+F4")
        self.check_ended(began)
        self.program.start()
        check_soon(lambda: self.count_reads(4), 'the window counts "Total device:4"')
        check_equal(self.options_checked("Options", ["Auto Start", "Auto Httpd"]), [False, False],
                    "neither option is checked")
        keys("Escape", "Escape")
        check(not self.program.ports(), "the service stays closed")
        entry = Path.home() / ".config/autostart/VlManager.desktop"
        check("Hidden=true" in entry.read_text(encoding="utf-8").splitlines(),
              "the session is not to start the program")

    def answer_question(self, title, answer):
        wait_active(title)
        self.screen.click_on("push button", answer, title)
        wait_gone(title)

    def delete(self):
        say("-- delete all, first not, then so")
        keys("ctrl+d")
        wait_active("Delete All Devices")
        self.screen.shot("delete-all")
        self.answer_question("Delete All Devices", "No")
        check(self.count_reads(4), 'answered "No", the devices stay')
        keys("ctrl+d")
        self.answer_question("Delete All Devices", "Yes")
        check_soon(lambda: self.count_reads(0), 'answered "Yes", the list is empty')
        check_equal(self.program.rows(), [], "rows in phonebook.db")
        backups = [file.read_text(encoding="utf-8")
                   for file in (self.program.folder / "backup").glob("devices-*.csv")]
        check(any("Reception" in text for text in backups), "a backup holds what was deleted",
              backups)
        keys("ctrl+z")
        check_soon(lambda: self.count_reads(4), "Ctrl+Z brings all devices back")
        keys("ctrl+y")
        check_soon(lambda: self.count_reads(0), "Ctrl+Y deletes them again")

    def leave_by_menu(self):
        say("-- leave by the menu, with the service " +
            ("running" if self.program.ports() else "closed"))
        keys("alt+f")
        self.screen.find("menu item", "Exit")
        self.screen.shot("file-menu")
        began = time.monotonic()
        self.screen.click_on("menu item", "Exit")
        self.check_ended(began)


def stop(number, _frame):
    raise SystemExit(f"stopped by signal {number}")


def main():
    out = Path(sys.argv[1])
    # The program ends even when a signal or the time limit ends the tour.
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP, signal.SIGALRM):
        signal.signal(number, stop)
    signal.alarm(LONGEST_TOUR_S)
    tour = Tour(out)
    try:
        tour.run()
    except NotSeen as missing:
        check(False, f"timed out waiting for {missing}")
        tour.screen.shot("in-vain")
        tour.screen.dump(out / "widgets.txt")
    except Exception:
        check(False, "the tour itself failed")
        traceback.print_exc()
    finally:
        tour.program.kill()
        tour.log.close()
    printed = [line for line in (out / "program.log").read_text(encoding="utf-8").splitlines()
               if not line.startswith(WINDOW_RACE)]
    check(not printed, "the program printed no warning", printed)
    say(f"tour: {passed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
