# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Stepping through hits, with the buttons of the tool bar and with keys.
import unittest

from harness import JUMPS_PLUGIN, NEXT, PREVIOUS, YELLOW, ViewerTest, document

PAGES = [2, 5, 9, 40]  # with hits, counted from 0


class Hits(ViewerTest):
    def setUp(self):
        super().setUp()
        self.file = document("three-hundred.pdf")
        self.viewer = self.viewHits(self.file, self.hits(self.file, "needle", PAGES))

    def enabled(self, name):
        return self.viewer.button(name)["enabled"]

    def untilEnabled(self, name, enabled):
        self.viewer.until(lambda state: any(one["name"] == name and one["enabled"] == enabled
                                            for one in state["buttons"]), f"{name} enabled: {enabled}")

    def test_opens_on_the_page_of_the_first_hit(self):
        state = self.viewer.shown(3)
        self.assertEqual(state["plugins"], "hit 1 of 4, page 1 of 4")
        self.assertEqual(state["drawn"]["marks"], 1)
        self.assertEqual(state["pageField"]["text"], "3")
        self.assertEqual(state["pages"], 300)

    def test_the_first_hit_has_no_previous_one(self):
        self.assertFalse(self.enabled(PREVIOUS))
        self.assertTrue(self.enabled(NEXT))

    def test_the_mark_is_visible(self):
        area = self.viewer.now()["area"]
        self.display.screen(lambda picture: picture.find(YELLOW, area), "a yellow mark")

    def test_next_and_previous_by_click(self):
        for number, page in enumerate(PAGES[1:], 2):
            self.viewer.press(NEXT)
            self.viewer.hit(f"hit {number} of 4, page {number} of 4")
            self.viewer.shown(page + 1)
        for number in (3, 2, 1):
            self.viewer.press(PREVIOUS)
            self.viewer.hit(f"hit {number} of 4")
            self.viewer.shown(PAGES[number - 1] + 1)

    def test_next_and_previous_by_key(self):
        self.viewer.key("F3")
        self.viewer.hit("hit 2 of 4")
        self.viewer.key("F3")
        self.viewer.hit("hit 3 of 4")
        self.viewer.key("shift+F3")
        self.viewer.hit("hit 2 of 4")
        self.viewer.shown(PAGES[1] + 1)

    def test_keys_pressed_in_a_row_all_count(self):
        self.viewer.key("F3", "F3", "F3", "shift+F3")
        self.viewer.until(lambda state: state["page"] == PAGES[3] + 1, "the last hit")
        self.viewer.hit("hit 3 of 4")

    def test_at_the_last_hit_next_is_greyed_and_does_nothing(self):
        self.viewer.key("F3", "F3", "F3")
        self.viewer.hit("hit 4 of 4")
        self.untilEnabled(NEXT, False)
        moment = len(self.viewer.past)
        self.viewer.press(NEXT)
        self.viewer.press(PREVIOUS)  # is handled after it
        self.viewer.hit("hit 3 of 4")
        reported = {state["page"] for state in self.viewer.since(moment)}
        self.assertLessEqual(reported, {PAGES[3] + 1, PAGES[2] + 1})
        self.untilEnabled(NEXT, True)

    def test_previous_is_enabled_after_the_first_hit(self):
        self.viewer.press(NEXT)
        self.untilEnabled(PREVIOUS, True)
        self.viewer.press(PREVIOUS)
        self.viewer.hit("hit 1 of 4")
        self.untilEnabled(PREVIOUS, False)

    def test_ticks_mark_the_pages_with_hits(self):
        self.viewer.until(lambda state: state["ticks"] == PAGES, "ticks")

    def test_a_click_on_a_tick_goes_to_its_page(self):
        area = self.viewer.until(lambda state: state["ticks"] == PAGES, "ticks")["area"]
        bar = {"x": area["x"] + area["width"], "y": area["y"], "width": 40, "height": area["height"]}
        tick = self.display.screen(lambda picture: picture.find((0xD8, 0xA2, 0), bar), "ticks")
        self.display.xdotool("mousemove", (tick.left + tick.right) // 2, tick.bottom, "click", 1)
        self.viewer.shown(PAGES[3] + 1)

    def test_turning_by_hand_to_a_page_with_hits_moves_the_current_one_there(self):
        self.viewer.key("ctrl+l")
        self.viewer.display.xdotool("key", "1", "0", "Return")
        self.viewer.shown(10)
        self.viewer.hit("hit 3 of 4")
        self.viewer.key("F3")
        self.viewer.hit("hit 4 of 4")

    def test_scrolling_by_hand_to_a_page_with_hits_moves_the_current_one_there(self):
        for page in (4, 5, 6):
            self.viewer.key("ctrl+Next")
            self.viewer.shown(page)
        self.viewer.hit("hit 2 of 4")
        self.assertEqual(self.viewer.now()["drawn"]["marks"], 1)

    def test_a_page_without_hits_says_so_and_the_next_hit_is_the_one_after_it(self):
        self.viewer.key("ctrl+l")
        self.viewer.display.xdotool("key", "8", "Return")
        state = self.viewer.shown(8)
        self.assertEqual(state["drawn"]["marks"], 0)
        self.assertEqual(state["plugins"], "4 hits on 4 pages, none on this one")
        self.viewer.key("F3")
        self.viewer.hit("hit 3 of 4, page 3 of 4")
        self.viewer.shown(10)

    def test_the_menu_of_hits_steps_too(self):
        self.viewer.key("F10", "Right", "Right", "Right", "Right")
        self.viewer.key("Down", "Return")
        self.viewer.hit("hit 2 of 4")


class HitsManaged(Hits):
    managed = True


class HitsInTheMiddle(ViewerTest):
    def test_the_first_hit_is_centred(self):
        file = document("two-columns.pdf")
        viewer = self.view(file, "--hits", self.hits(file, "Paragraph 13"), "--geometry", "900x500")
        state = viewer.hit("hit 1 of 1")
        area, drawn = state["area"], state["drawn"]
        self.assertGreater(drawn["scrollY"], 0)
        mark = self.display.screen(lambda picture: picture.find(YELLOW, area), "a yellow mark")
        centre = area["y"] + area["height"] / 2
        self.assertLess(abs(mark.middle - centre), 20)

    def visible(self, words, *arguments):
        file = document("two-columns.pdf")
        viewer = self.view(file, "--hits", self.hits(file, words), *arguments)
        state = viewer.hit("hit 1 of 1")
        self.display.screen(lambda picture: picture.find(YELLOW, state["area"]), "a yellow mark")
        viewer.key("ctrl+q")
        self.assertEqual(viewer.ends(), 0)

    def test_the_first_hit_is_visible_wherever_it_is_on_its_page(self):
        for number in (1, 7, 8, 11, 12, 13, 14, 15):
            with self.subTest(number):
                self.visible(f"Paragraph {number} speaks")

    def test_the_first_hit_is_visible_in_a_window_of_any_size(self):
        for size in ("500x400", "1200x500", "600x950"):
            with self.subTest(size):
                self.visible("Paragraph 13", "--geometry", size)

    def test_the_pages_end_keeps_a_mark_from_the_middle(self):
        file = document("three-hundred.pdf")
        viewer = self.view(file, "--hits", self.hits(file, "needle", [7]))
        state = viewer.hit("hit 1 of 1")
        self.assertEqual(state["drawn"]["scrollY"], 0)
        mark = self.display.screen(lambda picture: picture.find(YELLOW, state["area"]), "a yellow mark")
        self.assertLess(mark.middle, state["area"]["y"] + state["area"]["height"] / 2)

    def test_several_hits_on_a_page_are_marked_together_and_counted_each(self):
        file = document("two-columns.pdf")
        viewer = self.view(file, "--hits", self.hits(file, "search engine", [0, 1]))
        state = viewer.hit("hit 1 of")
        count = state["drawn"]["marks"]
        self.assertGreater(count, 1)
        self.assertIn("page 1 of 2", state["plugins"])
        for number in range(2, count + 2):
            viewer.press(NEXT)
            viewer.hit(f"hit {number} of")
        viewer.shown(2)


class Jumps(ViewerTest):
    """A plug-in that is notified of jumps shows their code: 0 and 2 step, 1 and 3 only notify."""

    def setUp(self):
        super().setUp()
        self.viewer = self.view(document("three-hundred.pdf"), "--plugins-dir", JUMPS_PLUGIN)
        self.viewer.hit("hit 1 of 3")

    def test_a_click_steps(self):
        self.viewer.press(NEXT)
        self.viewer.hit("jump 0")
        self.viewer.shown(2)
        self.viewer.press(PREVIOUS)
        self.viewer.hit("jump 2")
        self.viewer.shown(1)

    def test_a_click_with_shift_only_notifies(self):
        self.viewer.press(NEXT, keys=["shift"])
        state = self.viewer.hit("jump 1")
        self.assertEqual(state["page"], 1)
        self.viewer.press(NEXT)
        self.viewer.hit("jump 0")
        self.viewer.shown(2)
        self.viewer.press(PREVIOUS, keys=["shift"])
        state = self.viewer.hit("jump 3")
        self.assertEqual(state["page"], 2)

    def test_a_key_with_shift_is_not_a_click_with_shift(self):
        self.viewer.press(NEXT)
        self.viewer.hit("jump 0")
        self.viewer.key("shift+F3")
        self.viewer.hit("jump 2")
        self.viewer.shown(1)


if __name__ == "__main__":
    unittest.main()
