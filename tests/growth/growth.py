# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
"""Tests that the cost grows linearly with the input: python3 growth.py VALGRIND DRIVER [--jobs J]

DRIVER is the program made from growth_driver.cpp. Has callgrind count its instructions for n and for 2n units of each
family of texts, once for reading the text as a highlight file and once for the lexer alone, and prints a line for each
such pair. The result is 1 if 2n units cost more than about twice as much, or if something other than the work was
counted.
"""

import argparse
import collections
import concurrent.futures
import os
import re
import subprocess
import sys
import tempfile

LINEAR = 2.2  # times as many instructions for twice as many units, at most
QUADRATIC = 4.4
LEAST = 1.8  # below it, something other than the units was counted
BYTES_TO_AN_INSTRUCTION = 8  # at most: with more, the text was not read byte by byte
DOUBLED = (1.85, 2.05)  # the text around the units does not double

Family = collections.namedtuple("Family", "name units hits_to_a_unit last_hit reading_limit")
# Texts of 40 to 100 KB. A list searches for a position among all of its page's, which is quadratic: the last family
# expects that; in the others the number of hits per page is fixed. The text's last hit is found unless a NUL ends the
# text before.
FAMILIES = [
    Family("tags", 1600, 1, 1, LINEAR),
    Family("no tags", 1200, 0, 0, LINEAR),
    Family("quotes", 800, 0, 1, LINEAR),
    Family("runs", 216, 0, 1, LINEAR),
    Family("spaces", 120, 1, 1, LINEAR),
    Family("line feeds", 160, 1, 1, LINEAR),
    Family("NULs late", 1600, 0, 0, LINEAR),
    Family("many pages", 150, 20, 1, LINEAR),
    Family("a page a hit", 2000, 1, 1, LINEAR),
    Family("many hits", 2000, 1, 1, LINEAR),
    Family("joined tags", 1600, 1, 1, LINEAR),
    Family("attributes without values", 700, 0, 1, LINEAR),
    Family("comments", 800, 1, 1, LINEAR),
    Family("one page, quadratic", 3000, 1, 1, QUADRATIC),
]
ENTRIES = ("reading", "lexer")

Run = collections.namedtuple("Run", "instructions size hits tokens")


def counted(path):
    with open(path, encoding="utf-8", errors="replace") as file:
        return int(re.search(r"^totals: (\d+)$", file.read(), re.MULTILINE)[1])


def run(valgrind, driver, family, units):
    """For each entry the driver's output, and the instructions of the entry's function and its callees."""
    with tempfile.TemporaryDirectory() as directory:
        out = os.path.join(directory, "callgrind")
        command = [valgrind, "--tool=callgrind", "--callgrind-out-file=" + out]
        command += ["--toggle-collect=measure*", "--dump-before=measureLexer", driver, family, str(units)]
        ended = subprocess.run(command, capture_output=True, text=True, check=False)
        if ended.returncode != 0:
            raise RuntimeError("%s: the driver ended with %d:\n%s" % (family, ended.returncode, ended.stderr))
        size, hits, tokens = map(int, ended.stdout.split())
        return [Run(counted(file), size, hits, tokens) for file in (out + ".1", out)]  # before measureLexer, at the end


def errors(family, entry, once, twice):
    """The errors in the counts for n and 2n units."""
    wrong = []
    limit = family.reading_limit if entry == "reading" else LINEAR
    if twice.instructions > limit * once.instructions:
        wrong.append("more than %.1f times as many for twice as many units" % limit)
    if twice.instructions < LEAST * once.instructions:
        wrong.append("less than %.1f times as many for twice as many units: something else is counted" % LEAST)
    if once.instructions * BYTES_TO_AN_INSTRUCTION < once.size:
        wrong.append("too few for %d bytes" % once.size)
    if entry == "reading":
        for hits, units in ((once.hits, family.units), (twice.hits, 2 * family.units)):
            expected = units * family.hits_to_a_unit + family.last_hit
            if hits != expected:
                wrong.append("%d hits of %d units, not %d" % (hits, units, expected))
    for what, n, doubled in (("bytes", once.size, twice.size), ("tokens", once.tokens, twice.tokens)):
        if not DOUBLED[0] * n <= doubled <= DOUBLED[1] * n:
            wrong.append("%d %s became %d" % (n, what, doubled))
    return wrong


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("valgrind")
    parser.add_argument("driver")
    parser.add_argument("--jobs", type=int, default=2)
    arguments = parser.parse_args()

    valgrind, driver = arguments.valgrind, arguments.driver
    pairs = failed = 0
    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        started = []
        for family in FAMILIES:
            sizes = (family.units, 2 * family.units)
            started.append((family, [pool.submit(run, valgrind, driver, family.name, units) for units in sizes]))
        print("instructions for n and 2n units" + 14 * " " + "n          2n  ratio  a byte     hits   tokens")
        for family, runs in started:
            for entry, once, twice in zip(ENTRIES, *(ended.result() for ended in runs)):
                ratio = twice.instructions / max(1, once.instructions)
                line = "%-25s %-8s %11d %11d" % (family.name, entry, once.instructions, twice.instructions)
                line += " %6.3f %7.2f %8d %8d" % (ratio, once.instructions / once.size, once.hits, once.tokens)
                wrong = errors(family, entry, once, twice)
                print("; ".join([line, *wrong]))
                pairs += 1
                failed += wrong != []
    print("%d of %d pairs failed" % (failed, pairs))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
