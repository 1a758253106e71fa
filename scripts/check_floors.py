#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that includes in src/ go down the floors only, and that back ends do not meet."""

import pathlib
import re
import sys

FLOORS = {
    "base": 0,
    "platform": 1,
    "model": 2,
    "capture": 3,
    "paste": 3,
    "appearance": 3,
    "library/groups": 4,
    "library/list": 4,
    "library/thumbnails": 4,
    "overlay": 5,
    "library/window": 5,
    "hotkey": 6,
    "app": 7,
}
BACK_ENDS = ("platform/x11", "platform/wayland", "platform/freedesktop", "platform/tray")
INCLUDE = re.compile(r'^\s*#include "([^"]+)"', re.MULTILINE)


def folder_of(path):
    """The longest known folder that a path lies in, or None."""
    matches = [folder for folder in FLOORS if path.startswith(folder + "/")]
    return max(matches, key=len) if matches else None


def back_end_of(path):
    return next((end for end in BACK_ENDS if path.startswith(end + "/")), None)


def fault(source, target):
    """Says what is wrong with source including target, or None."""
    source_folder, target_folder = folder_of(source), folder_of(target)
    if source_folder is None:
        return "lies in no known folder"
    if target_folder is None:
        return f"includes {target}, which lies in no known folder"
    if FLOORS[target_folder] > FLOORS[source_folder]:
        return f"includes {target} from a floor above"
    if FLOORS[target_folder] == FLOORS[source_folder] and target_folder != source_folder:
        return f"includes {target} from a neighbour on its own floor"
    ends = back_end_of(source), back_end_of(target)
    if ends[1] and ends[0] and ends[0] != ends[1]:
        return f"includes {target} from another back end"
    if ends[1] and not ends[0] and source_folder != "app":
        return f"includes the back end {target}; only app/ chooses back ends"
    return None


def main(root):
    source_root = pathlib.Path(root) / "src"
    files = sorted(p for p in source_root.rglob("*") if p.suffix in (".h", ".cpp"))
    faults = []
    for path in files:
        name = path.relative_to(source_root).as_posix()
        for target in INCLUDE.findall(path.read_text(encoding="utf-8")):
            if target.endswith(".moc"):
                continue
            wrong = fault(name, target)
            if wrong:
                faults.append(f"src/{name}: {wrong}")
    print("\n".join(faults) if faults else f"floors: {len(files)} files, all includes go down")
    return 1 if faults or not files else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1] if len(sys.argv) > 1 else "."))
