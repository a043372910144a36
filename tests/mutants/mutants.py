"""Changes the plug-in's sources, one small thing at a time, and says which changes its unit suite does not notice.

    python3 tests/mutants/mutants.py                    everything: about half an hour on one core
    python3 tests/mutants/mutants.py --sample 100       a quick look
    python3 tests/mutants/mutants.py --files 'plugin/util/*' --resume build/mutants.jsonl

operators.py makes the changes. Each one, a mutant, is compiled, linked with the suite's other objects and tested: first
by the quick tests of the file's room, then by the quick tests of the others, then by the slow ones, last by the quick
ones under the leak checker, as the preset `sanitize` has it. A test that fails, a crash, a hang and a leak all count as
noticed. Not counted are mutants that do not compile and those whose object is byte for byte that of the original.
survivors.txt lists survivors that may survive, with the reason; its head says how.

All work is done on copies in a directory of its own: sources may be edited and built meanwhile.
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
import shlex
import shutil
import subprocess
import sys
import tempfile
import time

import operators

ROOT = pathlib.Path(__file__).resolve().parents[2]
SURVIVORS = pathlib.Path(__file__).with_name("survivors.txt")
NOT_MUTATED = {"plugin/pi/PIMain.cpp"}  # a line that forwards, proven by the tests of the library
FEWEST_NOTICED = 95.0  # per cent
SLOW = 0.01  # seconds: a slow test is run after all quick ones
LONGEST_RUN = 30  # seconds
MEMORY = 3 << 30  # bytes: a mutant that only ever allocates ends by itself
LEAKS = ["-fsanitize=leak"]
BUILD_SETTINGS = [
    "-DCMAKE_CXX_COMPILER=g++",
    "-DCMAKE_BUILD_TYPE=RelWithDebInfo",
    "-DCMAKE_COMPILE_WARNING_AS_ERROR=ON",
    "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O2 -g0 -DNDEBUG",  # the gcc preset's, without debugging information
]

NOTICED, SURVIVED, EQUAL, UNCOMPILED = "noticed", "survived", "equal", "does not compile"

Mutant = collections.namedtuple("Mutant", "file line change key before after")


def arguments():
    parser = argparse.ArgumentParser(
        description=__doc__,
        formatter_class=argparse.RawDescriptionHelpFormatter,
        epilog="The result is 0 when at least %g %% of the mutants that count are noticed (listed survivors count as not\n"
        "noticed) and every survivor is listed in %s; else 1.\n"
        "It is 2 when nothing can be tried: the suite does not build or pass as it is."
        % (FEWEST_NOTICED, SURVIVORS.relative_to(ROOT)),
    )
    parser.add_argument("--files", nargs="+", metavar="GLOB", help="only these: a path below the root, or a name")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), metavar="N", help="mutants at a time")
    parser.add_argument("--list", action="store_true", help="only say how many mutants there are")
    parser.add_argument("--sample", type=int, metavar="N", help="only N of the mutants, taken at random")
    parser.add_argument("--seed", default="mutants", metavar="S", help="of the sample (default: %(default)s)")
    parser.add_argument("--build", default="build/mutants", metavar="DIR", help="default: %(default)s")
    parser.add_argument(
        "--resume",
        metavar="FILE",
        help="write each result into FILE, a line of JSON, and take those over that stand in it already: all of a source "
        "that has not changed, but survivors only while the tests have not changed either",
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


def chosen_files(globs):
    files = sorted(path.relative_to(ROOT).as_posix() for path in ROOT.glob("plugin/**/*.cpp"))
    files = [file for file in files if file not in NOT_MUTATED]
    if globs is None:
        return files
    return [f for f in files if any(fnmatch.fnmatch(f, g) or fnmatch.fnmatch(os.path.basename(f), g) for g in globs)]


def mutants_of(file, text):
    digest = hashlib.sha1(text.encode()).hexdigest()[:12]
    return [mutant_of(file, text, change, digest) for change in operators.mutations_of(text)]


# --------------------------------------------------------------------------------------------------------- the suite


def give_up(message):
    print(message, file=sys.stderr)
    sys.exit(2)


def checked(command, **options):
    run = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, **options)
    if run.returncode != 0:
        give_up(run.stdout + "failed: " + " ".join(map(str, command)))
    return run.stdout


class Suite:
    """The built suite, taken apart into objects that stay and objects that mutants replace."""

    def __init__(self, build, work, sources):
        self.build, self.work, self.sources = build, work, sources
        if not (build / "build.ninja").exists():
            checked(["cmake", "-S", ROOT, "-B", build, "-G", "Ninja", *BUILD_SETTINGS])
        checked(["ninja", "-C", build, "plugin_test"])
        self.compile = self._compile_commands()
        self._copy_link_line()
        self.original = {}
        for file, text in sources.items():
            self.original[file] = self.object_of(file, text, work / "original" / file)
        for file, path in self.original.items():
            if path is None:
                give_up("does not compile: " + file)
            self.objects[file] = path
        self.digest = hashlib.sha1(self.kept.read_bytes() + LEAKS[0].encode()).hexdigest()[:12]

    def _compile_commands(self):
        """The command for each source, against copies of the headers, without warnings."""
        for part in ("plugin", "sdk"):
            shutil.copytree(ROOT / part, self.work / part)
        commands = {}
        for entry in json.loads((self.build / "compile_commands.json").read_text()):
            file = os.path.relpath(entry["file"], ROOT)
            if file in self.sources and "/glint.dir/" in entry["command"]:
                words = shlex.split(entry["command"])
                words = words[: words.index("-o")]
                commands[file] = [word.replace("-I" + str(ROOT), "-I" + str(self.work)) for word in words] + ["-w"]
        return commands

    def _copy_link_line(self):
        """Copies what the suite is linked from: all tests in one object, the plug-in's objects one by one."""
        line = checked(["ninja", "-C", self.build, "-t", "commands", "plugin_test"]).splitlines()[-1]
        words = shlex.split(line.split(" && ")[1])
        output = words.index("-o")
        self.objects, tests, rest = {}, [], []
        for word in words[1:output] + words[output + 2 :]:
            if "/glint.dir/" in word:
                copy = self.work / "kept" / word
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(self.build / word, copy)
                self.objects["plugin/" + word.split("/glint.dir/")[1][: -len(".o")]] = copy
            elif word.endswith(".o"):
                tests.append(word)
            elif word.endswith(".a") and not word.startswith("/"):
                shutil.copy(self.build / word, self.work)
                rest.append(self.work / os.path.basename(word))
            else:
                rest.append(word)
        self.kept = self.work / "tests.o"
        checked(["ld.gold", "-r", *tests, "-o", self.kept], cwd=self.build)
        self.link = [words[0], "-fuse-ld=gold", "-s"], rest

    def object_of(self, file, text, directory):
        """The text compiled in the file's place, or None. The source keeps its name: the object has it inside."""
        directory.mkdir(parents=True, exist_ok=True)
        source = directory / os.path.basename(file)
        source.write_text(text)
        path = source.with_suffix(".o")
        command = self.compile[file] + ["-o", str(path), "-c", str(source)]
        run = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
        return path if run.returncode == 0 else None

    def linked(self, directory, replaced=None, path=None, options=()):
        """The suite as a program, with one object replaced; None when it cannot be linked."""
        objects = [path if file == replaced else object for file, object in self.objects.items()]
        first, rest = self.link
        program = directory / "plugin_test"
        run = subprocess.run(
            [*first, *options, "-o", program, *objects, self.kept, *rest],
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            check=False,
        )
        if run.returncode != 0 and replaced is None:
            give_up("cannot be linked: the suite " + " ".join(options))
        return program if run.returncode == 0 else None


def passes(program, selection, seconds):
    """Whether the selected tests pass in time."""
    command = [str(program), "--gtest_fail_fast", "--gtest_brief=1", "--gtest_filter=" + selection]
    process = subprocess.Popen(
        command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd=program.parent
    )
    try:
        return process.wait(timeout=seconds) == 0
    except subprocess.TimeoutExpired:
        return False
    finally:
        process.kill()
        process.wait()


class Stages:
    """In which order the tests are run for a file: (filter, seconds allowed) one after another."""

    def __init__(self, program):
        places, times = program.parent / "places.json", program.parent / "times.json"
        checked([program, "--gtest_list_tests", "--gtest_output=json:%s" % places], cwd=program.parent)
        checked([program, "--gtest_brief=1", "--gtest_output=json:%s" % times], cwd=program.parent)
        self.rooms = collections.defaultdict(set)
        for suite in json.loads(places.read_text())["testsuites"]:
            for test in suite["testsuite"]:
                self.rooms[pathlib.Path(test["file"]).parent.name].add(suite["name"])
        self.slow = []
        for suite in json.loads(times.read_text())["testsuites"]:
            for test in suite["testsuite"]:
                if float(test["time"].rstrip("s")) > SLOW:
                    self.slow.append("%s.%s" % (suite["name"], test["name"]))
        self.measured = {}
        self.program = program
        self.quick = "-" + ":".join(self.slow)

    def of(self, file):
        room = pathlib.Path(file).parent.name
        if room not in self.measured:
            own = [suite + ".*" for suite in sorted(self.rooms[room])]
            stages = [":".join(own) + "-" + ":".join(self.slow), "-" + ":".join(own + self.slow), ":".join(self.slow)]
            self.measured[room] = [(stage, self.allowed(stage)) for stage in stages if stage]
        return self.measured[room]

    @functools.cache
    def allowed(self, stage, program=None):
        """The seconds that a stage may take, by what it takes for the suite as it is."""
        started = time.monotonic()
        if not passes(program or self.program, stage, 120):
            give_up("the suite does not pass without a change: " + stage)
        return min(LONGEST_RUN, 2 + 10 * (time.monotonic() - started))


def outcome(suite, stages, leaks, mutant):
    """What becomes of a mutant. `stages` by file; `leaks`: the stage under the leak checker."""
    text = suite.sources[mutant.file]
    change = mutant.change
    mutated = text[: change.start] + change.replacement + text[change.end :]
    with tempfile.TemporaryDirectory(dir=suite.work) as directory:
        directory = pathlib.Path(directory)
        path = suite.object_of(mutant.file, mutated, directory)
        if path is None:
            return UNCOMPILED
        if path.read_bytes() == suite.original[mutant.file].read_bytes():
            return EQUAL
        program = suite.linked(directory, mutant.file, path)
        if program is None:
            return UNCOMPILED
        for selection, seconds in stages[mutant.file]:
            if not passes(program, selection, seconds):
                return NOTICED
        checking = suite.linked(directory, mutant.file, path, LEAKS)
        return SURVIVED if passes(checking, *leaks) else NOTICED


# ------------------------------------------------------------------------------------------------------- the results


class Results:
    """Outcomes by mutant, kept in a file where one is given."""

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


def run(judged, mutants, results, jobs):
    """Tries all mutants whose outcome is not known yet: judged(mutant). Returns the seconds that one took."""
    missing = [mutant for mutant in mutants if mutant.key not in results.known]
    started = time.monotonic()
    spent = 0.0

    def timed(mutant):
        begun = time.monotonic()
        return mutant, judged(mutant), time.monotonic() - begun

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        futures = [pool.submit(timed, mutant) for mutant in missing]
        try:
            for done, future in enumerate(concurrent.futures.as_completed(futures), 1):
                mutant, result, seconds = future.result()
                spent += seconds
                results.add(mutant, result, seconds)
                if result == SURVIVED:
                    print("survived: " + shown(mutant), file=sys.stderr)
                if done % 25 == 0 or done == len(missing):
                    elapsed = time.monotonic() - started
                    print("%d of %d, %d s" % (done, len(missing), elapsed), file=sys.stderr, flush=True)
        except BaseException:
            pool.shutdown(cancel_futures=True)
            raise
    return spent / len(missing) if missing else 0.0


def report(mutants, results, seconds, all_of):
    """Prints what came out; True when it is good enough. `all_of`: the files of which every mutant was tried."""
    outcomes = collections.Counter(results.known[mutant.key] for mutant in mutants)
    survivors = [mutant for mutant in mutants if results.known[mutant.key] == SURVIVED]
    listed = listed_survivors()
    unlisted, excused = [], []
    for mutant in survivors:
        place = mutant.file, mutant.before, mutant.after
        (excused if listed[place] > 0 else unlisted).append(mutant)
        listed[place] -= 1
    for title, group in (("Survivors that are listed:", excused), ("Survivors that are not listed:", unlisted)):
        if group:
            print(title)
            for mutant in group:
                print("  " + shown(mutant))
    stale = [place for place, count in listed.items() if place[0] in all_of for _ in range(count)]
    if stale:
        print("Listed, but no longer surviving:")
        for place in stale:
            print("  %s: %s -> %s" % place)
    tried = outcomes[NOTICED] + outcomes[SURVIVED]
    score = 100.0 * outcomes[NOTICED] / tried if tried else 100.0
    print(
        "%d of %d noticed: %.1f %%. Not counted: %d that do not compile, %d with the original's object. %.2f s a mutant."
        % (outcomes[NOTICED], tried, score, outcomes[UNCOMPILED], outcomes[EQUAL], seconds)
    )
    return score >= FEWEST_NOTICED and not unlisted


def main():
    options = arguments()
    sources = {file: (ROOT / file).read_text() for file in chosen_files(options.files)}
    mutants = [mutant for file, text in sources.items() for mutant in mutants_of(file, text)]
    if options.list:
        for file, count in collections.Counter(mutant.file for mutant in mutants).items():
            print("%5d %s" % (count, file))
        for operator, count in collections.Counter(mutant.change.operator for mutant in mutants).most_common():
            print("%5d %s" % (count, operator))
        print("%5d in all" % len(mutants))
        return 0
    all_of = set(sources)
    if options.sample is not None and options.sample < len(mutants):
        mutants = random.Random(options.seed).sample(mutants, options.sample)
        mutants.sort(key=lambda mutant: (mutant.file, mutant.line))
        all_of = set()
    with tempfile.TemporaryDirectory(prefix="mutants.") as work:
        work = pathlib.Path(work)
        suite = Suite((ROOT / options.build).resolve(), work, sources)
        resource.setrlimit(resource.RLIMIT_DATA, (MEMORY, MEMORY))  # not of addresses: the leak checker reserves many
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        os.environ["LSAN_OPTIONS"] = "suppressions=%s:print_suppressions=0" % (ROOT / "tests/leaks.supp")
        measured = Stages(suite.linked(work))
        stages = {file: measured.of(file) for file in sources}
        leaks = measured.quick, measured.allowed(measured.quick, suite.linked(work, options=LEAKS))
        results = Results(options.resume, suite.digest)
        judged = functools.partial(outcome, suite, stages, leaks)
        seconds = run(judged, mutants, results, options.jobs)
    return 0 if report(mutants, results, seconds, all_of) else 1


if __name__ == "__main__":
    sys.exit(main())
