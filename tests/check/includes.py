# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
"""Compares what the sources include with the tables in docs/design.md.

    python3 tests/check/includes.py             this repository
    python3 tests/check/includes.py FOLDER      another one

A row of a table names a module (a directory) or a file without its ending, what it may include, in backticks, and for
modules the outside libraries that it may include. Where files of a module have rows, all of them have. A file may be
included wherever its module may, unless ONLY below says by whom. Headers of the language, of POSIX and of the compiler
need no row.

Prints a line for each include that no row allows, for each entry of a row that no file includes, and for each source of
a module without a row. Ends with 1 when there is one, else with 0.
"""

import collections
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
TREES = ("sdk", "plugin", "plugins", "document", "host", "viewer", "tools")
LIBRARIES = {  # how an include begins: the library
    "CLI/": "CLI",
    "X11/Xft/": "Xft",
    "X11/": "X11",
    "Xm/": "Xm",
    "fontconfig/": "fontconfig",
    "png.h": "png",
    "poppler": "poppler",
    "seccomp.h": "seccomp",
    "utf8proc.h": "utf8proc",
}
ONLY = {"viewer/model/session": {"viewer/window/view"}}  # besides itself


def names(cell):
    return set(re.findall(r"`([^`]+)`", cell))


def tables(text):
    """The rows of all tables: what may be included, and the libraries, by name."""
    rows = {}
    for line in text.splitlines():
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if line.startswith("| `") and len(cells) >= 2:
            rows[names(cells[0]).pop()] = names(cells[1]), names(cells[2]) if len(cells) > 2 else set()
    return rows


def stem(path):
    return path.rsplit(".", 1)[0]


def module_of(path, rows):
    parts = path.split("/")
    return next(("/".join(parts[:n]) for n in (2, 1) if "/".join(parts[:n]) in rows), None)


def includes_of(path):
    for line in path.read_text(encoding="utf-8").splitlines():
        found = re.match(r'\s*#\s*include\s+(?:"([^"]+)"|<([^>]+)>)', line)
        if found:
            yield found[1], found[2]


def library_of(header):
    return next((library for start, library in LIBRARIES.items() if header.startswith(start)), None)


def errors_below(root):
    rows = tables((root / "docs/design.md").read_text(encoding="utf-8"))
    detailed = {row.rsplit("/", 1)[0] for row in rows if row.count("/") == 2}  # modules with a row for each file
    used = collections.defaultdict(set)
    errors = []
    sources = [path for tree in TREES for path in sorted((root / tree).rglob("*")) if path.suffix in (".h", ".cpp")]
    for path in sources:
        file = path.relative_to(root).as_posix()
        module = module_of(file, rows)
        if module is None:
            errors.append("%s: no row for its module" % file)
            continue
        for own, outside in includes_of(path):
            if outside is not None:
                library = library_of(outside)
                if library is not None:
                    used[module].add(library)
                    if library not in rows[module][1]:
                        errors.append("%s includes <%s>: not a library of %s" % (file, outside, module))
                continue
            target = "sdk/" + own if own.startswith("tavrel/") else own
            if not (root / target).exists():
                continue  # beside the source, or made by the build
            other = module_of(target, rows)
            if other != module:
                used[module].add(other)
                if other not in rows[module][0]:
                    errors.append("%s includes %s: no arrow from %s to %s" % (file, own, module, other))
            if stem(target) in ONLY and stem(file) not in ONLY[stem(target)] | {stem(target)}:
                errors.append("%s includes %s, which is only for %s" % (file, own, ", ".join(ONLY[stem(target)])))
            if other == module and stem(file) in rows and stem(target) != stem(file):
                name = stem(target).rsplit("/", 1)[1]
                used[stem(file)].add(name)
                if name not in rows[stem(file)][0]:
                    errors.append("%s includes %s: no arrow from it" % (file, own))
        if module in detailed and stem(file) not in rows:
            errors.append("%s: no row for the file" % file)
    for row, (others, libraries) in rows.items():
        for name in sorted((others | libraries) - used[row]):
            errors.append("docs/design.md: `%s` does not include `%s`" % (row, name))
    return errors


def main():
    errors = errors_below(pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else ROOT)
    for error in errors:
        print(error)
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
