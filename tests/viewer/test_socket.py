# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The socket on which the viewer reports its state, when nobody reads from it.
import unittest

from harness import YELLOW, ViewerTest, document


class SlowReader(ViewerTest):
    def test_a_reader_that_does_not_read_does_not_stop_the_window(self):
        file = document("three-hundred.pdf")
        viewer = self.viewHits(file, self.hits(file, "page", pages=[0, 299]))
        viewer.pointAtPage()
        area = viewer.now()["area"]
        self.display.xdotool("key", "--delay", "5", *["ctrl+Next"] * 250)  # more states than the socket takes
        self.display.screen(lambda picture: not picture.find(YELLOW, area), "a page without marks")
        self.display.xdotool("key", "End")
        self.display.screen(lambda picture: picture.find(YELLOW, area), "the marks of the last page")
        viewer.until(lambda state: state["page"] == 300, "the state in which they are shown")


if __name__ == "__main__":
    unittest.main()
