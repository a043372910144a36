# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
"""Compares model.py with the plug-in, file by file: python3 compare.py DRIVER [--files N] [--seed S] [--jobs J]

DRIVER is the program made from lexer_reader_driver.cpp. Prints the number of files compared, how many of them were
registered, and the first differences, each with a minimised file. The result is 1 on any difference.
"""

import argparse
import concurrent.futures
import subprocess
import sys
import time

import generate
import model

SHOWN = 5  # differences
SECONDS_TO_MINIMISE = 20
LONGEST_SHOWN = 3000
EDGES = -1


def driver_lines(driver, files):
    """The driver's lines for the files; after a crash the last one reports it and the others are missing.

    `driver` is its command line.
    """
    run = subprocess.run(driver, input=generate.framed(files), stdout=subprocess.PIPE, check=False)
    lines = run.stdout.decode("ascii").split("\n")[:-1]
    if run.returncode != 0:
        if len(lines) == len(files):  # a leak, reported at exit: no file can be named
            raise RuntimeError("the driver ended with %d after the last file" % run.returncode)
        lines.append("the driver ended with %d" % run.returncode)
    return lines


def differing(driver, files):
    """(index of the first file that differs, the model's line, the driver's line), or None."""
    lines = driver_lines(driver, files)
    for index, (data, answer) in enumerate(files):
        expected = model.line(data, answer)[0]
        if index >= len(lines) or lines[index] != expected:
            return index, expected, lines[index] if index < len(lines) else "nothing"
    return None


def shorter(data, step):
    return [data[:at] + data[at + step :] for at in range(0, len(data), step)]


def minimised(driver, data, answer):
    """A short file that still differs: ever smaller pieces are removed as long as the result differs."""
    step = max(1, len(data) // 2)
    until = time.monotonic() + SECONDS_TO_MINIMISE
    while time.monotonic() < until:
        candidates = [(candidate, answer) for candidate in shorter(data, step)]
        found = differing(driver, candidates)
        if found is not None and len(candidates[found[0]][0]) < len(data):
            data = candidates[found[0]][0]
        elif step == 1:
            return data
        else:
            step //= 2
    return data


class Tally:
    def __init__(self):
        self.compared = self.registered = self.asked = self.characters = self.highlights = self.bytes = 0
        self.differences = []

    def add(self, other):
        for name in ("compared", "registered", "asked", "characters", "highlights", "bytes", "differences"):
            setattr(self, name, getattr(self, name) + getattr(other, name))


def compare_block(driver, seed, number, limit):
    """Block EDGES are the files that do not depend on the seed."""
    tally = Tally()
    files = generate.edges() if number == EDGES else generate.block(seed, number)[:limit]
    lines = []
    while len(lines) < len(files):  # more than once only after a crash
        lines += driver_lines(driver, files[len(lines) :]) or ["nothing"]
    for index, (data, answer) in enumerate(files):
        expected, result = model.line(data, answer)
        tally.compared += 1
        tally.bytes += len(data)
        tally.registered += result.registered
        tally.asked += result.asked
        tally.characters += result.registered and result.units == "characters"
        tally.highlights += len(result.entries)
        if lines[index] != expected:
            tally.differences.append((number, index, data, answer))
    return tally


def show(driver, seed, difference):
    number, index, data, answer = difference
    short = minimised(driver, data, answer)
    lines = driver_lines(driver, [(short, answer)])
    print("seed %s block %d file %d, answer %s, minimised to %d bytes:" % (seed, number, index, answer, len(short)))
    print("  file    %.*s" % (LONGEST_SHOWN, repr(short)))
    print("  model   %.*s" % (LONGEST_SHOWN, model.line(short, answer)[0]))
    print("  plug-in %.*s" % (LONGEST_SHOWN, lines[0] if lines else "nothing"))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("driver")
    parser.add_argument("--under", default="", help="what runs the driver, where this machine cannot")
    parser.add_argument("--files", type=int, default=20000)
    parser.add_argument("--seed", default="1")
    parser.add_argument("--jobs", type=int, default=2)
    arguments = parser.parse_args()
    driver = [*arguments.under.split(), arguments.driver]

    started = time.monotonic()
    tally = Tally()
    size = generate.FILES_IN_BLOCK
    with concurrent.futures.ProcessPoolExecutor(arguments.jobs) as pool:
        pending = [pool.submit(compare_block, driver, arguments.seed, EDGES, None)]
        for first in range(0, arguments.files, size):
            left = arguments.files - first
            pending.append(pool.submit(compare_block, driver, arguments.seed, first // size, left))
        for future in pending:
            tally.add(future.result())
    seconds = time.monotonic() - started
    print("%d files compared in %.0f s, %d differences" % (tally.compared, seconds, len(tally.differences)))
    share = 100 * tally.registered / tally.compared
    words = tally.registered - tally.characters
    print("%.1f %% registered, %d by character and %d by word" % (share, tally.characters, words))
    print("%d highlights, %d version questions" % (tally.highlights, tally.asked))
    print("%.0f bytes a file" % (tally.bytes / tally.compared))
    for difference in tally.differences[:SHOWN]:
        show(driver, arguments.seed, difference)
    return 1 if tally.differences else 0


if __name__ == "__main__":
    sys.exit(main())
