# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The scroll bar beside the page.
import unittest

from harness import ViewerTest, document

STEPS = 6


class ScrollBar(ViewerTest):
    """Four pages. The trough's repetition is off: under load a click may last long."""

    def start(self, *arguments):
        self.viewer = self.view(document("two-columns.pdf"), "--xrm", "Tavrel*verticalBar.initialDelay: 100000",
                                *arguments)
        return self.viewer.shown(1)

    def bar(self, y):
        area = self.viewer.now()["area"]
        return area["x"] + area["width"] + 5, int(area["y"] + y)

    # The positions after each of some steps.
    def positions(self, count, step):
        result = []
        for _ in range(count):
            before = self.place(self.viewer.now())
            step()
            state = self.viewer.until(lambda state: self.place(state) != before, "another position")
            result.append(self.place(state))
        return result

    def place(self, state):
        return state["drawn"]["page"], state["drawn"]["scrollY"]

    def press(self, y, button=1):
        self.display.xdotool("mousemove", *self.bar(y), "click", button)

    def compare(self, *arguments):
        self.start(*arguments)
        start = self.place(self.viewer.now())
        byKeys = self.positions(STEPS, lambda: self.viewer.key("Next"))
        back = self.positions(STEPS, lambda: self.viewer.key("Prior"))
        self.assertEqual(self.place(self.viewer.now()), start)
        height = self.viewer.now()["area"]["height"]
        self.assertEqual(self.positions(STEPS, lambda: self.press(height - 3)), byKeys)
        self.assertEqual(self.positions(STEPS, lambda: self.press(2)), back)

    def test_the_trough_does_what_page_down_and_page_up_do(self):
        self.compare("--geometry", "700x500")

    def test_the_trough_does_what_the_keys_do_in_a_window_of_another_size(self):
        self.compare("--geometry", "533x377")

    def test_the_trough_does_what_the_keys_do_at_twice_the_size(self):
        self.compare("--geometry", "700x707", "--xrm", "Xft.dpi: 192")

    def test_the_wheel_above_the_trough_scrolls_as_on_the_page(self):
        self.start("--geometry", "700x500")
        self.press(300, button=5)
        self.viewer.until(lambda state: state["drawn"]["scrollY"] == 90, "down")
        self.press(300, button=4)
        self.viewer.until(lambda state: state["drawn"]["scrollY"] == 0, "up")

    def test_the_slider_reaches_the_end_and_the_start(self):
        self.start("--geometry", "700x500")
        height = self.viewer.now()["area"]["height"]
        self.display.xdotool("mousemove", *self.bar(20), "mousedown", 1, "mousemove", *self.bar(height / 2), "mousemove",
                             *self.bar(height - 2), "mouseup", 1)
        margins = 24
        end = 4, self.viewer.now()["drawn"]["height"] - (height - margins)
        self.viewer.until(lambda state: self.place(state) == end, "the end")
        self.display.xdotool("mousemove", *self.bar(height - 20), "mousedown", 1, "mousemove", *self.bar(height / 2),
                             "mousemove", *self.bar(1), "mouseup", 1)
        self.viewer.until(lambda state: self.place(state) == (1, 0), "the start")


if __name__ == "__main__":
    unittest.main()
