#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs clang-tidy over the sources with the checks of .clang-tidy; any finding fails.

Nearly all its time goes into the headers of the libraries, so sources of one folder that define
none of the same names are looked at as one file; where that does not compile, one by one. A batch
is looked at again only when one of its files, a header of ours or the set of checks has changed.
usage: scripts/check_tidy.py BUILD_FOLDER   (with compile_commands.json, fully built)
"""

import concurrent.futures
import hashlib
import itertools
import json
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
MOST_IN_A_BATCH = 12
# What a line at the left edge defines: a type, or what stands before an initializer or a body.
TYPE = re.compile(r"^(?:template .*)?(?:class|struct|enum class|enum|using)\s+(\w+)")
NAME = re.compile(r"[^({=;[]*?(?<!::)\b(\w+)\s*[({=;[]")
CATEGORY = re.compile(r"^QUILLO_LOG_CATEGORY\((\w+)")
NOTHING = re.compile(r"\s|[{}/#*)]|namespace\b|using namespace\b|public:|private:")


def names(text):
    """The names that may clash with another file's; rather too many than too few."""
    found = set()
    for line in text.splitlines():
        if line and not NOTHING.match(line):
            name = TYPE.match(line) or NAME.match(line)
            if name:
                found.add(name.group(1))
        found.update(CATEGORY.findall(line))
    return found - {"QUILLO_LOG_CATEGORY", "static_assert"}


def batches(commands):
    """The sources, so that no batch has a name twice, or two ways of being compiled."""
    def way(source):
        return source.parent, re.sub(r" -o \S+ -c \S+", "", commands[source]["command"])

    for _, alike in itertools.groupby(sorted(commands, key=way), key=way):
        made = []
        for source in sorted(alike):
            mine = names(source.read_text())
            for batch, taken in made:
                if len(batch) < MOST_IN_A_BATCH and not mine & taken:
                    batch.append(source)
                    taken |= mine
                    break
            else:
                made.append(([source], mine))
        yield from (batch for batch, _ in made)


def tidy(folder, path, *options):
    """Whether it found nothing, and what it said."""
    done = subprocess.run(["clang-tidy-19", "--quiet", "-p", folder, *options, path],
                          capture_output=True, text=True, check=False)
    return done.returncode == 0, done.stdout


def main():
    os.chdir(ROOT)
    build = pathlib.Path(sys.argv[1]).resolve()
    commands = {pathlib.Path(entry["directory"], entry["file"]).resolve(): entry
                for entry in json.loads((build / "compile_commands.json").read_text())}
    sources = set((ROOT / "src").rglob("*.cpp"))
    if missing := sources - commands.keys():
        sys.exit(f"clang-tidy: not part of the build: {', '.join(map(str, missing))}")
    commands = {source: commands[source] for source in sources}
    folder = build / "tidy"
    (folder / "passed").mkdir(parents=True, exist_ok=True)
    common = hashlib.sha256()
    for path in [ROOT / ".clang-tidy", *sorted((ROOT / "src").rglob("*.h"))]:
        common.update(path.read_bytes())

    todo, entries = [], []
    for batch in batches(commands):
        text = "".join(f'#include "{source}"\n' for source in batch)
        digest = common.copy()
        digest.update(text.encode())
        for source in batch:
            digest.update(source.read_bytes())
        stamp = folder / "passed" / digest.hexdigest()
        if stamp.exists():
            continue
        whole = folder / f"{batch[0].relative_to(ROOT / 'src').with_suffix('')}".replace("/", "_")
        whole = whole.with_suffix(".cpp")
        whole.write_text(text)
        entry = commands[batch[0]]
        entries.append({**entry, "file": str(whole),
                        "command": entry["command"].replace(entry["file"], str(whole))})
        todo.append((batch, whole, stamp))
    (folder / "compile_commands.json").write_text(json.dumps(entries))

    def check(batch, whole, stamp):
        # What shadows another file's constant shadows nothing; the compiler warns of the rest.
        results = [tidy(folder, whole, "--checks=-bugprone-suspicious-include",
                        "--extra-arg=-Wno-shadow")]
        clashes = re.findall(r"\S+ error: .*\[clang-diagnostic-error\]", results[0][1])
        if clashes:
            print(f"clang-tidy: one by one, because of {clashes[0]}", flush=True)
            results = [tidy(build, source) for source in batch]
        if all(good for good, _ in results):
            stamp.touch()
            return True
        print(*(said for good, said in results if not good), flush=True)
        return False

    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        good = all(list(pool.map(lambda item: check(*item), todo)))
    looked_at = sum(len(batch) for batch, _, _ in todo)
    print(f"clang-tidy: {looked_at} files looked at in {len(todo)} batches"
          + (", none with a finding" if good else ""))
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
