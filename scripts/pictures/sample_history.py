# SPDX-License-Identifier: MIT
"""A history for pictures: a clip of every kind, groups, and enough more to fill the bar's counts.
The clips are copied by real programs; what cannot be copied (ages, sources, previews of links,
memberships) is then written into the store while the program does not run."""

import hashlib
import os
import pathlib
import sqlite3
import time
import uuid

from desktop import run, wait_for

MINUTE, HOUR, DAY = 60, 3600, 86400
COMMAND = "git log --oneline --graph --decorate --all"
COLOR = "#FF8E72"
LINK = "https://docs.example.org/handbook"
BARE_LINK = "https://example.org/tickets/4711?view=board"
RICH = (rb"{\rtf1\ansi\ansicpg1252 \b Quarterly summary\b0\par Revenue grew by \b 18 %\b0 , led by "
        rb"{\i subscriptions}. Churn fell below two per cent for the first time.\par}")
HTML = ("<h3>Packing list</h3><ul><li>Tent and <b>two</b> mats</li><li>Stove, <i>full</i> bottle"
        "</li><li><a href='https://example.org/map'>Map</a> of the coast</li></ul>")
NOTE = ("Call the plumber about the kitchen tap, then ask whether the boiler can be looked at on "
        "the same day. The key is with Nadia on the second floor; she leaves at four.")
CODE = ("def fibonacci(n):\n    a, b = 0, 1\n    while a < n:\n        yield a\n"
        "        a, b = b, a + b")
SCRIPTS = "naïve café – ελληνικά, кириллица, עברית"
# Which program a clip came from: the identifier of a desktop entry, and its name.
SOURCES = {"example-editor": "Editor", "net.example.Terminal": "Terminal",
           "com.example.browser": "Browser", "dev.example.screenshot": "Screenshot",
           "org.example.apps.writer": "Writer", "com.example.Files": "Files"}
# The kinds as they are stored, and how many of each the bar is to count.
KINDS = {"text": (0, 84), "rich": (1, 9), "html": (2, 6), "image": (3, 21), "file": (4, 8)}
GROUPS = (("Work", "#FF6B6B", 12), ("Recipes", "#6BCB77", 4))


def landscape(path):
    run("convert", "-size", "1920x1055", "gradient:#8ab4e8-#dceaf6", "-size", "1920x865",
        "gradient:#6f9160-#4e6c40", "-append", "-crop", "1920x1080+0+420", "+repage", str(path))


def mountains(path):
    run("convert", "-size", "1280x800", "gradient:#f7b267-#7a5195", "-fill", "#2f3e5c", "-draw",
        "polygon 0,800 0,560 260,300 480,520 700,240 1010,610 1280,420 1280,800", str(path))


def preview(path):
    run("convert", "-size", "600x240", "gradient:#29536b-#4c4173",
        "-gravity", "center", "-font", "Inter-Bold", "-pointsize", "46", "-fill", "white",
        "-annotate", "0", "Handbook", str(path))


class SampleHistory:
    def __init__(self, desktop, quillo):
        self.desktop, self.quillo = desktop, quillo
        self.folder = pathlib.Path(os.environ["HOME"]) / "Documents"
        self.folder.mkdir(parents=True, exist_ok=True)
        self.store = quillo.data / "Quillo.sqlite"
        self.made = {}  # The rows' names and identifiers, in the order they are shown.

    def make(self):
        """Fills an empty store; the program runs before and is stopped after."""
        self.write_entries()
        pictures = [self.folder / name for name in ("landscape.png", "mountains.png")]
        landscape(pictures[0])
        mountains(pictures[1])
        report, film = self.folder / "Report.pdf", self.folder / "Crossing the pass.mp4"
        report.write_bytes(b"%PDF-1.4\n" + b"%" * 182_000 + b"\n%%EOF\n")
        film.write_bytes(b"\0\0\0\x18ftypmp42" + bytes(4_700_000))
        self.write_thumbnail(film, pictures[1])
        for name, data, target in (
                ("color", COLOR, None), ("text", COMMAND, None), ("link", LINK, None),
                ("image", pictures[0].read_bytes(), "image/png"), ("rich", RICH, "text/rtf"),
                ("html", HTML, "text/html"), ("file", f"{report.as_uri()}\r\n", "text/uri-list"),
                ("bare link", BARE_LINK, None),
                ("film", f"{film.as_uri()}\r\n", "text/uri-list"), ("note", NOTE, None),
                ("image 2", pictures[1].read_bytes(), "image/png"), ("code", CODE, None),
                ("scripts", SCRIPTS, None)):
            self.copy(name, data, target)
        self.quillo.stop()
        with self.opened() as store:
            self.dress(store)
            self.multiply(store)
            self.group(store)

    def copy(self, name, data, target):
        self.desktop.copy(data, target)
        row = self.quillo.wait_for_count(len(self.made) + 1)[0]
        self.made[name] = row["id"]

    def write_entries(self):
        folder = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "applications"
        folder.mkdir(parents=True, exist_ok=True)
        for identifier, name in SOURCES.items():
            (folder / f"{identifier}.desktop").write_text(
                f"[Desktop Entry]\nType=Application\nName={name}\nExec={identifier}\n")

    def write_thumbnail(self, path, picture):
        """What the desktop's thumbnail service would have left in the shared cache."""
        cache = pathlib.Path(os.environ["XDG_CACHE_HOME"]) / "thumbnails"
        name = hashlib.md5(path.as_uri().encode()).hexdigest()
        for folder, side in (("normal", 128), ("large", 256), ("x-large", 512)):
            (cache / folder).mkdir(parents=True, exist_ok=True)
            run("convert", str(picture), "-resize", f"{side}x{side}", "-set", "Thumb::URI",
                path.as_uri().replace("%", "%%"), "-set", "Thumb::MTime",
                str(int(path.stat().st_mtime)), str(cache / folder / f"{name}.png"))

    def opened(self):
        return sqlite3.connect(self.store)

    def dress(self, store):
        """Sources, and what a link's page says about itself."""
        for name, source in (
                ("color", "example-editor"), ("text", "net.example.Terminal"),
                ("link", "com.example.browser"), ("image", "dev.example.screenshot"),
                ("rich", "org.example.apps.writer"), ("html", "com.example.browser"),
                ("file", "com.example.Files"), ("bare link", "com.example.browser"),
                ("film", "com.example.Files"), ("note", "org.example.apps.writer"),
                ("image 2", "dev.example.screenshot"), ("code", "example-editor"),
                ("scripts", "example-editor")):
            self.update(store, name, sourceBundleID=source)
        image = self.folder / "preview.png"
        preview(image)
        self.update(store, "link", linkTitle="The complete handbook of patterns")
        store.execute("INSERT INTO ClipHeavy(id, linkImageData) VALUES (?, ?) "
                      "ON CONFLICT(id) DO UPDATE SET linkImageData = excluded.linkImageData",
                      (self.made["link"], image.read_bytes()))
        self.update(store, "color", isPinned=1)

    def update(self, store, name, **columns):
        for column, value in columns.items():
            store.execute(f"UPDATE Clip SET {column} = ? WHERE id = ?", (value, self.made[name]))

    def multiply(self, store):
        """Older clips, so that there are as many of each kind as wanted."""
        columns = [row[1] for row in store.execute("PRAGMA table_info(Clip)")]
        for name, (kind, wanted) in KINDS.items():
            template = dict(zip(columns, store.execute(
                f"SELECT {','.join(columns)} FROM Clip WHERE id = ?", (self.made[name],))
                .fetchone()))
            count = store.execute("SELECT count(*) FROM Clip WHERE type = ?", (kind,)).fetchone()[0]
            for number in range(count, wanted):
                clone = uuid.uuid5(uuid.NAMESPACE_OID, f"{name} {number}").bytes
                copied = {**template, "id": clone, "contentHash": None, "isPinned": 0,
                          "createdAt": template["createdAt"] - (number + 10) * DAY * 10**6}
                if kind == 0:
                    copied["plaintext"] = f"Earlier note {number}"
                store.execute(f"INSERT INTO Clip({','.join(columns)}) VALUES "
                              f"({','.join('?' * len(columns))})", [copied[c] for c in columns])
                heavy = [row[1] for row in store.execute("PRAGMA table_info(ClipHeavy)")][1:]
                store.execute(f"INSERT INTO ClipHeavy(id, {','.join(heavy)}) SELECT ?, "
                              f"{','.join(heavy)} FROM ClipHeavy WHERE id = ?",
                              (clone, self.made[name]))

    def group(self, store):
        for index, (title, color, members) in enumerate(GROUPS):
            group = uuid.uuid5(uuid.NAMESPACE_OID, title).bytes
            store.execute("INSERT INTO Pinboard(id, title, colorHex, sortIndex) "
                          "VALUES (?, ?, ?, ?)", (group, title, color, index))
            # The colour is in the first one; every third clip of the others.
            chosen = store.execute(
                "SELECT id FROM Clip ORDER BY isPinned DESC, createdAt DESC").fetchall()
            for (clip,) in chosen[index * 2::3][:members]:
                store.execute("INSERT INTO ClipPinboards(clip, other) VALUES (?, ?)", (clip, group))

    def date(self):
        """The ages of a moment ago; the program must not run."""
        ages = (5 * MINUTE, 0, 2 * MINUTE, 12 * MINUTE, HOUR, 2 * HOUR, 3 * HOUR, 4 * HOUR,
                5 * HOUR, 7 * HOUR, DAY, 2 * DAY, 4 * DAY)
        with self.opened() as store:
            for name, age in zip(self.made, ages):
                moment = int((time.time() - age - 3) * 10**6)
                self.update(store, name, createdAt=moment, modifiedAt=moment)

    def move_files(self, folder):
        """Lets the files appear to lie in that folder, for lists that show whole addresses."""
        with self.opened() as store:
            for column in ("urlString", "plaintext"):
                store.execute(f"UPDATE Clip SET {column} = replace({column}, ?, ?)",
                              (self.folder.as_uri(), f"file://{folder}"))

    def forget_clips(self):
        """Leaves the groups."""
        with self.opened() as store:
            store.execute("PRAGMA foreign_keys = ON")
            store.execute("DELETE FROM Clip")
        wait_for(lambda: not self.quillo.rows(), "the clips to go")
