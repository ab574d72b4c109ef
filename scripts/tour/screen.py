"""Input and output of the tour on one X display.

xdotool makes real key presses and mouse clicks. Screenshots and the accessibility bus show what is on
the screen; the bus gives the place and the text of each widget, as for a screen reader.
"""

import re
import subprocess
import time
from pathlib import Path

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE_S = 15.0
POLL_S = 0.1
SIGN_WIDTH_PX = 20


class NotSeen(Exception):
    """The tour waited for something that did not appear."""


def wait_for(what, look, patience=PATIENCE_S):
    """Calls look() until it returns something true, and returns that."""
    deadline = time.monotonic() + patience
    while True:
        try:
            seen = look()
        except GLib.Error:  # the widget went away while it was being looked at
            seen = None
        if seen:
            return seen
        if time.monotonic() > deadline:
            raise NotSeen(what)
        time.sleep(POLL_S)


def xdotool(*arguments):
    done = subprocess.run(["xdotool", *map(str, arguments)], capture_output=True, text=True)
    return done.stdout.split()


def keys(*names):
    xdotool("key", "--clearmodifiers", *names)


def type_text(text):
    # "--" lets a text begin with a dash. The delay is that of a fast typist.
    xdotool("type", "--delay", 15, "--", text)


def windows(title):
    """The visible windows with exactly this title."""
    return xdotool("search", "--onlyvisible", "--name", "^" + re.escape(title) + "$")


def active_title():
    """The title of the window with the focus."""
    done = subprocess.run(["xdotool", "getactivewindow", "getwindowname"],
                          capture_output=True, text=True)
    return done.stdout.strip()


def wait_active(title):
    wait_for(f'a window "{title}" with the keyboard', lambda: active_title() == title)


def wait_gone(title):
    wait_for(f'the window "{title}" to go away', lambda: not windows(title))


class Screen:
    """One program on the screen, known by its name on the accessibility bus."""

    def __init__(self, program, pictures, scale=1):
        self._program = program
        self._scale = scale  # screen pixels for each pixel of the program
        self._pictures = Path(pictures)
        self._count = 0

    def shot(self, name):
        """Takes a picture of the whole screen. The numbers sort the pictures by time."""
        self._count += 1
        time.sleep(0.3)  # the last repaint has no event that could be waited for
        path = self._pictures / f"{self._count:02d}-{name}.png"
        subprocess.run(["import", "-window", "root", str(path)], check=True)

    def _roots(self):
        desktop = Atspi.get_desktop(0)
        desktop.clear_cache()
        for i in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(i)
            if application and application.get_name() == self._program:
                application.clear_cache()
                yield application

    def _walk(self, node, depth=0):
        yield node, depth
        for i in range(node.get_child_count()):
            child = node.get_child_at_index(i)
            if child is not None:
                yield from self._walk(child, depth + 1)

    def nodes(self):
        for application in self._roots():
            yield from self._walk(application)

    def _nodes_in(self, window):
        """The nodes of the window with this title; without a title, those of all windows."""
        inside_depth = None
        for node, depth in self.nodes():
            if inside_depth is not None and depth <= inside_depth:
                inside_depth = None
            if window is not None and depth == 1 and node.get_name() == window:
                inside_depth = depth
            if window is None or inside_depth is not None:
                yield node

    def all(self, role, name=None, window=None):
        """The showing nodes of a role, in the window with this title or in all."""
        for node in self._nodes_in(window):
            if node.get_role_name() != role or (name is not None and node.get_name() != name):
                continue
            if node.get_state_set().contains(Atspi.StateType.SHOWING):
                yield node

    def find(self, role, name, window=None, patience=PATIENCE_S):
        return wait_for(f'{role} "{name}"',
                        lambda: next(self.all(role, name, window), None), patience)

    def sees(self, role, name, window=None):
        return next(self.all(role, name, window), None) is not None

    def names(self, role, window=None):
        return [node.get_name() for node in self.all(role, None, window)]

    def text(self, role, name):
        node = self.find(role, name)
        return Atspi.Text.get_text(node, 0, Atspi.Text.get_character_count(node))

    @staticmethod
    def is_checked(node):
        return node.get_state_set().contains(Atspi.StateType.CHECKED)

    def focused(self, window=None):
        """The role and name of the widget with the focus. A list behind a dialog keeps its own
        focused cell; the window's title tells them apart."""
        for node in self._nodes_in(window):
            if node.get_state_set().contains(Atspi.StateType.FOCUSED):
                return node.get_role_name(), node.get_name()
        return None, None

    @staticmethod
    def place(node):
        """The widget's x, y, width and height, in the program's own pixels."""
        def look():
            box = node.get_extents(Atspi.CoordType.SCREEN)
            return box.x, box.y, box.width, box.height

        def settled():
            # A window that has just appeared has no place yet, or one that it leaves at once.
            before = look()
            time.sleep(POLL_S)
            after = look()
            return after if before == after and min(after) > 0 else None
        return wait_for(f'"{node.get_name()}" to have a place on the screen', settled)

    def click(self, node, on_sign=False):
        """Clicks the middle of the widget, or the sign before the text of a choice, because the widget
        is often wider than the part that reacts to the mouse."""
        x, y, width, height = self.place(node)
        x += SIGN_WIDTH_PX // 2 if on_sign else width // 2
        y += height // 2
        xdotool("mousemove", x * self._scale, y * self._scale, "click", 1)

    def click_on(self, role, name, window=None):
        self.click(self.find(role, name, window))

    def dump(self, path):
        """Writes the whole tree as text, to help find the cause of a failure."""
        with open(path, "w", encoding="utf-8") as out:
            for node, depth in self.nodes():
                try:
                    box = node.get_extents(Atspi.CoordType.SCREEN)
                    place = f"{box.x},{box.y} {box.width}x{box.height}"
                except GLib.Error:
                    place = "-"
                states = node.get_state_set()
                showing = "" if states.contains(Atspi.StateType.SHOWING) else " (hidden)"
                out.write(f'{"  " * depth}{node.get_role_name()} "{node.get_name()}" '
                          f"{place}{showing}\n")
