# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
"""Makes small changes to sources, one at a time, and lists those that no test notices.

    python3 tests/mutants/mutants.py                            all suites: hours on one core
    python3 tests/mutants/mutants.py --suites kernel            the sources of one suite
    python3 tests/mutants/mutants.py --sample 40                a random sample of 40 of each suite
    python3 tests/mutants/mutants.py --files 'plugin/util/*' --resume build/mutants.jsonl

suites.py has the table of suites: which test programs test which sources. operators.py makes the changes. Each changed
source, a mutant, is compiled, linked with the rest of the suite's programs and tested: first by the quick tests of the
source's directory, then by the other quick ones, then by the slow ones, last by the quick ones with the leak checker that
the preset `sanitize` uses. A test that fails, a crash, a hang and a leak all count as noticed. Not counted are mutants
that do not compile and those whose object file is identical to the original. survivors.txt lists mutants that may
survive, with the reason; its first lines describe its fields.

All work is done on copies in a temporary directory: sources may be edited and built meanwhile. An interrupted run
continues when it is started again with the same --resume file.
"""

import argparse
import collections
import concurrent.futures
import fnmatch
import functools
import hashlib
import json
import os
import pathlib
import random
import resource
import sys
import tempfile
import time

import operators
from suites import ROOT, SUITES, Suite, give_up, sources_of

SURVIVORS = pathlib.Path(__file__).with_name("survivors.txt")
MEMORY = 3 << 30  # bytes: the limit ends a mutant that allocates without end

NOTICED, SURVIVED, EQUAL, UNCOMPILED = "noticed", "survived", "equal", "does not compile"

Mutant = collections.namedtuple("Mutant", "file line change key before after")


def arguments():
    parser = argparse.ArgumentParser(
        description=__doc__,
        formatter_class=argparse.RawDescriptionHelpFormatter,
        epilog="The exit status is 0 if enough of each suite's counted mutants are noticed (%s;\n"
        "listed survivors count as not noticed) and every survivor is listed in %s; else 1.\n"
        "It is 2 if a suite does not build or does not pass without a change."
        % (
            ", ".join("%s %g %%" % (spec.name, spec.fewest_noticed) for spec in SUITES),
            SURVIVORS.relative_to(ROOT),
        ),
    )
    names = [spec.name for spec in SUITES]
    parser.add_argument("--suites", nargs="+", choices=names, default=names, metavar="SUITE", help=", ".join(names))
    parser.add_argument("--files", nargs="+", metavar="GLOB", help="only these: a path below the root, or a name")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), metavar="N", help="mutants at a time")
    parser.add_argument("--list", action="store_true", help="only print how many mutants there are")
    parser.add_argument("--sample", type=int, metavar="N", help="only N of each suite's mutants, taken at random")
    parser.add_argument("--seed", default="mutants", metavar="S", help="of the sample (default: %(default)s)")
    parser.add_argument("--build", default="build/mutants", metavar="DIR", help="default: %(default)s")
    parser.add_argument(
        "--resume",
        metavar="FILE",
        help="write each result into FILE, a line of JSON, and reuse the results that it has: all of a source that has not "
        "changed, but survivors only if the tests have not changed either",
    )
    return parser.parse_args()


# ------------------------------------------------------------------------------------------------------- the mutants


def flat(text):
    return " ".join(text.split())


def mutant_of(file, text, change, digest):
    first = text.rfind("\n", 0, change.start) + 1
    last = text.find("\n", change.end)
    after = text[first : change.start] + change.replacement + text[change.end : last]
    return Mutant(
        file=file,
        line=text.count("\n", 0, change.start) + 1,
        change=change,
        key="%s %s %s %d-%d %s" % (file, digest, change.operator, change.start, change.end, change.replacement),
        before=flat(text[first:last]),
        after=flat(after),
    )


def chosen_files(spec, globs):
    files = sources_of(spec)
    if globs is None:
        return files
    return [f for f in files if any(fnmatch.fnmatch(f, g) or fnmatch.fnmatch(os.path.basename(f), g) for g in globs)]


def mutants_of(file, text):
    digest = hashlib.sha1(text.encode()).hexdigest()[:12]
    return [mutant_of(file, text, change, digest) for change in operators.mutations_of(text)]


def outcome(suite, mutant):
    """The outcome of a mutant."""
    text = suite.sources[mutant.file]
    change = mutant.change
    mutated = text[: change.start] + change.replacement + text[change.end :]
    with tempfile.TemporaryDirectory(dir=suite.work, ignore_cleanup_errors=True) as directory:
        directory = pathlib.Path(directory)
        path = suite.object_of(mutant.file, mutated, directory)
        if path is None:
            return UNCOMPILED
        if path.read_bytes() == suite.original[mutant.file].read_bytes():
            return EQUAL
        noticed = suite.notices(mutant.file, path, directory)
        return UNCOMPILED if noticed is None else NOTICED if noticed else SURVIVED


# ------------------------------------------------------------------------------------------------------- the results


class Results:
    """Outcomes by mutant, stored in a file if one is given."""

    def __init__(self, path, tests):
        self.tests = tests
        self.known = {}
        if path is not None and os.path.exists(path):
            for line in pathlib.Path(path).read_text().splitlines():
                try:
                    entry = json.loads(line)
                except ValueError:  # the line at which a run was interrupted
                    continue
                self.known.pop(entry["key"], None)
                if entry["outcome"] != SURVIVED or entry["tests"] == tests:
                    self.known[entry["key"]] = entry["outcome"]
        self.file = open(path, "a", encoding="utf-8") if path is not None else None

    def add(self, mutant, result, seconds):
        self.known[mutant.key] = result
        if self.file is None:
            return
        entry = {"key": mutant.key, "outcome": result, "tests": self.tests, "seconds": round(seconds, 2)}
        if result == SURVIVED:
            entry["shown"] = shown(mutant)
        print(json.dumps(entry), file=self.file, flush=True)


def shown(mutant):
    return "%s:%d: %s: %s -> %s" % (mutant.file, mutant.line, mutant.change.operator, mutant.before, mutant.after)


def listed_survivors():
    """How often each (file, before, after) is listed."""
    listed = collections.Counter()
    if not SURVIVORS.exists():
        return listed
    for number, line in enumerate(SURVIVORS.read_text().splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        fields = line.split("\t")
        if len(fields) != 4 or not fields[3].strip():
            give_up("%s:%d: not a file, a line before, the line after and a reason" % (SURVIVORS.name, number))
        listed[fields[0], flat(fields[1]), flat(fields[2])] += 1
    return listed


def processor_seconds():
    """The processor time of compilers, linkers and tests."""
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def run(judged, mutants, results, jobs):
    """Tries all mutants whose outcome is not known yet: judged(mutant). Returns the processor's seconds for one."""
    missing = [mutant for mutant in mutants if mutant.key not in results.known]
    started = time.monotonic()
    used = processor_seconds()

    def timed(mutant):
        begun = time.monotonic()
        return mutant, judged(mutant), time.monotonic() - begun

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        futures = [pool.submit(timed, mutant) for mutant in missing]
        try:
            for done, future in enumerate(concurrent.futures.as_completed(futures), 1):
                mutant, result, seconds = future.result()
                results.add(mutant, result, seconds)
                if result == SURVIVED:
                    print("survived: " + shown(mutant), file=sys.stderr)
                if done % 25 == 0 or done == len(missing):
                    elapsed = time.monotonic() - started
                    print("%d of %d, %d s" % (done, len(missing), elapsed), file=sys.stderr, flush=True)
        except BaseException:
            pool.shutdown(cancel_futures=True)
            raise
    return (processor_seconds() - used) / len(missing) if missing else 0.0


def report(spec, mutants, results, seconds, all_of):
    """Prints the results of a suite; True if they are good enough. `all_of`: the files of which all mutants were tried."""
    outcomes = collections.Counter(results.known[mutant.key] for mutant in mutants)
    survivors = [mutant for mutant in mutants if results.known[mutant.key] == SURVIVED]
    listed = listed_survivors()
    unlisted, excused = [], []
    for mutant in survivors:
        entry = mutant.file, mutant.before, mutant.after
        (excused if listed[entry] > 0 else unlisted).append(mutant)
        listed[entry] -= 1
    for title, group in (("Survivors that are listed:", excused), ("Survivors that are not listed:", unlisted)):
        if group:
            print(title)
            for mutant in group:
                print("  " + shown(mutant))
    stale = [entry for entry, count in listed.items() if entry[0] in all_of for _ in range(count)]
    if stale:
        print("Listed, but no longer surviving:")
        for entry in stale:
            print("  %s: %s -> %s" % entry)
    tried = outcomes[NOTICED] + outcomes[SURVIVED]
    score = 100.0 * outcomes[NOTICED] / tried if tried else 100.0
    print(
        "%s: %d of %d noticed: %.1f %%. " % (spec.name, outcomes[NOTICED], tried, score)
        + "Not counted: %d that do not compile, " % outcomes[UNCOMPILED]
        + "%d with the original's object. %.2f s of a processor for one." % (outcomes[EQUAL], seconds),
        flush=True,
    )
    return score >= spec.fewest_noticed and not unlisted


def try_suite(spec, options, work):
    """Tries the mutants of a suite; True if enough are noticed."""
    sources = {file: (ROOT / file).read_text() for file in chosen_files(spec, options.files)}
    mutants = [mutant for file, text in sources.items() for mutant in mutants_of(file, text)]
    if not mutants:
        return True
    all_of = set(sources)
    if options.sample is not None and options.sample < len(mutants):
        mutants = random.Random(options.seed).sample(mutants, options.sample)
        mutants.sort(key=lambda mutant: (mutant.file, mutant.line))
        all_of = set()
    suite = Suite(spec, (ROOT / options.build).resolve(), work, sources)
    results = Results(options.resume, suite.digest)
    seconds = run(functools.partial(outcome, suite), mutants, results, options.jobs)
    return report(spec, mutants, results, seconds, all_of)


def print_counts(specs, globs):
    files, kinds = collections.Counter(), collections.Counter()
    for spec in specs:
        for file in chosen_files(spec, globs):
            for mutant in mutants_of(file, (ROOT / file).read_text()):
                files[file] += 1
                kinds[mutant.change.operator] += 1
    for file, count in files.items():
        print("%5d %s" % (count, file))
    for operator, count in kinds.most_common():
        print("%5d %s" % (count, operator))
    print("%5d in all" % sum(files.values()))


def main():
    options = arguments()
    specs = [spec for spec in SUITES if spec.name in options.suites]
    if options.list:
        print_counts(specs, options.files)
        return 0
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    resource.setrlimit(resource.RLIMIT_DATA, (MEMORY, MEMORY))  # not RLIMIT_AS: the leak checker reserves much address space
    os.environ["LSAN_OPTIONS"] = "suppressions=%s:print_suppressions=0" % (ROOT / "tests/leaks.supp")
    with tempfile.TemporaryDirectory(prefix="mutants.") as work:
        good = [try_suite(spec, options, pathlib.Path(work)) for spec in specs]
    return 0 if all(good) else 1


if __name__ == "__main__":
    sys.exit(main())
