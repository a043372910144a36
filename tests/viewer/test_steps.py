# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Stepping from hit to hit in a window that is lower than a page.
import unittest

from harness import ViewerTest, document

OUTLINE = (0x20, 0x20, 0x33)


class HitByHit(ViewerTest):
    def setUp(self):
        super().setUp()
        self.file = document("cloth.pdf")
        self.viewer = self.viewHits(self.file, self.hits(self.file, "another", [0, 2]), "--geometry", "800x380+0+0")
        self.total = int(self.viewer.now()["plugins"].split(" of ")[1].split(",")[0])

    # Waits until the outline of the current hit is on the page area, and returns it.
    def outlined(self):
        area = self.viewer.now()["area"]

        def complete(picture):
            found = picture.find(OUTLINE, area)
            return found if found and found.bottom - found.top > 8 else None

        return self.display.screen(complete, "an outline")

    def step(self, key, number):
        self.viewer.key(key)
        self.viewer.hit(f"hit {number} of {self.total},")
        outline = self.outlined()
        area = self.viewer.now()["area"]
        self.assertLess(outline.bottom - outline.top, 40, "one line")
        self.assertGreater(outline.top, area["y"])
        self.assertLess(outline.bottom, area["y"] + area["height"] - 1)

    def test_f3_shows_each_hit_of_a_page_and_shift_f3_the_same_backwards(self):
        self.outlined()
        for number in range(2, 15):
            self.step("F3", number)
        for number in range(13, 0, -1):
            self.step("shift+F3", number)
        self.assertEqual(self.viewer.now()["page"], 1)

    def test_after_the_last_hit_of_a_page_comes_the_first_of_the_next(self):
        self.viewer.key("ctrl+l")
        self.display.xdotool("key", "3", "Return")
        self.viewer.shown(3)
        first = int(self.viewer.hit("page 2 of 2")["plugins"].split()[1])
        self.step("shift+F3", first - 1)
        self.viewer.shown(1)
        self.step("F3", first)
        self.viewer.shown(3)

    def test_the_number_is_that_of_the_page_shown(self):
        self.viewer.key("F3", "F3")
        self.viewer.hit("hit 3 of")
        self.viewer.key("ctrl+Next")
        self.viewer.hit(f"{self.total} hits on 2 pages, none on this one")
        self.viewer.key("ctrl+Next")
        self.viewer.hit("page 2 of 2")


class TicksOfHits(ViewerTest):
    def test_a_click_on_a_tick_scrolls_to_the_hit(self):
        file = document("cloth.pdf")
        viewer = self.view(file, "--hits", self.hits(file, "Row 130 a"), "--geometry", "800x380+0+0")
        page = viewer.hit("hit 1 of 1")["page"]
        viewer.key("Home")
        viewer.shown(1)
        area = viewer.until(lambda state: state["ticks"] == [page - 1], "a tick")["area"]
        bar = {"x": area["x"] + area["width"], "y": area["y"], "width": 40, "height": area["height"]}
        tick = self.display.screen(lambda picture: picture.find((0xD8, 0xA2, 0), bar), "a tick")
        self.display.xdotool("mousemove", (tick.left + tick.right) // 2, tick.bottom, "click", 1)
        viewer.shown(page)
        self.display.screen(lambda picture: picture.find(OUTLINE, area), "an outline")
        self.assertGreater(viewer.now()["drawn"]["scrollY"], 0)
        self.assertIn("hit 1 of 1", viewer.now()["plugins"])


class KeysOfButtons(ViewerTest):
    def open(self, *resources):
        file = document("three-hundred.pdf")
        options = [word for resource in resources for word in ("--xrm", resource)]
        return self.viewHits(file, self.hits(file, "needle", [1, 4, 7]), *options)

    def test_a_resource_gives_a_button_another_key(self):
        viewer = self.open("Tavrel*menubar*TavrelGLT_Next.accelerator: <Key>F7")
        viewer.key("F3", "F7")
        viewer.hit("hit 2 of 3")
        viewer.key("F3", "shift+F3")
        viewer.hit("hit 1 of 3")

    def test_a_resource_takes_a_key_from_a_button(self):
        viewer = self.open("Tavrel*menubar*TavrelGLT_Next.accelerator:")
        viewer.press("TavrelGLT:Next")
        viewer.hit("hit 2 of 3")
        viewer.key("F3", "shift+F3")
        viewer.hit("hit 1 of 3")

    def test_what_the_viewer_has_on_a_key_goes_first(self):
        viewer = self.open("Tavrel*menubar*LastPage.accelerator: <Key>F3")
        viewer.key("F3")
        viewer.shown(300)
        viewer.key("shift+F3")
        viewer.hit("hit 3 of 3")
        viewer.key("F1")
        self.assertNotIn("Next Hit", "\n".join(viewer.dialog("keys")["texts"]))

    def test_help_lists_the_keys_of_buttons(self):
        viewer = self.open()
        viewer.key("F1")
        text = "\n".join(viewer.dialog("keys")["texts"])
        for line in ("Next Hit", "Previous Hit", "Shift+F3"):
            self.assertIn(line, text)


if __name__ == "__main__":
    unittest.main()
