# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The pixels on the screen after a plug-in has highlighted or registered text.
import unittest

from harness import FEEDBACK_PLUGIN, ViewerTest, document

HIGHLIGHTED = (0xB4, 0xD5, 0xFE)
GREEN = (0, 255, 0)


class Feedback(ViewerTest):
    def setUp(self):
        super().setUp()
        self.viewer = self.view(document("two-columns.pdf"), "--plugins-dir", FEEDBACK_PLUGIN)
        self.area = self.viewer.shown(1)["area"]
        self.viewer.until(lambda state: any(one["name"] == "f:D" for one in state["buttons"]), "buttons")

    def press(self, name):
        self.viewer.press("f:" + name)

    def endAlert(self):
        self.viewer.answer("alert", "OK")
        self.viewer.noDialog()

    def shows(self, color):
        return self.display.screen(lambda picture: picture.find(color, self.area), f"the colour {color}")

    def showsNeither(self, *colors):
        self.display.screen(lambda picture: not any(picture.find(color, self.area) for color in colors),
                            f"none of the colours {colors}")

    # The line around the current hit covers the edge of its mark.
    def assertSamePlace(self, painted, highlighted):
        for side in ("left", "top", "right", "bottom"):
            self.assertAlmostEqual(getattr(painted, side), getattr(highlighted, side), delta=1, msg=side)
        self.assertGreater(painted.count, highlighted.count / 2)

    def test_a_highlight_is_on_the_screen_until_a_second_call_or_a_drawing(self):
        self.press("H")
        self.shows(HIGHLIGHTED)
        self.press("I")
        self.showsNeither(HIGHLIGHTED)
        self.press("H")
        self.shows(HIGHLIGHTED)
        self.press("D")
        self.showsNeither(HIGHLIGHTED)

    def test_a_highlight_is_on_the_screen_before_its_plug_in_returns(self):
        self.press("A")
        self.viewer.dialog("alert")
        self.shows(HIGHLIGHTED)
        self.endAlert()
        self.shows(HIGHLIGHTED)

    def test_a_registration_is_highlighted_until_its_marks_are_painted(self):
        self.press("Q")
        self.viewer.dialog("alert")
        first = self.shows(HIGHLIGHTED)
        self.endAlert()
        painted = self.shows(GREEN)
        self.showsNeither(HIGHLIGHTED)
        self.assertSamePlace(painted, first)

    def test_a_registration_for_the_page_shown_is_painted_without_a_scroll(self):
        self.press("R")
        self.shows(GREEN)
        self.showsNeither(HIGHLIGHTED)

    def test_nothing_of_a_registration_remains_when_it_is_removed(self):
        self.press("R")
        self.shows(GREEN)
        self.press("U")
        self.showsNeither(HIGHLIGHTED, GREEN)

    def test_equal_ranges_are_marked_once_when_they_are_registered_again(self):
        self.press("R")
        count = self.shows(GREEN).count
        self.press("Q")  # replaces the first
        self.viewer.dialog("alert")
        self.assertEqual(self.shows(GREEN).count, count)
        self.showsNeither(HIGHLIGHTED)
        self.endAlert()
        self.assertEqual(self.shows(GREEN).count, count)

    def test_equal_ranges_are_highlighted_when_they_are_registered_after_their_removal(self):
        self.press("R")
        painted = self.shows(GREEN)
        self.press("U")
        self.showsNeither(HIGHLIGHTED, GREEN)
        self.press("Q")
        self.viewer.dialog("alert")
        self.assertSamePlace(painted, self.shows(HIGHLIGHTED))
        self.endAlert()
        self.assertEqual(self.shows(GREEN).count, painted.count)

    # After the click the viewer gets no event: the screen is looked at without it.
    def test_a_page_that_is_scrolled_in_several_drawings_is_drawn_again_each_time(self):
        self.press("R")
        top = self.shows(GREEN).top
        self.press("S")
        self.display.screen(lambda picture: picture.find(GREEN, self.area).top == top - 40, "the page 40 pixels further up")


if __name__ == "__main__":
    unittest.main()
