# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The side panel, with the list of hits.
import unittest

from harness import FEEDBACK_PLUGIN, ViewerTest, document

MARKED = (0xFF, 0xE9, 0x8A)


class SidePanel(ViewerTest):
    def setUp(self):
        super().setUp()
        self.file = document("cloth.pdf")
        self.viewer = self.viewHits(self.file, self.hits(self.file, "another"), "--geometry", "900x500+0+0")
        self.viewer.key("F9")
        self.panel = self.filled()

    # The panel with the texts of all visible rows.
    def filled(self, first=None):
        def there(state):
            panel = state["panel"]
            return panel["shown"] and panel["texts"] and all(panel["texts"]) and first in (None, panel["first"])

        return self.viewer.until(there, "a filled panel")["panel"]

    def current(self, row):
        return self.viewer.until(lambda state: state["panel"]["current"] == row, f"row {row}")

    def click(self, index):
        panel = self.viewer.now()["panel"]
        self.display.xdotool("mousemove", int(panel["x"]) + 60, int(panel["y"] + (index + 0.5) * panel["rowHeight"]),
                             "click", 1)

    # The window manager or the pointer decides who has the keyboard: without one the pointer is kept off the page.
    def type(self, *keys):
        self.display.xdotool("key", *keys)

    def test_lists_all_hits_with_their_lines(self):
        self.assertEqual(self.panel["title"], "Hits (320)")
        self.assertEqual(self.panel["current"], 0)
        self.assertGreater(len(self.panel["texts"]), 10)
        for text in self.panel["texts"]:
            self.assertRegex(text, "^\u2026.*another thread crosses it.$")

    def test_a_click_goes_to_the_hit(self):
        self.click(7)
        self.viewer.hit("hit 8 of 320")
        self.assertEqual(self.current(7)["page"], 1)

    def test_follows_the_current_hit(self):
        self.viewer.key("F3", "F3")
        self.viewer.hit("hit 3 of 320")
        self.current(2)
        self.viewer.key("ctrl+End")
        self.viewer.hit("page 7 of 7")
        state = self.viewer.until(lambda state: state["panel"]["current"] > 250, "a row of the last page")
        panel = self.filled(state["panel"]["first"])
        self.assertLessEqual(panel["first"], panel["current"])
        self.assertLess(panel["current"], panel["first"] + len(panel["texts"]))

    def test_a_click_goes_to_a_hit_on_another_page(self):
        self.viewer.key("ctrl+End")
        last = self.viewer.until(lambda state: state["panel"]["first"] > 250, "the end of the list")["panel"]["first"]
        self.viewer.key("ctrl+Home")
        self.viewer.until(lambda state: state["panel"]["first"] == 0, "its start")
        panel = self.viewer.now()["panel"]
        bar = int(panel["x"] + panel["width"] + 7)
        self.display.xdotool("mousemove", bar, int(panel["y"] + panel["height"] - 3), "click", 1, "click", 1)
        first = self.viewer.until(lambda state: 0 < state["panel"]["first"] < last, "rows further down")["panel"]["first"]
        self.click(3)
        self.viewer.hit(f"hit {self.viewer.now()['panel']['first'] + 4} of 320")
        self.assertGreaterEqual(self.viewer.now()["panel"]["first"], first)

    def test_arrows_and_return_go_to_a_hit(self):
        self.type("Down", "Down", "Next", "Up", "Return")
        self.viewer.until(lambda state: state["panel"]["current"] > 5, "another hit")
        row = self.viewer.now()["panel"]["current"]
        self.assertEqual(row, 1 + len(self.panel["texts"]))
        self.viewer.hit(f"hit {row + 1} of 320")

    def test_home_and_end_go_to_the_ends_of_the_list(self):
        self.type("End", "Return")
        self.viewer.hit("hit 320 of 320")
        self.type("Home", "Return")
        self.viewer.hit("hit 1 of 320")

    def test_a_key_with_a_modifier_that_is_not_its_own_does_nothing_in_the_list(self):
        for modifier in ("shift", "super", "ISO_Level3_Shift"):
            self.type(*(f"{modifier}+{key}" for key in ("Down", "Next", "End", "Return")))
        self.type("Down", "Return")
        self.viewer.hit("hit 2 of 320")
        self.current(1)

    def test_the_keypad_works_in_the_list_too(self):
        self.type("KP_End", "KP_Enter")
        self.viewer.hit("hit 320 of 320")
        self.type("KP_Home", "KP_Down", "KP_Enter")
        self.viewer.hit("hit 2 of 320")

    def scrolled(self, before):
        self.viewer.until(lambda state: state["drawn"]["scrollY"] == before + 48, "the page scrolled by a line")

    def test_escape_returns_to_the_page(self):
        before = self.viewer.now()["drawn"]["scrollY"]
        self.type("Down", "Down", "Escape", "Down")
        self.scrolled(before)
        self.assertTrue(self.viewer.now()["panel"]["shown"])

    def test_f9_hides_it_again(self):
        width = self.viewer.now()["area"]["width"]
        self.viewer.key("F9")
        self.viewer.until(lambda state: not state["panel"]["shown"] and state["area"]["width"] > width + 100, "no panel")
        self.viewer.key("Home")
        before = self.viewer.until(lambda state: state["drawn"]["there"], "the page")["drawn"]["scrollY"]
        self.viewer.key("Down")
        self.scrolled(before)

    def resized(self, height, width=900):
        self.display.xdotool("search", "--name", "^cloth.pdf", "windowsize", width, height)

    def test_the_current_hit_stays_visible_in_a_lower_window(self):
        self.resized(800)
        self.viewer.until(lambda state: len(state["panel"]["texts"]) > 25, "more rows")
        self.click(24)
        self.current(24)
        self.resized(400)
        panel = self.viewer.until(lambda state: len(state["panel"]["texts"]) < 15, "fewer rows")["panel"]
        self.assertLessEqual(panel["first"], 24)
        self.assertLess(24, panel["first"] + len(panel["texts"]))

    def test_its_edge_is_dragged_to_make_it_wider_or_narrower(self):
        for distance in (120, -200):
            area = self.viewer.now()["area"]
            self.display.xdotool("mousemove", area["x"] - 3, 300, "mousedown", 1, "mousemove_relative", "--", distance, 0,
                                 "mouseup", 1)
            self.viewer.until(lambda state: abs(state["area"]["x"] - area["x"] - distance) < 4, "another width")
        narrow = self.viewer.now()["area"]["x"]
        self.viewer.key("F9")
        self.viewer.until(lambda state: state["area"]["x"] < 50, "no panel")
        self.viewer.key("F9")
        self.viewer.until(lambda state: state["area"]["x"] == narrow, "the width of before")

    def test_the_page_stays_visible_in_a_narrower_window(self):
        area = self.viewer.now()["area"]
        self.display.xdotool("mousemove", area["x"] - 3, 300, "mousedown", 1, "mousemove_relative", 300, 0, "mouseup", 1)
        wide = self.viewer.until(lambda state: state["area"]["x"] > area["x"] + 290, "a wide panel")["area"]["x"]
        self.resized(500, width=500)
        self.viewer.until(lambda state: state["area"]["x"] < 420 and state["area"]["width"] > 60, "the page beside it")
        self.resized(500)
        self.viewer.until(lambda state: state["area"]["x"] == wide, "the width of before")

    # Of the rows on the screen, when the picture shows what the state has.
    def rows(self):
        panel = self.viewer.now()["panel"]
        return self.display.settled(), dict(panel, x=panel["x"], y=panel["y"])

    def test_the_words_of_a_hit_are_emphasised(self):
        picture, rows = self.rows()
        marked = picture.find(MARKED, rows)
        self.assertGreater(marked.right - marked.left, 30)
        self.assertLess(marked.right - marked.left, 200)
        for index in range(len(self.panel["texts"])):
            row = dict(rows, y=rows["y"] + index * rows["rowHeight"], height=rows["rowHeight"])
            self.assertIsNotNone(picture.find(MARKED, row), index)

    def test_a_text_that_is_too_wide_does_not_reach_the_edge(self):
        area = self.viewer.now()["area"]
        self.display.xdotool("mousemove", area["x"] - 3, 300, "mousedown", 1, "mousemove_relative", "--", -130, 0,
                             "mouseup", 1)
        self.viewer.until(lambda state: state["area"]["x"] < area["x"] - 100, "a narrow panel")
        picture, rows = self.rows()
        height = rows["rowHeight"]  # of the first row, which has the cursor's frame
        self.assertGreater(picture.darkest(dict(rows, x=rows["x"] + rows["width"] - 3, width=3, y=rows["y"] + height,
                                                height=rows["height"] - height)), 128)

    def test_without_a_list_there_is_no_scroll_bar(self):
        width = self.panel["width"]
        self.viewer.key("ctrl+w")
        self.viewer.until(lambda state: state["panel"]["title"] == "No list" and state["panel"]["width"] == width + 14,
                          "rows as wide as the panel")

    def test_a_document_without_hits_has_no_list(self):
        self.viewer.key("ctrl+w")
        self.viewer.until(lambda state: state["panel"]["title"] == "No list" and not state["panel"]["texts"], "no list")


class SidePanelDuringAnAlert(ViewerTest):
    def test_rows_without_a_text_wait_for_the_answer(self):
        file = document("cloth.pdf")
        viewer = self.viewHits(file, self.hits(file, "another"), "--geometry", "900x500+0+0", "--plugins-dir",
                               FEEDBACK_PLUGIN)
        viewer.key("F9")
        viewer.until(lambda state: state["panel"]["shown"] and all(state["panel"]["texts"]), "a filled panel")
        viewer.press("f:A")
        viewer.dialog("alert")
        self.display.xdotool("search", "--name", "^cloth.pdf", "windowsize", 900, 800)
        viewer.until(lambda state: state["panel"]["texts"] and state["panel"]["texts"][-1] == "", "further rows")
        self.display.settled()
        before = viewer.now()["panel"]["paints"]
        self.display.settled()
        self.assertEqual(viewer.now()["panel"]["paints"], before)
        viewer.answer("alert", "OK")
        viewer.noDialog()
        viewer.until(lambda state: all(state["panel"]["texts"]), "their texts")


class SidePanelManaged(SidePanel):
    managed = True


if __name__ == "__main__":
    unittest.main()
