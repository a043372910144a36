# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# What tests of the dialog that asks for a file share: a folder with papers, and the dialog open in it.
import os
import shutil

from harness import ViewerTest, document

NAMES = ["2024/", "archive/", "report 1.pdf", "report 2.PDF", "Summary.pdf", "\u00dcbersicht.pdf"]


class OpenTest(ViewerTest):
    managed = True

    def setUp(self):
        super().setUp()
        self.home = self.folder()
        environment = self.display.environment
        self.addCleanup(environment.__setitem__, "HOME", environment["HOME"])
        environment["HOME"] = self.home
        self.papers = os.path.join(self.home, "papers")
        for name in ("Documents", "papers/2024", "papers/archive"):
            os.makedirs(os.path.join(self.home, name))
        for name in ("report 1.pdf", "report 2.PDF", "Summary.pdf", "\u00dcbersicht.pdf", "2024/new.pdf", ".hidden.pdf"):
            shutil.copy(document("cjk.pdf"), os.path.join(self.papers, name))
        shutil.copy(document("cjk.pdf"), os.path.join(self.papers, "no ending"))

    # Has the dialog open, in the folder of the papers.
    def openDialog(self, *arguments):
        self.viewer = self.view(os.path.join(self.papers, "Summary.pdf"), *arguments)
        self.viewer.shown(1)
        self.keys("ctrl+o")
        self.dialog = self.viewer.dialog("openFile")
        self.lists(NAMES)

    def keys(self, *names):
        self.display.xdotool("key", *names)

    def types(self, text):
        self.display.xdotool("type", "--delay", "1", text)

    def part(self, state, kind, name):
        return next((one for dialog in state["dialogs"] for one in dialog[kind] if one["name"] == name), None)

    def shows(self, predicate, what):
        return self.viewer.until(lambda state: state["dialogs"] and predicate(state), what)

    # Waits for these names, of which one may have to be selected.
    def lists(self, names, selected=None):
        def there(state):
            files = self.part(state, "lists", "files")
            chosen = files["items"][files["selected"]] if files["selected"] >= 0 else None
            return files["items"] == names and (selected is None or chosen == selected)

        self.shows(there, f"the names {names}, {selected} selected")

    def hasText(self, text):
        self.shows(lambda state: self.part(state, "fields", "fileName")["text"] == text, f"{text!r} in the field")

    def says(self, text):
        self.shows(lambda state: any(text in one for one in state["dialogs"][0]["texts"]), f"the message {text!r}")

    def opens(self, name):
        self.viewer.noDialog()
        self.viewer.until(lambda state: name in state["documents"], f"{name} open")

    # Clicks on an item of a list.
    def click(self, name, item, times=1):
        area = self.part(self.viewer.now(), "lists", name)
        picture = self.display.settled()
        rows = rowsOf(picture, area)
        row = rows[area["items"].index(item)]
        self.display.xdotool("mousemove", area["x"] + 20, row, "click", "--repeat", times, "--delay", "20", 1)


# The middles of the lines of text in a list, from the top.
def rowsOf(picture, area):
    rows, begin = [], None
    for y in range(area["y"] + 3, area["y"] + area["height"] - 3):
        line = {"x": area["x"] + 4, "y": y, "width": area["width"] - 8, "height": 1}
        if picture.darkest(line) < 128:
            begin = y if begin is None else begin
        elif begin is not None:
            rows.append((begin + y) // 2)
            begin = None
    return rows
