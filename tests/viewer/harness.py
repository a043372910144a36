# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# A private display, and a viewer on it that reports every change of its state. Nothing here sleeps for a fixed time:
# tests wait for the viewer's states, for the ends of programs and, where no state shows a change, for the screen, each
# with a timeout after which the test fails.
import json
import os
import re
import select
import shutil
import socket
import subprocess
import tempfile
import time
import unittest

from pixels import Picture

TIMEOUT = int(os.environ.get("TAVREL_TEST_TIMEOUT", "30"))  # seconds; half a second is typical

TAVREL = os.environ["TAVREL"]
DOCUMENTS = os.environ["TAVREL_DOCUMENTS"]
HELPERS = os.environ["TAVREL_HELPERS"]
BUILT_PLUGINS = os.environ["TAVREL_BUILT_PLUGINS"]
TEST_PLUGINS = os.environ["TAVREL_TEST_PLUGINS"]
BUTTONS_PLUGIN, FEEDBACK_PLUGIN, JUMPS_PLUGIN = (os.path.join(os.environ["TAVREL_VIEWER_PLUGINS"], name)
                                                for name in ("buttons", "feedback", "jumps"))
SCREENSHOTS = os.environ.get("TAVREL_SCREENSHOTS") or os.environ["TAVREL_SCREENSHOTS_OTHERWISE"]

NEXT, PREVIOUS = "TavrelGLT:Next", "TavrelGLT:Prev"
YELLOW = (255, 255, 0)
FOUND = (0x8F, 0xB8, 0xFF)  # the current match of Find
ACTIVE_FRAME = (0x5F, 0x9E, 0xA0)
ALSO_FOUND = (0xD8, 0xE6, 0xFF)


def document(name):
    return os.path.join(DOCUMENTS, name)


def deadline():
    return time.monotonic() + TIMEOUT


class Display:
    def __init__(self, managed=False):
        self.folder = tempfile.mkdtemp(prefix="tavrel-viewer-test-")
        self.environment = {name: value for name, value in os.environ.items() if not name.startswith("TAVREL")}
        # Without the user's settings, and with the plug-ins of this build.
        self.environment.update(HOME=self.folder, LC_ALL="C.UTF-8", XENVIRONMENT="/dev/null",
                                TAVREL_PLUGIN_PATH=BUILT_PLUGINS)
        reading, writing = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-nolisten", "tcp", "-noreset", "-extension", "GLX", "-screen", "0",
             "1280x1024x24"], pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writing)
        with open(reading) as stream:
            if not select.select([stream], [], [], TIMEOUT)[0]:
                raise AssertionError("Xvfb does not start")
            self.environment["DISPLAY"] = ":" + stream.readline().strip()
        self.managed = managed
        self.manager = None
        if managed:
            self.manager = subprocess.Popen(["mwm"], env=self.environment, cwd=self.folder, stdout=subprocess.DEVNULL,
                                            stderr=subprocess.DEVNULL)
            self.run(os.path.join(HELPERS, "managed"), "_MOTIF_WM_INFO")

    def run(self, *command):
        subprocess.run(command, env=self.environment, check=True, timeout=TIMEOUT, cwd=self.folder)

    def xdotool(self, *words):
        self.run("xdotool", *[str(word) for word in words])

    def screenshot(self, file=None):
        file = file or os.path.join(self.folder, "screen.png")
        self.run(os.path.join(HELPERS, "screenshot"), file)
        return Picture(file)

    # Takes pictures until one fulfils the predicate: the screen changes shortly after the state.
    def screen(self, predicate, what, file=None):
        end = deadline()
        while True:
            picture = self.screenshot(file)
            result = predicate(picture)
            if result:
                return result
            if time.monotonic() > end:
                raise AssertionError(f"the screen never showed {what}")

    # A picture of the screen after all drawing.
    def settled(self):
        last = [self.screenshot()]

        def same(picture):
            before, last[0] = last[0], picture
            return picture if picture.same(before, {"x": 0, "y": 0, "width": 1280, "height": 1024}) else None

        return self.screen(same, "the same twice")

    def kill(self):
        self.server.kill()
        self.server.wait()

    def close(self):
        for process in (self.manager, self.server):
            if process is not None:
                process.kill()
                process.wait(TIMEOUT)
        shutil.rmtree(self.folder)


class Viewer:
    _number = 0

    def __init__(self, display, *arguments, command=("view",), stdin=subprocess.DEVNULL):
        Viewer._number += 1
        self.display = display
        self.state = {}
        self.past = []  # every state that was reported
        self._unread = b""
        self.ended = False  # as expected
        self._active = False  # whether its window has the focus, under a window manager
        name = os.path.join(display.folder, f"viewer-{Viewer._number}")
        self._stderr = open(name + ".stderr", "w+b")
        self._listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self._listener.bind(name + ".socket")
        self._listener.listen(1)
        self._connection = None
        self.process = subprocess.Popen([TAVREL, *command, *map(str, arguments), "--test-socket", name + ".socket"],
                                        env=display.environment, cwd=display.folder, stdin=stdin,
                                        stdout=subprocess.DEVNULL, stderr=self._stderr)

    # ---- its states

    def _fail(self, what):
        last = json.dumps(self.state, ensure_ascii=False)
        raise AssertionError(f"never came: {what}\nstandard error: {self.stderrText()}\nlast state: {last}")

    # Reads reported states; waits if there are none. False at the end of the connection or after the timeout.
    def _read(self, seconds):
        waited = self._connection or self._listener
        if not select.select([waited], [], [], seconds)[0]:
            return seconds == 0
        if self._connection is None:
            self._connection = self._listener.accept()[0]
            return True
        try:
            received = self._connection.recv(1 << 20)
        except ConnectionResetError:
            received = b""
        *lines, self._unread = (self._unread + received).split(b"\n")
        for line in lines:
            self.state = json.loads(line)
            self.past.append(self.state)
        return received != b""

    # Waits for a state that fulfils the predicate, and returns it. Intermediate states count, too.
    def until(self, predicate, what):
        end = deadline()
        looked = len(self.past) - 1 if self.past else 0
        while True:
            for state in self.past[looked:]:
                if predicate(state):
                    return state
            looked = len(self.past)
            left = end - time.monotonic()
            if left <= 0 or (self._connection is None and self.process.poll() is not None) or not self._read(left):
                self._fail(what)

    # The last state, of all that have arrived by now.
    def now(self):
        while self._connection is not None and select.select([self._connection], [], [], 0)[0]:
            if not self._read(0):
                break
        return self.state

    # The states since a moment, which is a former `len(viewer.past)`.
    def since(self, moment):
        return self.past[moment:]

    def shown(self, page=None):
        def there(state):
            drawn = state["drawn"]
            placed = not self.display.managed or state["area"]["x"] > 0
            return drawn["there"] and placed and (page is None or drawn["page"] == page)

        state = self.until(there, f"page {page or 'any'} drawn")
        if self.display.managed and not self._active:
            def active(picture):
                area = self.now()["area"]
                return picture.find(ACTIVE_FRAME, dict(area, y=0, height=self.state["buttons"][0]["y"]))

            self.display.screen(active, "a window that has the focus")
            self._active = True
        return state

    def hit(self, text):
        return self.until(lambda state: text in state["plugins"] and state["drawn"]["there"], f"status {text!r}")

    def says(self, text):
        return self.until(lambda state: text in state["status"], f"status line {text!r}")

    # The same, also if another message has replaced it meanwhile.
    def said(self, text):
        return self.until(lambda state: any(text in one["status"] for one in self.past), f"status line {text!r}")

    # Waits for a dialog at its final position, and returns it.
    def dialog(self, name):
        def there(state):
            return next((one for one in state["dialogs"] if one["name"] == name), None)

        def laidOut(state):
            one = there(state)
            return one is not None and all(part["x"] >= one["x"] and part["width"] > 1
                                           for part in [*one["buttons"], *one["fields"]])

        self.until(laidOut, f"dialog {name!r}")
        if self.display.managed:
            self.display.screen(lambda picture: laidOut(self.now()) and framed(picture, there(self.state)),
                                f"dialog {name!r} with the focus")
        return there(self.now())

    def noDialog(self):
        return self.until(lambda state: not state["dialogs"], "no dialog")

    def stderrText(self):
        self._stderr.seek(0)
        return self._stderr.read().decode()

    def stderrLines(self):
        return self.stderrText().splitlines()

    # ---- keys and clicks

    def button(self, name):
        return next(one for one in self.now()["buttons"] if one["name"] == name)

    def click(self, area, button=1, keys=()):
        held = [word for key in keys for word in ("keydown", key)]
        released = [word for key in keys for word in ("keyup", key)]
        self.display.xdotool("mousemove", *middle(area), *held, "click", button, *released)

    def press(self, name, keys=()):
        self.click(self.button(name), keys=keys)

    def pointAtPage(self):
        self.display.xdotool("mousemove", *middle(self.now()["area"]))

    # Without a window manager the window below the pointer gets the keys.
    def key(self, *keys):
        if not self.display.managed:
            self.pointAtPage()
        self.display.xdotool("key", *keys)

    def wheel(self, button, keys=()):
        self.click(self.now()["area"], button, keys)

    def answer(self, name, label):
        dialog = self.dialog(name)
        self.click(next(one for one in dialog["buttons"] if one["label"] == label))

    # Types into an empty field of a dialog.
    def type(self, name, text, then="Return", field=0):
        dialog = self.dialog(name)
        if not self.display.managed:
            self.display.xdotool("mousemove", *middle(dialog["fields"][field]))
        self.display.xdotool("type", "--delay", "1", text)
        self.until(lambda state: any(len(one["fields"][field]["text"]) >= len(text)
                                     for one in state["dialogs"] if one["name"] == name), f"{text!r} typed")
        if then:
            self.display.xdotool("key", then)

    # ---- its end

    def ends(self):
        self.ended = True
        end = deadline()
        while self._connection is not None and self._read(max(0.1, end - time.monotonic())):
            if time.monotonic() > end:
                self._fail("its end")
        return self.process.wait(TIMEOUT)

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        if self._connection is not None:
            self._connection.close()
            self._connection = None
        self._listener.close()
        self._stderr.close()


# Whether a window manager's frame is above an area, in the colour of the window that has the focus.
def framed(picture, area):
    above = {"x": area["x"] + area["width"] / 2, "y": area["y"] - 4, "width": 8, "height": 3}
    return picture.find(ACTIVE_FRAME, above) is not None


def middle(area):
    return int(area["x"] + area["width"] / 2), int(area["y"] + area["height"] / 2)


class ViewerTest(unittest.TestCase):
    managed = False

    @classmethod
    def setUpClass(cls):
        cls.display = Display(cls.managed)
        cls.addClassCleanup(cls.display.close)

    def setUp(self):
        # The pointer's position is independent of the previous test.
        self.display.xdotool("mousemove", 1279, 1023)

    # A viewer that ends with the test. It must not crash, nor print more than `errors` lines to standard error.
    def view(self, *arguments, errors=0, **others):
        viewer = Viewer(self.display, *arguments, **others)
        self.addCleanup(viewer.close)
        self.addCleanup(self._endWell, viewer, errors)
        return viewer

    # A viewer with a highlight file; returns when the first hit is shown.
    def viewHits(self, file, hits, *arguments, **others):
        viewer = self.view(file, "--hits", hits, *arguments, **others)
        viewer.hit("hit 1 of")
        viewer.shown()
        viewer.until(lambda state: any(one["name"] == NEXT and one["enabled"] for one in state["buttons"]), "buttons")
        return viewer

    def _endWell(self, viewer, errors):
        code = viewer.process.poll()
        if code is not None and not viewer.ended:
            self.fail(f"the viewer ended unexpectedly, status {code}: {viewer.stderrText()}")
        if errors is not None:
            self.assertEqual(len(viewer.stderrLines()), errors, viewer.stderrText())

    # Writes the user's resource file for viewers that this test starts.
    def resources(self, *lines):
        file = os.path.join(self.folder(), "resources")
        with open(file, "w") as stream:
            stream.writelines(line + "\n" for line in lines)
        environment = self.display.environment
        self.addCleanup(environment.__setitem__, "XENVIRONMENT", environment["XENVIRONMENT"])
        environment["XENVIRONMENT"] = file

    def folder(self):
        return tempfile.mkdtemp(dir=self.display.folder)

    # A highlight file of the words' hits on the given pages, which count from 0; `body` changes attributes of <Body>.
    def hits(self, file, words, pages=None, units="characters", **body):
        output = os.path.join(self.folder(), "hits.xml")
        self.display.run(TAVREL, "hits", file, *words.split(), "--units", units, "--color", "FFFF00", "--mode",
                         "active", "-o", output)
        with open(output) as stream:
            text = stream.read()
        if pages is not None:
            text = re.sub(r'<loc pg="(\d+)".*\n', lambda loc: loc[0] if int(loc[1]) in pages else "", text)
        for name, value in body.items():
            text = re.sub(f'(<Body.*){name}="[^"]*"', rf'\1{name}="{value}"', text)
        with open(output, "w") as stream:
            stream.write(text)
        return output

    # A copy of a document, to be changed.
    def copy(self, name):
        return shutil.copy(document(name), self.folder())
