#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Kills a process in the middle of its work on the store, again and again on one growing store,
and checks after each time that the store is whole and holds what was reported as committed.
usage: kill_test.py STORE_TOOL RUNS [SEED]

SIGKILL leaves what was written in the system's memory, so this says nothing about a loss of power.
"""

import contextlib
import hashlib
import pathlib
import random
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import time
import uuid

LIMIT = 30
SEARCHED = "text 1"  # In some of the texts that the tool copies.
DELETED = 2  # What the change log calls a deletion.


class Fault(Exception):
    """The store is not as it was reported to be."""


class Model:
    """What was reported: it may be more or less than what was committed by the last few lines."""

    def __init__(self):
        self.clips = {}         # Reported as saved: the digest and the date of each.
        self.deleted = set()    # Reported as deleted.
        self.doubtful = set()   # A deletion began; whether it was committed is not known.
        self.removals = 0       # How many the limit may have left room for since the last check.

    def read(self, line):
        match line.split():
            case ["saved", name, digest, created]:
                self.clips[name] = (digest, int(created))
            case ["deleting", "everything"]:
                self.doubtful |= self.clips.keys()
                self.removals = LIMIT
            case ["deleted", "everything"]:
                self.forget(self.doubtful)
            case ["deleting", name]:
                self.doubtful.add(name)
                self.removals += 1
            case ["deleted", name]:
                self.forget({name})

    def forget(self, names):
        self.deleted |= names
        for name in names:
            self.clips.pop(name, None)
        self.doubtful = set()


def one(store, query):
    return store.execute(query).fetchone()[0]


def expect(condition, what):
    if not condition:
        raise Fault(what)


def check_file(store):
    integrity = store.execute("PRAGMA integrity_check").fetchall()
    expect(integrity == [("ok",)], f"integrity: {integrity[:3]}")
    expect(not store.execute("PRAGMA foreign_key_check").fetchall(), "a foreign key points nowhere")
    for number, table in enumerate(("Clip", "Pinboard", "Tag")):
        rows = one(store, f"SELECT count(*) FROM {table}")
        counted = one(store, f"SELECT rows FROM RowCount WHERE entity = {number}")
        expect(rows == counted, f"{table} has {rows} rows, {counted} are counted")


def check_log(store):
    """Each clip's latest line says whether it is there; a deleted one has left a tombstone."""
    latest = ("(SELECT id, change, max(number) FROM ChangeLog WHERE entity = 0 GROUP BY id)")
    there = f"FROM {latest} AS line LEFT JOIN Clip ON Clip.id = line.id WHERE"
    expect(not one(store, f"SELECT count(*) {there} change = {DELETED} AND Clip.id IS NOT NULL"),
           "the log says deleted, the clip is there")
    expect(not one(store, f"SELECT count(*) {there} change <> {DELETED} AND Clip.id IS NULL"),
           "the log says there, the clip is not")
    expect(not one(store, f"SELECT count(*) FROM {latest} WHERE change = {DELETED} "
                          "AND id NOT IN (SELECT id FROM Tombstone)"), "a tombstone is missing")
    expect(not one(store, "SELECT count(*) FROM Clip WHERE id IN (SELECT id FROM Tombstone)"),
           "a clip with a tombstone is there")
    if one(store, "SELECT coalesce(min(number), 0) FROM ChangeLog") == 1:
        expect(not one(store, "SELECT count(*) FROM Clip WHERE id NOT IN "
                              "(SELECT id FROM ChangeLog)"), "a clip is not in the log")


def check_clips(store, model):
    """What is missing without a word must be what the limit takes: the oldest."""
    present = {}
    for key, digest, text, image, created in store.execute(
            "SELECT Clip.id, contentHash, plaintext, imageData, createdAt FROM Clip "
            "LEFT JOIN ClipHeavy USING (id)"):
        name = str(uuid.UUID(bytes=key))
        content = image if text is None else text.encode()
        expect(content is not None and hashlib.sha256(content).digest() == digest,
               f"the contents of {name} are not what was copied")
        present[name] = (digest.hex(), created)
    back = model.deleted & present.keys()
    expect(not back, f"deleted, but there: {sorted(back)[:3]}")
    wrong = [n for n in model.clips.keys() & present.keys() if model.clips[n][0] != present[n][0]]
    expect(not wrong, f"other contents than reported: {wrong[:3]}")
    missing = model.clips.keys() - present.keys() - model.doubtful
    youngest = max((model.clips[n][1] for n in missing), default=0)
    older = [n for n, (_, created) in present.items() if created < youngest]
    expect(not older, f"{len(missing)} clips are missing, but {len(older)} older ones are there")
    expect(not missing or len(present) + model.removals >= LIMIT,
           f"{len(missing)} clips are missing, and only {len(present)} are there")
    model.deleted |= (model.clips.keys() | model.doubtful) - present.keys()
    model.doubtful = set()
    model.removals = 0
    model.clips = present


def check_search(tool, base, store):
    """What the search loads after a kill is what the store holds."""
    said = subprocess.run([tool, base, "find", SEARCHED], capture_output=True, check=False,
                          timeout=60).stdout.split()
    kinds = dict(store.execute("SELECT type, count(*) FROM Clip GROUP BY type"))
    stored = [sum(kinds.values()), *(kinds.get(kind, 0) for kind in range(5)),
              one(store, f"SELECT count(*) FROM Clip WHERE plaintext LIKE '%{SEARCHED}%'")]
    expect([int(word) for word in said] == stored, f"the search finds {said} of {stored}")


def check(folder, model):
    names = sorted(path.name for path in folder.iterdir() if path.name.startswith("set-aside"))
    expect(not names, f"the store was set aside: {names}")
    store = sqlite3.connect(folder / "Quillo.sqlite")
    try:
        check_file(store)
        check_log(store)
        check_clips(store, model)
    except sqlite3.DatabaseError as error:
        raise Fault(f"the store cannot be read: {error}") from error
    finally:
        store.close()


class Killer:
    """One store, on which process after process works and is killed."""

    def __init__(self, tool, seed):
        self.tool = tool
        self.random = random.Random(seed)
        self.base = pathlib.Path(tempfile.mkdtemp(prefix="quillo-kill-"))
        self.folder = self.base / "Quillo"
        self.model = Model()
        self.lines = 0
        self.is_made = False

    def run(self):
        """Half of the runs end at a random moment, opening included, half just behind a report."""
        with subprocess.Popen([self.tool, self.base, "work", str(self.random.getrandbits(32)),
                               str(LIMIT)], stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL) as process:
            lines = []
            if self.random.random() < 0.5:
                for _ in range(self.random.randrange(1, 120)):
                    lines.append(process.stdout.readline())
                time.sleep(self.random.choice((0, self.random.uniform(0, 0.004))))
            else:
                time.sleep(self.random.uniform(0.005, 0.4))
            expect(process.poll() is None, f"the process ended by itself: {process.poll()}")
            process.kill()
            lines += process.stdout.readlines()
        for line in lines:
            self.model.read(line.decode())
        self.lines += len(lines)
        self.is_made = self.is_made or b"open\n" in lines
        if self.is_made:
            check(self.folder, self.model)
            # It starts a process, which costs more than everything else.
            if self.random.random() < 0.2:
                with contextlib.closing(sqlite3.connect(self.folder / "Quillo.sqlite")) as store:
                    check_search(self.tool, self.base, store)


TAMPERING = {
    "a lost clip": "DELETE FROM Clip WHERE id = (SELECT id FROM Clip ORDER BY createdAt DESC)",
    "a changed text": "UPDATE Clip SET plaintext = plaintext || 'x' WHERE plaintext IS NOT NULL",
    "a wrong count": "UPDATE RowCount SET rows = rows + 1 WHERE entity = 0",
    "a lost line of the log": f"DELETE FROM ChangeLog WHERE change = {DELETED}",
    "a lost tombstone": "DELETE FROM Tombstone",
    "a heavy row alone": "PRAGMA foreign_keys = OFF; INSERT INTO ClipHeavy(id) VALUES(x'00')",
}


def check_the_checks(killer):
    """Every kind of damage must be found, or the checks are worth nothing."""
    for name, statements in TAMPERING.items():
        copy = killer.base / "tampered"
        shutil.copytree(killer.folder, copy)
        with sqlite3.connect(copy / "Quillo.sqlite") as store:
            store.executescript(statements)
        store.close()
        model = Model()
        model.clips, model.deleted = dict(killer.model.clips), set(killer.model.deleted)
        try:
            check(copy, model)
        except Fault:
            shutil.rmtree(copy)
            continue
        raise Fault(f"not found: {name}")


def main(tool, runs, seed):
    killer = Killer(tool, seed)
    for number in range(1, runs + 1):
        try:
            killer.run()
        except Fault as fault:
            print(f"FAILED: seed {seed}, run {number}: {fault}; see {killer.base}", file=sys.stderr)
            return 1
    check_the_checks(killer)
    expect(killer.lines > 10 * runs, f"only {killer.lines} lines were reported")
    size = (killer.folder / "Quillo.sqlite").stat().st_size
    print(f"{runs} kills, {killer.lines} reports, {len(killer.model.clips)} clips kept, "
          f"{len(killer.model.deleted)} deleted, {size // 1024} KiB, seed {seed}")
    shutil.rmtree(killer.base)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], int(sys.argv[2]),
                  int(sys.argv[3]) if len(sys.argv) > 3 else random.SystemRandom().getrandbits(32)))
