# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# What users set: the window's position and size, and resources.
import unittest

from harness import ViewerTest, document


class Geometry(ViewerTest):
    def test_the_window_has_the_requested_position_and_size(self):
        viewer = self.view(document("two-columns.pdf"), "--geometry", "900x500+30+20")
        area = viewer.shown(1)["area"]
        self.assertEqual(area["x"], 30)
        self.assertEqual(viewer.button("Open")["x"], 36)
        right, bottom = area["x"] + area["width"], area["y"] + area["height"]
        self.assertTrue(30 + 900 - 60 < right < 30 + 900, f"the page area ends at {right}")
        self.assertTrue(20 + 500 - 60 < bottom < 20 + 500, f"the page area ends at {bottom}")

    def test_without_a_position_it_has_the_requested_size(self):
        viewer = self.view(document("two-columns.pdf"), "--geometry", "700x600")
        area = viewer.shown(1)["area"]
        self.assertTrue(640 < area["width"] < 700, f"the page area is {area['width']} wide")

    def test_the_start_of_the_page_is_shown(self):
        viewer = self.view(document("two-columns.pdf"))
        self.assertEqual(viewer.shown(1)["drawn"]["scrollY"], 0)


class Resources(ViewerTest):
    def test_a_resource_changes_a_key_of_a_menu(self):
        viewer = self.view(document("two-columns.pdf"), "--xrm", "Tavrel*menubar*NextPage.accelerator: Ctrl<Key>n")
        viewer.shown(1)
        viewer.key("ctrl+n")
        viewer.shown(2)
        viewer.until(lambda state: any(one["tip"] == "Next Page (Ctrl+N)" for one in state["buttons"]), "the tip")
        viewer.key("ctrl+Next")  # not bound any more
        viewer.key("ctrl+n")
        viewer.shown(3)
        self.assertEqual(viewer.now()["page"], 3)

    def test_a_resource_adds_a_key_of_the_page(self):
        viewer = self.view(document("two-columns.pdf"), "--xrm",
                           "Tavrel*page.translations: #override <Key>j: do(LineDown)")
        viewer.shown(1)
        viewer.key("j")
        viewer.until(lambda state: state["drawn"]["scrollY"] == 48, "a little down")
        viewer.key("Down")
        viewer.until(lambda state: state["drawn"]["scrollY"] == 96, "the other keys as before")

    def test_help_shows_the_keys_that_a_user_has_changed(self):
        viewer = self.view(document("two-columns.pdf"), "--xrm",
                           "Tavrel*page.translations: #override <Key>j: do(LineDown)", "--xrm",
                           "Tavrel*menubar*NextPage.accelerator: Ctrl<Key>n")
        viewer.shown(1)
        viewer.key("F1")
        lines = [line.strip() for text in viewer.dialog("keys")["texts"] for line in text.split("\n")]
        for keys in ("J, Down", "Ctrl+N"):
            self.assertIn(keys, lines)
        self.assertNotIn("Ctrl+Page Down", lines)

    def test_an_empty_window_names_the_key_that_opens_a_document(self):
        viewer = self.view("--xrm", "Tavrel*menubar*Open.accelerator: Ctrl<Key>k")
        viewer.until(lambda state: state["note"] == "Ctrl+K opens a document", "the key")

    def test_the_background_of_the_page_is_a_resource(self):
        viewer = self.view(document("two-columns.pdf"))
        area = viewer.shown(1)["area"]
        self.display.screen(lambda picture: picture.find((0xD9, 0xDB, 0xDE), area), "the default background")
        viewer.key("ctrl+q")
        self.assertEqual(viewer.ends(), 0)
        viewer = self.view(document("two-columns.pdf"), "--xrm", "Tavrel*page.background: #404448")
        area = viewer.shown(1)["area"]
        self.display.screen(lambda picture: picture.find((0x40, 0x44, 0x48), area), "another background")

    def test_resources_come_from_the_users_file(self):
        self.resources("Tavrel*menubar*LastPage.accelerator: Ctrl<Key>e")
        viewer = self.view(document("two-columns.pdf"))
        viewer.shown(1)
        viewer.key("ctrl+e")
        viewer.shown(4)

    def test_an_unknown_action_is_one_line(self):
        viewer = self.view(document("two-columns.pdf"), "--xrm", "Tavrel*page.translations: #override <Key>j: do(Fly)",
                           errors=1)
        viewer.shown(1)
        viewer.key("j")
        viewer.says("no action Fly")


if __name__ == "__main__":
    unittest.main()
