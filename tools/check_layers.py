#!/usr/bin/env python3
"""Checks that every #include of the project runs down the floors.

Ombra's folders stand on floors, low to high (see docs/architecture.md).
A file may include headers of its own floor and of the floors below it,
never of a floor above. navmath/, pure mathematics, includes only core/ and
itself. Only ui/, platform/qt/ and the program itself (app/ombra/) may
include Qt. tests/, bench/ and fuzz/ may include anything.

    python3 tools/check_layers.py [ROOT]

Prints one line per fault, "file:line: <what> (floor <from> -> floor <to>)",
and exits 1 when there is any, 0 when the tree is clean, 2 when ROOT does not
look like the project (so a mistyped path cannot pass for a clean tree).
"""
from __future__ import annotations

import re
import sys
from pathlib import Path

# Folder prefixes and their floors, low to high. The longest matching prefix
# decides, so "platform/api" stands below the other platform folders.
FLOORS: list[tuple[str, ...]] = [
    ("platform/api",),
    ("core",),
    ("navmath",),
    ("platform",),  # every implementation: chartlib, comms, ais, qt, fake, ...
    ("instruments", "charts"),
    ("navobjects",),
    ("alarms", "tides", "logbook", "targets", "overlays", "printing"),
    ("plotter",),
    ("ui",),
    ("app",),
]

# Folders whose files may include anything, and folders holding no code.
FREE = ("tests", "bench", "fuzz")
SKIP = ("build", "data", "docs", "tools", ".git", ".ci")

# Floors narrower than the rule: navmath/ is pure mathematics over core/, so
# it reaches no platform interface (no clock, no dialogs, no canvas) even
# though platform/api stands below it.
ONLY_FROM = {"navmath": ("core", "navmath")}

# Folders that may include Qt headers.
QT_ALLOWED = ("ui", "platform/qt", "app/ombra")

SOURCE_SUFFIXES = {".h", ".hpp", ".hh", ".cpp", ".cc", ".cxx", ".inc", ".def", ".ipp"}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^">]+)[">]')
QT_HEADER = re.compile(r"^Q[A-Za-z]*(/|$)|^Qt[A-Z]")


def _under(path: str, prefix: str) -> bool:
    return path == prefix or path.startswith(prefix + "/")


def floor_of(rel: str) -> tuple[int, str] | None:
    """The floor of a project path ("navmath/RLGC.h") and its folder, or None."""
    best: tuple[int, str] | None = None
    for level, prefixes in enumerate(FLOORS):
        for prefix in prefixes:
            if _under(rel, prefix) and (best is None or len(prefix) > len(best[1])):
                best = (level, prefix)
    return best


def floor_name(level: int) -> str:
    return " ".join(p + "/" for p in FLOORS[level])


def resolve(root: Path, including: Path, target: str) -> str | None:
    """The project path an #include "..." names: beside the including file
    first, as the compiler looks, then from the root."""
    beside = (including.parent / target).resolve()
    if beside.is_file() and root in beside.parents:
        return beside.relative_to(root).as_posix()
    if (root / target).is_file() or floor_of(target) or target.split("/")[0] in FREE:
        return target
    return None  # not the project's (a system header written with quotes)


def source_files(root: Path):
    for top in sorted(p for p in root.iterdir() if p.is_dir()):
        if top.name in FREE or top.name in SKIP or top.name.startswith("build"):
            continue
        for path in sorted(top.rglob("*")):
            if path.is_file() and path.suffix in SOURCE_SUFFIXES:
                yield path, path.relative_to(root).as_posix()


def check(root: Path) -> list[str]:
    root = root.resolve()
    faults: list[str] = []
    for path, rel in source_files(root):
        own = floor_of(rel)
        if own is None:
            faults.append(f"{rel}:1: a source file outside every floor")
            continue
        try:
            lines = path.read_text(encoding="utf-8", errors="replace").splitlines()
        except OSError as err:
            faults.append(f"{rel}:1: unreadable ({err})")
            continue
        for number, line in enumerate(lines, 1):
            m = INCLUDE.match(line)
            if not m:
                continue
            bracket, target = m.groups()
            if bracket == "<":
                if QT_HEADER.match(target) and not any(_under(rel, q) for q in QT_ALLOWED):
                    faults.append(f"{rel}:{number}: includes Qt <{target}> outside "
                                  + ", ".join(q + "/" for q in QT_ALLOWED))
                continue
            name = resolve(root, path, target)
            if name is None:
                continue
            if name.split("/")[0] in FREE:
                faults.append(f'{rel}:{number}: includes "{target}" from {name.split("/")[0]}/'
                              f" (floor {own[0]} {floor_name(own[0])})")
                continue
            theirs = floor_of(name)
            narrow = ONLY_FROM.get(own[1])
            if narrow and theirs and theirs[0] <= own[0] and not any(_under(name, n) for n in narrow):
                faults.append(f'{rel}:{number}: includes "{target}"; {own[1]}/ includes only '
                              + ", ".join(n + "/" for n in narrow))
                continue
            if theirs is None:
                faults.append(f'{rel}:{number}: includes "{target}", which stands on no floor')
            elif theirs[0] > own[0]:
                faults.append(f'{rel}:{number}: includes "{target}" from a floor above '
                              f"(floor {own[0]} {floor_name(own[0])} -> "
                              f"floor {theirs[0]} {floor_name(theirs[0])})")
    return faults


def main(argv: list[str]) -> int:
    root = Path(argv[1] if len(argv) > 1 else Path(__file__).resolve().parent.parent)
    if not (root / "core").is_dir() or not (root / "platform" / "api").is_dir():
        print(f"{root}: not an Ombra source tree (no core/ or platform/api/)", file=sys.stderr)
        return 2
    faults = check(root)
    for fault in faults:
        print(fault)
    if faults:
        print(f"{len(faults)} include(s) break the floors", file=sys.stderr)
        return 1
    count = sum(1 for _ in source_files(root.resolve()))
    print(f"floors hold: {count} files checked")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
