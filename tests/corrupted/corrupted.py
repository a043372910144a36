# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
"""Has corrupted documents drawn and searched.

    python3 tests/corrupted/corrupted.py BUILD [--count N] [--seed N] [--jobs N]

BUILD is a directory of CMake whose tests have made the test documents. zzuf corrupts each of the N documents (10,000) with
another seed, at one of several rates; `tavrel render` draws all of its pages, and `tavrel hits` takes their words. Each
command has to end by itself, within its limits of time and memory, with a documented status and nothing but its own lines
on standard error. Prints how often each status came, and a line with its seed for each document that failed; then the exit
status is 1.
"""

import argparse
import collections
import concurrent.futures
import os
import pathlib
import random
import resource
import subprocess
import sys
import tempfile
import time

RATES = (0.00001, 0.0001, 0.001, 0.004, 0.02)  # of the bits
PAGE_TIME = 2  # seconds of a processor a page
LONGEST = 120  # seconds, of a command
LARGEST = 1100 << 20  # bytes that a process may have taken: its limit, and some for what it shares
DOCUMENTED = {"render": {0, 3, 4, 5, 8}, "hits": {0, 3, 4, 5, 8}}
HITS = b'<XML>\n<Body Units="words" version="2">\n<highlights>\n<loc pg="0" pos="0" len="1"/>\n</highlights>\n</Body>\n</XML>\n'


class Corrupted:
    def __init__(self, build):
        self.tavrel = build / "bin/tavrel"
        self.documents = sorted(path for path in (build / "test-documents").glob("*.pdf") if path.stat().st_size < 1 << 20)
        self.environment = dict(os.environ, TAVREL_PLUGIN_PATH=str(build / "bin/plugins"))

    def corrupted(self, seed, file):
        chosen = random.Random(seed)
        document, rate = chosen.choice(self.documents), chosen.choice(RATES)
        with open(file, "wb") as out:
            subprocess.run(["zzuf", f"--seed={seed}", f"--ratio={rate}", "cat", document], stdout=out, check=True)
        return f"seed {seed}: {document.name} at a rate of {rate}"

    def run(self, seed):
        """What it was, the commands' statuses, and what was wrong."""
        with tempfile.TemporaryDirectory() as folder:
            file, hits = os.path.join(folder, "a.pdf"), os.path.join(folder, "a.xml")
            with open(hits, "wb") as out:
                out.write(HITS)
            what = self.corrupted(seed, file)
            commands = {
                "render": [file, hits, "--pages", "all", "--dpi", "30", "--out", folder, "--page-time", str(PAGE_TIME)],
                "hits": [file, "the", "-o", os.path.join(folder, "out.xml"), "--page-time", str(PAGE_TIME)],
            }
            statuses, wrong = {}, []
            for name, arguments in commands.items():
                begun = time.monotonic()
                try:
                    done = subprocess.run([self.tavrel, name, *arguments], env=self.environment, stdin=subprocess.DEVNULL,
                                          capture_output=True, timeout=LONGEST, check=False)
                except subprocess.TimeoutExpired:
                    wrong.append(f"{name} takes longer than {LONGEST} seconds")
                    continue
                statuses[name] = done.returncode
                if done.returncode not in DOCUMENTED[name]:
                    wrong.append(f"{name} ended with {done.returncode}: {done.stderr[-300:]!r}")
                others = [line for line in done.stderr.splitlines() if not line.startswith(b"tavrel: ")]
                if others:
                    wrong.append(f"{name} wrote {others[0][:200]!r}")
                statuses[name + " seconds"] = time.monotonic() - begun
            return what, statuses, wrong


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("--count", type=int, default=10_000)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=len(os.sched_getaffinity(0)))
    options = parser.parse_args()
    corrupted = Corrupted(options.build.resolve())
    if not corrupted.documents:
        sys.exit(f"{options.build}: there are no test documents")
    counts, longest, failed = collections.Counter(), collections.Counter(), 0
    seeds = range(options.seed, options.seed + options.count)
    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        for number, (what, statuses, wrong) in enumerate(pool.map(corrupted.run, seeds), 1):
            for name, value in statuses.items():
                if name.endswith(" seconds"):
                    longest[name] = max(longest[name], value)
                else:
                    counts[name, value] += 1
            for reason in wrong:
                failed += 1
                print(f"{what}: {reason}", flush=True)
            if number % 500 == 0:
                print(f"{number} documents", file=sys.stderr, flush=True)
    for (name, status), count in sorted(counts.items()):
        print(f"{name}: {count} times status {status}")
    for name, value in sorted(longest.items()):
        print(f"longest {name}: {value:.1f}")
    largest = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss << 10
    print(f"largest process: {largest >> 20} MB")
    return 1 if failed or largest > LARGEST else 0


if __name__ == "__main__":
    sys.exit(main())
