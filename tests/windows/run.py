"""Installs, uses and removes the Windows program under Wine, on a virtual screen, as its user
would; a phone on a second host fetches its file.

    run.py <folder for pictures and logs> <installer> <portable archive>

Wine's windows tell a screen reader nothing, so the eyes here are the window titles, the files, the
registry, the wire and the debug log; and the screenshots, for a person.
"""

import os
import re
import subprocess
import sys
import time
import traceback
import zipfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parents[2] / "scripts" / "tour"))
import screen  # noqa: E402
import tour  # noqa: E402
from screen import active_title, keys, type_text, wait_active, wait_for, wait_gone  # noqa: E402
from tour import check, check_equal, check_soon, chinese, say  # noqa: E402

TITLE = "Velloran Device Management Tool"
RUN_KEY = r"HKCU\SOFTWARE\Microsoft\Windows\CurrentVersion\Run"
UNINSTALL_KEY = r"HKCU\Software\Microsoft\Windows\CurrentVersion\Uninstall\VlManager"
ADAPTERS_KEY = (r"HKLM\SYSTEM\CurrentControlSet\Control\Class"
                r"\{4D36E972-E325-11CE-BFC1-08002BE10318}")
STORED_MAC = "02:00:A7:A1:B2:C3"
FILE = "cfg0200a7a1b2c3.xml"
AGENT = "Velloran KTP16XX 1.0.4.9 02:00:a7:a1:b2:c3"
# Of the second card, as the stage lays it.
OTHER_ADDRESS = "198.51.100.10"

PREFIX = Path(os.environ["WINEPREFIX"])
# No one legacy code page has all of it, and there are blanks.
FOLDER = r"C:\话机 管理 한\VlManager"
PATIENCE_S = 60


def unix(path):
    return PREFIX / "drive_c" / path.removeprefix("C:\\").replace("\\", "/")


def wine(*command, patience=PATIENCE_S):
    """A Windows command's status and what it prints."""
    done = subprocess.run(["wine", *command], capture_output=True, timeout=patience,
                          stdin=subprocess.DEVNULL)
    encoding = "utf-16" if done.stdout.startswith(b"\xff\xfe") else "utf-8"
    return done.returncode, done.stdout.decode(encoding, "replace")


def registry_value(key, name):
    """Its text, or None when there is no such value."""
    # Exported, because "reg query" prints no characters beyond the legacy code page.
    file = unix(r"C:\export.reg")
    file.unlink(missing_ok=True)
    if wine("reg", "export", key, r"C:\export.reg", "/y")[0] != 0:
        return None
    for line in file.read_text(encoding="utf-16").splitlines():
        left, equals, right = line.partition("=")
        if equals and left == f'"{name}"':
            return right[1:-1].replace("\\\\", "\\")
    return None


class Program(tour.Program):
    """One installed copy of the program."""

    def __init__(self, folder, out):
        super().__init__(unix(folder), open(out / "program.log", "a", encoding="utf-8"))
        self.path = folder + "\\VlManager.exe"

    def start(self, title=chinese(TITLE)):
        """From elsewhere, as the session does, with the debug messages switched on."""
        # Wine keeps this machine's own QT_ variables from the program, but for this prefix.
        environment = os.environ | {"WINEQT_LOGGING_RULES": "default.debug=true",
                                    "WINEQT_FORCE_STDERR_LOGGING": "1"}
        self._process = subprocess.Popen(["wine", self.path], cwd="/", env=environment,
                                         stdin=subprocess.DEVNULL, stdout=self._log,
                                         stderr=self._log)
        wait_for(f'the window "{title}"', lambda: active_title() == title, PATIENCE_S)
        time.sleep(1)  # until it takes keys: nothing tells when it does

    def close(self):
        keys("alt+F4")
        check_equal(self.wait_end(), 0, "closed with Alt+F4, the program ends with status")

    def published(self):
        """What the debug log said last of the service's address."""
        log = Path(self._log.name).read_text(encoding="utf-8", errors="replace")
        lines = [line.strip() for line in log.splitlines() if "httpd address" in line]
        return lines[-1] if lines else ""

    def files(self):
        return sorted(path.name for path in self.folder.iterdir())


class Walk:
    def __init__(self, out, installer, archive):
        self.out = out
        self.installer = "Z:" + str(installer).replace("/", "\\")
        self.archive = archive
        self.program = Program(FOLDER, out)
        self.screen = screen.Screen("VlManager", out)
        self.room = [int(side) for side in screen.xdotool("getdisplaygeometry")]
        self.phone = tour.Phone()
        self.address = os.environ["TOUR_SERVER"]

    def run(self):
        self.install()
        self.import_gbk()
        self.dialogs()
        self.cards()
        self.phones()
        self.auto_start()
        self.close_httpd()
        self.port_80_taken()
        self.upgrade()
        self.uninstall()
        self.portable()

    def look(self, picture):
        """A picture for a person; the window with the keyboard is to be wholly on the screen."""
        self.screen.shot(picture)
        told = subprocess.run(["xwininfo", "-id", *screen.xdotool("getactivewindow")],
                              capture_output=True, text=True).stdout
        x, y, width, height = (
            int(re.search(rf"{name}: +(-?\d+)", told)[1])
            for name in ("Absolute upper-left X", "Absolute upper-left Y", "Width", "Height"))
        check(x >= 0 and y >= 0 and x + width <= self.room[0] and y + height <= self.room[1],
              f"{picture} is inside the screen", f"{width}x{height} at {x}, {y}")

    def dialogs(self):
        say("-- the windows that have most in them")
        for key, title in (("ctrl+n", "New Device"), ("ctrl+t", "New Devices")):
            keys(key)
            wait_active(chinese(title))
            self.look(title.lower().replace(" ", "-"))
            keys("Escape")
            wait_active(chinese(TITLE))
        keys("alt+h", "Return")
        wait_for("the guide", lambda: active_title() not in ("", chinese(TITLE)))
        self.look("guide")
        keys("Escape")
        wait_active(chinese(TITLE))

    def answer(self, title, picture):
        """Closes a box by the keyboard."""
        wait_active(title)
        self.look(picture)
        keys("Return")
        wait_gone(title)

    def setup(self, *arguments):
        # As typed into a command prompt: each program reads its arguments in its own way.
        return wine("cmd", "/c", " ".join([self.installer, "/S", *arguments]))[0]

    def fetch(self, name=FILE, agent=AGENT):
        return self.phone.get(f"http://{self.address}/{name}", agent)

    def install(self):
        say("-- install silently, in Chinese, into a folder with Chinese, Korean and blanks")
        check_equal(self.setup("/LANGUAGE=zh", "/D=" + FOLDER), 0, "the installer's status")
        check_equal(self.program.files(), ["LICENSE.txt", "VLManager.ini", "VlManager.exe",
                                           "language", "resource", "uninstall.exe"], "installed")
        for name in ("zh.qm", "en.qm", "qt_zh_CN.qm", "options.xml", "config.xml"):
            check((self.program.folder / "language" / name).is_file(), f"language\\{name} is there")
        hint = (self.program.folder / "VLManager.ini").read_text().splitlines()[0]
        check("chinese" in hint, "VLManager.ini names the language", hint)
        check_equal(registry_value(UNINSTALL_KEY, "DisplayVersion"), "1.0.0.10",
                    "the list of programs names the version")
        check(self.start_menu_entries(), "the start menu has an entry")

    @staticmethod
    def start_menu_entries():
        return list(PREFIX.glob("drive_c/users/*/AppData/Roaming/Microsoft/Windows/Start Menu/"
                                f"Programs/{TITLE}.lnk"))

    def import_gbk(self):
        say("-- first start, in Chinese; a list in the encoding of a Chinese Windows, in a long path")
        self.program.start()
        check_equal(self.program.settings("language/config.xml"), [("Language", "zh")],
                    "the hint is taken over, config.xml holds")
        folder = "C:\\lists in\\" + "\\".join(["long" * 30] * 2)
        lists = unix(folder)
        lists.mkdir(parents=True)
        (lists / "devices.csv").write_bytes(
            f'MAC,用户ID,分机号,SIP服务器,城市\r\n{STORED_MAC},2001,前台,sip.example.net,"上海, 北京"\r\n'
            .encode("gbk"))
        keys("ctrl+i")
        time.sleep(1)  # until the page has slid in, which nothing tells
        type_text(folder + r"\devices.csv")
        keys("Return")
        check_soon(lambda: [(row["mac"], row["first_account"], row["city"])
                            for row in self.program.rows()] ==
                   [(STORED_MAC, "前台", "上海, 北京")], "phonebook.db holds the device")
        self.look("imported")

    def cards(self):
        say("-- which card is physical, by the registry")
        # As the system itself lists its adapters, and not as the program asks it.
        _, listing = wine("wmic", "path", "win32_networkadapter", "get", "guid,name")
        adapters = [line.split() for line in listing.splitlines() if line.startswith("{")]
        addresses = {"tour0": self.address, "tour1": OTHER_ADDRESS}
        if not check_equal(sorted(name for _, name in adapters), sorted(addresses), "adapters"):
            return

        # With none checked, accepting means the last of the list.
        self.open_httpd("cards-virtual")
        self.check_published(addresses[adapters[-1][1]])
        for identity, name in sorted(adapters, key=lambda adapter: adapter[1], reverse=True):
            self.close_httpd()
            for value, text in (("NetCfgInstanceId", identity),
                                ("MatchingDeviceId", r"PCI\VEN_8086&DEV_15F3")):
                wine("reg", "add", ADAPTERS_KEY + r"\0003", "/v", value, "/d", text, "/f")
            self.open_httpd(f"cards-{name}-physical")
            self.check_published(addresses[name])
        wine("reg", "delete", ADAPTERS_KEY, "/f")

    def open_httpd(self, picture):
        """Takes the card that is checked beforehand."""
        wait_active(chinese(TITLE))
        keys("alt+t")
        self.answer(chinese("Select avaliable NIC"), picture)

    def check_published(self, address):
        wanted = f'httpd address changed addr =  "{address}" port =  "80"'
        check_soon(lambda: self.program.published() == wanted, f"the address is {address}")

    def close_httpd(self):
        wait_active(chinese(TITLE))
        keys("alt+t")
        check_soon(lambda: self.fetch()[0] == 7, "closed, the port is free again")

    def phones(self):
        say("-- a phone fetches its file")
        status, answer = self.fetch()
        check_equal(status, 0, "curl's status")
        check("<P35>2001</P35>" in answer, "the document is the device's", answer)

        say("-- a name that this file system takes for the same")
        before = self.stored_document()
        check_equal(self.fetch(FILE.replace("a7a1", "A7A1")), (52, ""), "no answer")
        check_equal(self.stored_document(), before, "and the document stays as it was")

        say("-- the file is being read by another program")
        reader = subprocess.Popen(
            ["wine", "cmd", "/c", "(echo open & ping -n 6 127.0.0.1 >nul) < "
             f'"{FOLDER}\\HTTPD\\MACCFG\\{FILE}"'],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        reader.stdout.readline()  # comes once the file is open
        agent = "Velloran DK715"
        status, answer = self.fetch(agent=agent)
        check(reader.poll() is None, "the reader still has the file")
        check(not answer or "<P4060>" in answer, "nobody gets the other family's document", answer)
        reader.wait()
        status, answer = self.fetch(agent=agent)
        check("<P4060>2001</P4060>" in answer, "afterwards the document is made", answer)

    def stored_document(self):
        return (self.program.folder / "HTTPD/MACCFG" / FILE).read_text(encoding="utf-8")

    def auto_start(self):
        say("-- start with Windows")
        # Switched off, the value stays, and is what Qt's settings write for a value that is none.
        for wanted, picture in ((self.program.path, "auto-start"), ("@Invalid()", "no-auto-start"),
                                (self.program.path, "auto-start-again")):
            keys("alt+o", "Return")
            self.answer(chinese("Options change"), picture)
            check_equal(registry_value(RUN_KEY, "VlManager"), wanted, "the Run value is")

    def port_80_taken(self):
        say("-- another program has port 80, at one of the addresses")
        with tour.port_80_held(self.address):
            self.open_httpd("port-80-card")
            self.answer(chinese("Httpd Server"), "port-80-taken")
            check_soon(lambda: 'port =  "80"' not in self.program.published(),
                       "the service takes another port")

    def upgrade(self):
        say("-- install over it")
        before = self.program.rows()
        check_equal(self.setup(), 2, "while the program runs, the installer's status")
        self.program.close()
        (self.program.folder / "resource" / "old.png").write_bytes(b"")
        check_equal(self.setup("/LANGUAGE=en"), 0, "the installer's status")
        check(not (self.program.folder / "resource" / "old.png").exists(),
              "a picture of the older version is gone")
        self.program.start()
        check_equal(self.program.rows(), before, "the devices stay")
        self.program.close()

    def remove(self, *arguments):
        wine(FOLDER + r"\uninstall.exe", "/S", *arguments)
        check_soon(lambda: registry_value(UNINSTALL_KEY, "DisplayName") is None,
                   "removed from the list of programs")

    def uninstall(self):
        say("-- remove it, and keep the devices")
        before = self.program.rows()
        self.remove()
        check_soon(lambda: set(self.program.files()) - {"backup"} == {"phonebook.db"},
                   "the devices stay")
        check_equal(registry_value(RUN_KEY, "VlManager"), None, "the Run value")
        check_equal(self.start_menu_entries(), [], "entries in the start menu")

        say("-- install again: the devices are back; then remove all")
        check_equal(self.setup("/LANGUAGE=en", "/D=" + FOLDER), 0, "the installer's status")
        check_equal(self.program.rows(), before, "the devices are back")
        self.remove("/DEVICES")
        check_soon(lambda: not self.program.folder.exists(), "nothing stays")

    def portable(self):
        say("-- the archive, unpacked")
        folder = unix(r"C:\portable")
        with zipfile.ZipFile(self.archive) as archive:
            archive.extractall(folder)
        self.program = Program(r"C:\portable\VlManager", self.out)
        check_equal(self.program.files(), ["LICENSE.txt", "VlManager.exe", "language", "resource"],
                    "unpacked")
        self.program.start(TITLE)
        self.program.close()
        check_equal(self.program.rows(), [], "its own list")


def main():
    out, installer, archive = Path(sys.argv[1]), Path(sys.argv[2]), Path(sys.argv[3])
    if not os.environ.get("TOUR_SERVER"):
        sys.exit("a network of its own is needed, which this system does not give")
    walk = Walk(out, installer, archive)
    try:
        walk.run()
    except Exception:  # told with a picture of what was on the screen
        traceback.print_exc()
        walk.screen.shot("failure")
        check(False, "the walk came to its end")
    finally:
        walk.program.kill()
    say(f"{tour.passed} passed, {tour.failed} failed")
    sys.exit(1 if tour.failed else 0)


if __name__ == "__main__":
    main()
