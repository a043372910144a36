# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# An alert of a plug-in: it asks about a highlight file of an unknown version of the word extraction.
import os
import subprocess
import unittest

from harness import HELPERS, NEXT, YELLOW, ViewerTest, document

QUESTION = ("The highlights for this document may be incorrect because of incompatible version of Tavrel. "
            "Display highlights anyway?")


# Without the line breaks of a dialog.
def unbroken(text):
    return "".join(text.split())


class Alert(ViewerTest):
    def ask(self, errors=0):
        file = document("three-hundred.pdf")
        hits = self.hits(file, "needle", [0, 3], units="words", version="9")
        self.viewer = self.view(file, "--hits", hits, errors=errors)
        return self.viewer.dialog("alert")

    def area(self):
        return self.viewer.now()["area"]

    def test_it_asks_in_the_plug_ins_words(self):
        dialog = self.ask()
        self.assertIn(unbroken(QUESTION), [unbroken(text) for text in dialog["texts"]])
        self.assertEqual([one["label"] for one in dialog["buttons"]], ["Yes", "No"])
        self.viewer.answer("alert", "Yes")
        self.viewer.noDialog()

    def test_yes_shows_the_marks(self):
        self.ask()
        self.viewer.answer("alert", "Yes")
        self.viewer.hit("hit 1 of 2")
        self.viewer.noDialog()
        self.display.screen(lambda picture: picture.find(YELLOW, self.area()), "a yellow mark")
        self.viewer.press(NEXT)
        self.viewer.shown(4)

    def test_no_shows_none(self):
        self.ask(errors=1)  # the plug-in that attached the file reports that it marks nothing
        self.viewer.answer("alert", "No")
        self.viewer.noDialog()
        state = self.viewer.shown(1)
        self.assertEqual(state["drawn"]["marks"], 0)
        self.assertFalse(self.viewer.button(NEXT)["enabled"])
        self.viewer.key("ctrl+Next")
        self.viewer.shown(2)
        self.assertIsNone(self.display.screenshot().find(YELLOW, self.area()))

    def test_buttons_pressed_meanwhile_do_nothing(self):
        self.ask()
        moment = len(self.viewer.past)
        for name in ("NextPage", "ZoomIn", "FindDialog", "Open"):
            self.viewer.press(name)
        self.viewer.answer("alert", "Yes")
        self.viewer.hit("hit 1 of 2")
        reported = self.viewer.since(moment)
        self.assertEqual({state["page"] for state in reported}, {1})
        self.assertLessEqual({one["name"] for state in reported for one in state["dialogs"]}, {"alert"})
        self.assertEqual(len({state["zoom"] for state in reported if state["drawn"]["there"]}), 1)

    def test_an_area_uncovered_meanwhile_is_drawn(self):
        self.ask()
        area = self.area()
        before = self.display.settled()
        for _ in range(3):
            with subprocess.Popen([os.path.join(HELPERS, "outer")], env=self.display.environment,
                                  stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as cover:
                cover.stdout.readline()
                self.display.screen(lambda picture: not picture.same(before, area), "another window in front")
                cover.stdin.write("destroy\n")
                cover.stdin.flush()
                cover.stdout.readline()
        self.display.xdotool("mousemove", 300, 300, "mousemove", 500, 500)
        if not self.managed:  # a window manager may raise the dialog
            self.display.screen(lambda picture: picture.same(before, area), "all as it was")
        self.viewer.answer("alert", "Yes")
        self.viewer.hit("hit 1 of 2")

    def test_a_window_that_changes_its_size_meanwhile_follows(self):
        self.ask()
        width = self.area()["width"]
        self.display.xdotool("search", "--name", "^three-hundred.pdf", "windowsize", 700, 600)
        self.viewer.until(lambda state: state["area"]["width"] < width, "a smaller page area")
        self.display.screenshot()
        self.viewer.answer("alert", "Yes")
        self.viewer.hit("hit 1 of 2")
        self.viewer.shown(1)


class AlertManaged(Alert):
    managed = True


if __name__ == "__main__":
    unittest.main()
