# SPDX-License-Identifier: MIT
"""Drives Quillo on a private display with real programs. Start it through ./with_display."""

import contextlib
import os
import pathlib
import shutil
import signal
import sqlite3
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import zlib

KINDS = {0: "text", 1: "rtf", 2: "html", 3: "image", 4: "file"}
HERE = pathlib.Path(__file__).resolve().parent
DEADLINE = 15.0
HANDLED = ("Saved new", "bumped to front")  # What the log says of a copy that is a clip.
# Copied links lead nowhere: nothing of a test leaves the machine.
NO_WEB = {f"{scheme}_proxy": "http://127.0.0.1:9" for scheme in ("http", "https")}
DEBOUNCE = 0.35  # The shortcut is not heard a second time within this time.


class Failure(Exception):
    """Something that should have come to pass did not."""


def wait_for(condition, what, deadline=DEADLINE):
    """Waits until condition() is true (or anything true-like) and returns its value."""
    end = time.monotonic() + deadline
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise Failure(f"gave up waiting for {what}")
        time.sleep(0.01)


def run(*command, data=None, check=True, timeout=DEADLINE):
    """Runs a command and returns its output as bytes."""
    done = subprocess.run(command, input=data, capture_output=True, check=False, timeout=timeout)
    if check and done.returncode != 0:
        raise Failure(f"{command[0]} failed: {done.stderr.decode(errors='replace').strip()}")
    return done.stdout


def png(width, height, rows):
    """A PNG of eight-bit RGB whose compressed rows are given as they are to be in the file."""
    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data
                + struct.pack(">I", zlib.crc32(kind + data)))
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", rows) + chunk(b"IEND", b""))


def noise_png(width, height):
    """A picture that is large as a file too."""
    rows = b"".join(b"\0" + os.urandom(3 * width) for _ in range(height))
    return png(width, height, zlib.compress(rows, 0))


def xdotool(*arguments, check=True):
    return run("xdotool", *map(str, arguments), check=check).decode().strip()


def key(*names, modifiers_cleared=False):
    xdotool("key", *(["--clearmodifiers"] if modifiers_cleared else []), *names)


def visible_windows(name):
    return xdotool("search", "--onlyvisible", "--name", name, check=False).split()


def active_window():
    return xdotool("getactivewindow", check=False)


def screenshot(path):
    pathlib.Path(path).parent.mkdir(parents=True, exist_ok=True)
    run("import", "-silent", "-window", "root", str(path))


class Desktop:
    """The programs of one test; all of them end with it."""

    def __init__(self):
        self.processes = []
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="quillo-test-"))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process in reversed(self.processes):
            self.end(process)
        shutil.rmtree(self.folder, ignore_errors=True)

    def start(self, *command, env=None, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL):
        process = subprocess.Popen(
            command,
            env={**os.environ, **(env or {})},
            stdin=subprocess.DEVNULL,
            stdout=stdout,
            stderr=stderr,
            start_new_session=True,
        )
        self.processes.append(process)
        return process

    @staticmethod
    def end(process, how=signal.SIGTERM):
        if process.poll() is None:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(process.pid, how)
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait(5)

    def window(self, name, deadline=DEADLINE):
        """The first visible window whose title matches."""
        return wait_for(lambda: visible_windows(name), f"the window {name}", deadline)[0]

    def focus(self, window):
        """Brings a window to the front and waits until it is active."""
        run("wmctrl", "-i", "-a", hex(int(window)), check=False)
        wait_for(lambda: active_window() == str(window), "the window's focus")

    def copy(self, data, target=None):
        """Copies with a real program that keeps running until the selection is taken over."""
        if isinstance(data, str):
            data = data.encode()
        command = ["xclip", "-selection", "clipboard", "-i", "-quiet"]
        if target:
            command += ["-t", target]
        process = subprocess.Popen(
            command, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            start_new_session=True)
        self.processes.append(process)
        process.stdin.write(data)
        process.stdin.close()
        return process

    @staticmethod
    def clipboard(target="UTF8_STRING", selection="clipboard"):
        return run("xclip", "-selection", selection, "-o", "-t", target, check=False)

    @staticmethod
    def clipboard_targets():
        return Desktop.clipboard("TARGETS").decode().split()

    def open_editor(self, name="note.txt"):
        """A GTK editor on a new file; returns its window and the file."""
        path = self.folder / name
        path.write_text("")
        self.start("mousepad", "--disable-server", str(path))
        window = self.window(name)
        self.focus(window)
        return window, path

    def saved_text(self, window, path):
        """Saves in the editor and returns the file's text."""
        self.focus(window)
        before = path.stat().st_mtime_ns
        key("ctrl+s")
        wait_for(lambda: path.stat().st_mtime_ns != before, "the editor's save")
        return path.read_text()

    def open_xterm(self, title="terminal"):
        """An xterm whose input goes to a file as it comes; returns its window and the file."""
        path = self.folder / f"{title}.out"
        path.write_text("")
        self.start("xterm", "-T", title, "-e", "sh", "-c", f"stty -icanon; exec cat > '{path}'")
        window = self.window(f"^{title}$")
        self.focus(window)
        return window, path

    def open_vte(self, title="vte terminal"):
        """A VTE terminal of our own, whose window class says terminal."""
        path = self.folder / "vte.out"
        path.write_text("")
        self.start("/usr/bin/python3", str(HERE / "vte_terminal.py"), title, str(path))
        window = self.window(f"^{title}$")
        self.focus(window)
        return window, path


class Quillo:
    """The program under test, with its log and its store."""

    def __init__(self, desktop, program, log_rules="com.quillohq.Quillo.*=true"):
        self.desktop = desktop
        self.program = program
        self.log_path = desktop.folder / "quillo.log"
        self.log_rules = log_rules
        self.process = None
        self.pressed = 0.0
        self.data = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "Quillo"
        self.config = pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "Quillo" / "settings.json"

    def start(self, env=None, prefix=()):
        log = open(self.log_path, "ab")
        seen = self.log().count("applicationDidFinishLaunching completed")
        self.process = self.desktop.start(
            *prefix, self.program, stderr=log,
            env={"QT_LOGGING_RULES": self.log_rules, "QT_FORCE_STDERR_LOGGING": "1",
                 **NO_WEB, **(env or {})})
        log.close()
        wait_for(
            lambda: self.log().count("applicationDidFinishLaunching completed") > seen
            or self.process.poll() is not None,
            "Quillo's start")
        if self.process.poll() is not None:
            raise Failure(f"Quillo ended at its start:\n{self.log()}")
        return self

    def stop(self):
        self.desktop.end(self.process)
        return self.process.returncode

    @staticmethod
    def act(name):
        """Has the program do what its desktop entry offers, as soon as it can be reached."""
        command = ["gdbus", "call", "--session", "-d", "com.quillohq.Quillo",
                   "-o", "/com/quillohq/Quillo", "-m",
                   "org.freedesktop.Application.ActivateAction", name, "[]", "{}"]
        wait_for(lambda: subprocess.run(command, capture_output=True, timeout=DEADLINE,
                                        check=False).returncode == 0, f"the action {name}")

    def log(self):
        return self.log_path.read_text(errors="replace") if self.log_path.exists() else ""

    def mark(self):
        """A place in the log, for wait_for_log()."""
        return self.log_path.stat().st_size if self.log_path.exists() else 0

    def log_since(self, mark):
        if not self.log_path.exists():
            return ""
        with open(self.log_path, "rb") as log:
            log.seek(mark)
            return log.read().decode(errors="replace")

    def wait_for_log(self, text, since, deadline=DEADLINE):
        """Waits for one of the texts (a string or several) in the log; returns what was logged."""
        texts = (text,) if isinstance(text, str) else text
        def found():
            logged = self.log_since(since)
            return logged if any(t in logged for t in texts) else None
        return wait_for(found, f"{texts} in the log", deadline)

    def capture(self, data, target=None):
        """Has a real program copy and waits until that is a clip; returns the program."""
        mark = self.mark()
        program = self.desktop.copy(data, target)
        self.wait_for_log(HANDLED, mark)
        return program

    def forget(self):
        """Removes what a former run stored and its settings; the program must not be running."""
        shutil.rmtree(self.data, ignore_errors=True)
        shutil.rmtree(self.config.parent, ignore_errors=True)

    def rows(self, query="SELECT * FROM Clip ORDER BY createdAt DESC"):
        """The stored rows, newest first, as dictionaries."""
        path = self.data / "Quillo.sqlite"
        if not path.exists():
            return []
        store = sqlite3.connect(f"file:{path}?mode=ro", uri=True, timeout=5)
        store.row_factory = sqlite3.Row
        try:
            return [dict(row) for row in store.execute(query)]
        finally:
            store.close()

    def wait_for_text(self, text):
        return wait_for(
            lambda: next((r for r in self.rows() if r["plaintext"] == text), None),
            f"the clip {text!r}")

    def wait_for_count(self, count):
        return wait_for(lambda: len(self.rows()) == count and self.rows(), f"{count} clips")

    def panel(self):
        """The panel's window while it is shown, else none."""
        windows = [w for w in visible_windows("^Quillo$")]
        return windows[0] if windows else None

    def pass_debounce(self):
        """Waits until the shortcut is heard again."""
        time.sleep(max(0.0, self.pressed + DEBOUNCE - time.monotonic()))

    def press_hotkey(self):
        self.pass_debounce()
        xdotool("key", "super+shift+v")
        self.pressed = time.monotonic()

    def show_panel(self):
        self.press_hotkey()
        window = wait_for(self.panel, "the panel")
        self.pressed = time.monotonic()  # When the press was handled, or a little later.
        wait_for(lambda: active_window() == window, "the panel's focus")
        return window

    def wait_until_hidden(self):
        wait_for(lambda: not self.panel(), "the panel to hide")


class ReplayOwner:
    """The program that owns the clipboard as a recorded, or a badly behaved, program does."""

    def __init__(self, desktop, *arguments):
        output = desktop.folder / f"owner-{len(desktop.processes)}.out"
        with open(output, "wb") as out:
            self.process = desktop.start(
                os.environ["QUILLO_REPLAY_OWNER"], *map(str, arguments), stdout=out)
        self.output = output
        self.wait_until("ready")

    def said(self):
        return self.output.read_text().split()

    def wait_until(self, word):
        wait_for(lambda: word in self.said(), f"the owner to say {word}")

    def signal(self, number):
        self.process.send_signal(number)


class QuilloTest(unittest.TestCase):
    """A class of tests on one desktop with one Quillo, whose store is empty at first."""

    SETTINGS = None

    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop()
        cls.addClassCleanup(cls.desktop.__exit__)
        cls.quillo = Quillo(cls.desktop, os.environ["QUILLO_PROGRAM"])
        cls.quillo.forget()
        if cls.SETTINGS is not None:
            cls.quillo.config.parent.mkdir(parents=True)
            cls.quillo.config.write_text(cls.SETTINGS)
        cls.quillo.start()

    def newest(self):
        rows = self.quillo.rows()
        return rows[0] if rows else None

    def copy(self, data, target=None):
        """Copies with a real program and waits until that is the newest clip; returns its row."""
        before = self.newest()
        self.quillo.capture(data, target)
        return wait_for(lambda: (now := self.newest()) != before and now, "the newest clip")

    def assert_panel_comes(self):
        """Whatever other programs do, the hotkey shows the panel; it is then closed again."""
        self.quillo.press_hotkey()
        wait_for(self.quillo.panel, "the panel", 2)
        key("Escape")
        self.quillo.wait_until_hidden()

    def assert_new_log(self, text, since):
        try:
            self.quillo.wait_for_log(text, since)
        except Failure as failure:
            self.fail(f"{failure}:\n{self.quillo.log_since(since)}")


def main_guard(main):
    """Runs a script's main and turns a Failure into a message and an exit status."""
    try:
        main()
    except Failure as failure:
        print(f"FAILED: {failure}", file=sys.stderr)
        sys.exit(1)
