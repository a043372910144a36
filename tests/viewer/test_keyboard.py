# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Without a mouse. A window manager gives new windows the focus.
import unittest

from harness import ViewerTest, document


class KeyboardOnly(ViewerTest):
    managed = True

    def test_from_the_start_to_the_end(self):
        file = document("three-hundred.pdf")
        viewer = self.viewHits(file, self.hits(file, "needle", [2, 5]))
        key = self.display.xdotool
        key("key", "F3")
        viewer.hit("hit 2 of 2")
        key("key", "ctrl+f")
        viewer.type("find", "page 7 of")
        viewer.shown(7)
        key("key", "Escape")
        viewer.noDialog()
        key("key", "Next")
        viewer.until(lambda state: state["drawn"]["scrollY"] > 0, "a page of the window down")
        key("key", "ctrl+l", "1", "1", "Return")
        viewer.shown(11)
        key("key", "F10", "Right", "Right", "Right", "Down", "Down", "Return")  # Go > Next Page
        viewer.shown(12)
        key("key", "ctrl+o")
        viewer.dialog("openFile")
        key("key", "Escape")
        viewer.noDialog()
        key("key", "ctrl+q")
        self.assertEqual(viewer.ends(), 0)

    def test_a_question_is_answered_by_keys(self):
        file = document("three-hundred.pdf")
        viewer = self.view(file, "--hits", self.hits(file, "needle", [2, 5], units="words", version="9"))
        viewer.dialog("alert")
        self.display.xdotool("key", "Return")
        viewer.noDialog()
        viewer.hit("hit 1 of 2")

    def test_escape_answers_no(self):
        file = document("three-hundred.pdf")
        viewer = self.view(file, "--hits", self.hits(file, "needle", [2, 5], units="words", version="9"),
                           errors=1)
        viewer.dialog("alert")
        self.display.xdotool("key", "Escape")
        viewer.noDialog()
        self.assertNotIn("hit 1", viewer.shown(1)["plugins"])

    def test_a_password_is_typed(self):
        viewer = self.view(document("encrypted.pdf"))
        viewer.type("password", "secret")
        viewer.until(lambda state: state["documents"] == ["encrypted.pdf"], "the document")
        viewer.shown(1)
        self.display.xdotool("key", "ctrl+Next")
        viewer.shown(2)


if __name__ == "__main__":
    unittest.main()
