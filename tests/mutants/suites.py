# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
"""The suites of mutants.py: which test programs test which sources. Builds the programs, relinks them and runs them.

A suite is the sources of some libraries and the test programs that link them. Tests may start further programs, which
are then beside the test program as in the build tree. All work is done on copies in a temporary directory.
"""

import collections
import functools
import hashlib
import json
import os
import pathlib
import shlex
import shutil
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
SLOW = 0.01  # seconds: a slow test is run after all quick ones
LONGEST_RUN = 60  # seconds
LEAKS = "-fsanitize=leak"
STARTED = "libexec"  # the directory of programs that tests start, beside the directory of the tests
BUILD_SETTINGS = [
    "-DCMAKE_CXX_COMPILER=g++",
    "-DCMAKE_BUILD_TYPE=RelWithDebInfo",
    "-DCMAKE_COMPILE_WARNING_AS_ERROR=ON",
    "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O2 -g0 -DNDEBUG",  # the gcc preset's, without debugging information
]

# A suite: the directory of its sources and those that are left out; the libraries or programs that they are compiled
# into, and their directory; the directories that its sources include from; its test programs, the slowest last; the
# programs that the tests start, and whether these have the mutants, too; the percentage of its mutants that must be
# noticed.
Spec = collections.namedtuple(
    "Spec",
    "name sources left_out libraries library_folder headers programs started started_have_mutants fewest_noticed",
    defaults=((), False, 90.0),
)

READERS = ("tavrel-document", "tavrel-structure")
# What starts processes for documents and speaks with them.
PROCESS_PART = {
    "host/document/" + name
    for name in ("channel.cpp", "messages.cpp", "orders.cpp", "process.cpp", "processes.cpp", "wire.cpp", "worker.cpp")
}


def all_but(directory, kept):
    return {path.relative_to(ROOT).as_posix() for path in (ROOT / directory).glob("**/*.cpp")} - kept


SUITES = [
    Spec(
        name="plugin",
        sources="plugin",
        left_out={"plugin/pi/PIMain.cpp"},  # one line, covered by the tests of the library file
        libraries=("glint",),
        library_folder="plugin",
        headers=["plugin", "sdk"],
        programs=["plugin_test"],
        fewest_noticed=95.0,
    ),
    Spec(
        name="kernel",
        sources="host/kernel",
        left_out=set(),
        libraries=("host_kernel",),
        library_folder="host",
        headers=["host", "sdk"],
        programs=["kernel_test", "view_test", "plugins_test"],
    ),
    Spec(
        name="document",
        sources="host/document",
        left_out=PROCESS_PART,
        libraries=("host_document",),
        library_folder="host",
        headers=["host", "sdk"],
        programs=["document_test", "search_test"],
        started=READERS,
    ),
    # The processes have no mutants: then both ends must agree.
    Spec(
        name="processes",
        sources="host/document",
        left_out=all_but("host/document", PROCESS_PART),
        libraries=("host_document",),
        library_folder="host",
        headers=["host", "sdk"],
        programs=["document_test"],
        started=READERS,
    ),
    Spec(
        name="readers",
        sources="document",
        # What a process may not do is tried by a stand-in, which is not relinked. Most of the file is a list of system
        # calls, and which of them are needed depends on the machine's libraries.
        left_out={"document/confinement.cpp"},
        libraries=("document_process", "document_pdf", "document_structure", *READERS),
        library_folder="document",
        headers=["document", "host", "sdk"],
        programs=["document_test", "search_test"],
        started=READERS,
        started_have_mutants=True,
    ),
    Spec(
        name="view",
        sources="host/view",
        left_out=set(),
        libraries=("host_view",),
        library_folder="host",
        headers=["host", "sdk"],
        programs=["view_test", "desktop_test", "render_test", "plugins_test", "viewer_model_test"],
        started=READERS,
    ),
]


def give_up(message):
    print(message, file=sys.stderr)
    sys.exit(2)


def checked(command, **options):
    run = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, **options)
    if run.returncode != 0:
        give_up(run.stdout + "failed: " + " ".join(map(str, command)))
    return run.stdout


def quiet(command, **options):
    run = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False, **options)
    return run.returncode == 0


def sources_of(spec):
    files = sorted(path.relative_to(ROOT).as_posix() for path in ROOT.glob(spec.sources + "/**/*.cpp"))
    return [file for file in files if file not in spec.left_out]


def passes(program, selection, seconds):
    """Whether the selected tests pass in time. Their temporary files are made beside the program."""
    command = [str(program), "--gtest_fail_fast", "--gtest_brief=1", "--gtest_filter=" + selection]
    process = subprocess.Popen(
        command,
        stdin=subprocess.DEVNULL,
        stdout=subprocess.DEVNULL,
        stderr=subprocess.DEVNULL,
        cwd=program.parent,
        env={**os.environ, "TMPDIR": str(program.parent)},
        start_new_session=True,
    )
    try:
        return process.wait(timeout=seconds) == 0
    except subprocess.TimeoutExpired:
        return False
    finally:
        try:
            os.killpg(process.pid, signal.SIGKILL)  # includes the processes that the tests have started
        except ProcessLookupError:
            pass
        process.wait()


class Program:
    """A program, split into the objects that mutants replace and the rest."""

    def __init__(self, spec, name, build, work):
        self.name, self.libraries = name, spec.libraries
        self.work = work / name
        self.work.mkdir()
        line = checked(["ninja", "-C", build, "-t", "commands", name]).splitlines()[-1]
        words = shlex.split(next(part for part in line.split(" && ") if " -o " in part))
        output = words.index("-o")
        self.objects, tests, self.rest = {}, [], []
        self.linked_libraries = set()
        for word in words[1:output] + words[output + 2 :]:
            library = self._library_of(word)
            self.linked_libraries.add(library)
            if library is not None and word.endswith(".o"):
                self._keep(build, word, library, spec.library_folder)
            elif word.endswith(".o"):
                tests.append(word)
            elif word.endswith((".a", ".so")) and not word.startswith("/"):
                copy = self.work / word
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(build / word, copy)
                self.rest.append(copy)
            else:
                self.rest.append(word)
        self.kept = [self.work / "tests.o"] if tests else []
        if tests:
            checked(["ld.gold", "-r", *tests, "-o", *self.kept], cwd=build)
        self.link = [words[0], "-fuse-ld=gold", "-s"]
        self.stages = {}
        self.leaks = None

    def _library_of(self, word):
        """The suite's library that an object or an archive of a link command belongs to, or None."""
        for library in self.libraries:
            if "/%s.dir/" % library in word or os.path.basename(word) == "lib%s.a" % library:
                return library
        return None

    def has(self, library):
        """Whether the program contains the library's sources."""
        return library in self.linked_libraries

    def _keep(self, build, word, library, folder):
        copy = self.work / "kept" / word
        copy.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(build / word, copy)
        self.objects[folder + "/" + word.split("/%s.dir/" % library)[1][: -len(".o")]] = copy

    def linked(self, directory, replaced=None, path=None, options=()):
        """The program with one object replaced; None if it cannot be linked.

        The new object comes first: the linker takes no object from an archive if its symbols are already defined.
        """
        objects = [path if file == replaced else object for file, object in self.objects.items()]
        if path is not None and replaced not in self.objects:
            objects.insert(0, path)
        program = directory / self.name
        if not quiet([*self.link, *options, "-o", program, *objects, *self.kept, *self.rest]):
            if replaced is None:
                give_up("cannot be linked: %s %s" % (self.name, " ".join(options)))
            return None
        return program

    def measure(self, folders):
        """Measures which tests are quick, and sets the order of the tests for the sources of each directory."""
        program = self.linked(self.work)
        listing, times = self.work / "listing.json", self.work / "times.json"
        checked([program, "--gtest_list_tests", "--gtest_output=json:%s" % listing], cwd=self.work)
        checked([program, "--gtest_brief=1", "--gtest_output=json:%s" % times], cwd=self.work)
        by_folder, slow = collections.defaultdict(set), []
        for suite in json.loads(listing.read_text())["testsuites"]:
            for test in suite["testsuite"]:
                by_folder[pathlib.Path(test["file"]).parent.name].add(suite["name"])
        for suite in json.loads(times.read_text())["testsuites"]:
            for test in suite["testsuite"]:
                if float(test["time"].rstrip("s")) > SLOW:
                    slow.append("%s.%s" % (suite["name"], test["name"]))
        slow_ones = ":".join(slow)
        for folder in folders:
            own = [suite + ".*" for suite in sorted(by_folder[folder])]
            quick = [":".join(own) + "-" + slow_ones] if own else []
            quick.append("-" + ":".join(own + slow))
            self.stages[folder] = [[(stage, self._allowed(program, stage)) for stage in quick]]
            self.stages[folder].append([(slow_ones, self._allowed(program, slow_ones))] if slow else [])
        checking = self.linked(self.work, options=[LEAKS])
        if passes(checking, "-" + slow_ones, 120):
            self.leaks = "-" + slow_ones, self._allowed(checking, "-" + slow_ones)
        else:
            print("%s: has leaks without a change, so leaks of mutants are not searched" % self.name, file=sys.stderr)

    @functools.cache
    def _allowed(self, program, stage):
        """The seconds that a stage may take, based on its time without a change."""
        started = time.monotonic()
        if not passes(program, stage, 120):
            give_up("%s does not pass without a change: %s" % (self.name, stage))
        return min(LONGEST_RUN, 2 + 10 * (time.monotonic() - started))


class Suite:
    """A suite that is built and ready to try mutants of `sources`, a dictionary of texts by file."""

    def __init__(self, spec, build, work, sources):
        self.spec, self.work, self.sources = spec, work / spec.name, sources
        self.work.mkdir()
        if not (build / "build.ninja").exists():
            checked(["cmake", "-S", ROOT, "-B", build, "-G", "Ninja", *BUILD_SETTINGS])
        checked(["ninja", "-C", build, *spec.programs, *spec.started])
        self.compile, self.library_of = {}, {}
        self._take_compile_commands(build)
        self.original = {}
        for file, text in sources.items():
            self.original[file] = self.object_of(file, text, self.work / "original" / file)
            if self.original[file] is None:
                give_up("does not compile: " + file)
        folders = sorted({pathlib.Path(file).parent.name for file in sources})
        self.programs = [Program(spec, name, build, self.work) for name in spec.programs]
        self.started = [Program(spec, name, build, self.work) for name in spec.started]
        for program in self.programs + self.started:
            for file in program.objects:
                program.objects[file] = self.original.get(file, program.objects[file])
        (self.work / STARTED).mkdir()
        for program in self.started:
            program.linked(self.work / STARTED)
        for program in self.programs:
            program.measure(folders)
        digest = hashlib.sha1(LEAKS.encode())
        for program in self.programs:
            for kept in program.kept:
                digest.update(kept.read_bytes())
        self.digest = digest.hexdigest()[:12]

    def _take_compile_commands(self, build):
        """Takes the command and the library of each source; it compiles against copies of the headers, without warnings."""
        for part in self.spec.headers:
            shutil.copytree(ROOT / part, self.work / part)
        for entry in json.loads((build / "compile_commands.json").read_text()):
            file = os.path.relpath(entry["file"], ROOT)
            library = next((name for name in self.spec.libraries if "/%s.dir/" % name in entry["command"]), None)
            if file in self.sources and library is not None:
                words = shlex.split(entry["command"])
                words = words[: words.index("-o")]
                self.library_of[file] = library
                self.compile[file] = [word.replace("-I" + str(ROOT), "-I" + str(self.work)) for word in words] + ["-w"]

    def object_of(self, file, text, directory):
        """The object of the text instead of the file, or None. The source keeps its name, because the object contains it."""
        directory.mkdir(parents=True, exist_ok=True)
        source = directory / os.path.basename(file)
        source.write_text(text)
        path = source.with_suffix(".o")
        return path if quiet(self.compile[file] + ["-o", str(path), "-c", str(source)]) else None

    def notices(self, file, path, directory):
        """Whether a test notices a changed object; None if it cannot be linked.

        Runs the quick tests of all programs first, then the slow ones, then the quick ones with the leak checker.
        """
        folder = pathlib.Path(file).parent.name
        library = self.library_of[file]
        if not self._link_started(directory, file, path):
            return None
        tested = directory / "bin"
        tested.mkdir()
        linked = {}
        for speed in (0, 1):
            for program in self.programs:
                for selection, seconds in program.stages[folder][speed]:
                    if program not in linked:
                        changed = (file, path) if program.has(library) else ()
                        linked[program] = program.linked(tested, *changed)
                    if linked[program] is None:
                        return None
                    if not passes(linked[program], selection, seconds):
                        return True
        for program in self.programs:
            if program.leaks is not None and program.has(library):
                checking = program.linked(tested, file, path, [LEAKS])
                if checking is not None and not passes(checking, *program.leaks):
                    return True
        return False

    def _link_started(self, directory, file, path):
        """Links the programs that tests start, for those in directory/bin. False if that is not possible."""
        if not self.spec.started_have_mutants:
            (directory / STARTED).symlink_to(self.work / STARTED)
            return True
        (directory / STARTED).mkdir()
        for program in self.started:
            if not program.has(self.library_of[file]):
                (directory / STARTED / program.name).symlink_to(self.work / STARTED / program.name)
            elif program.linked(directory / STARTED, file, path) is None:
                return False
        return True
