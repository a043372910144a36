# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Keys, wheel, drag and the page field.
import unittest

from harness import ViewerTest, document

ALTGR = "ISO_Level3_Shift+"


class Keys(ViewerTest):
    """Four pages, as wide as the window and higher than it."""

    def setUp(self):
        super().setUp()
        self.viewer = self.view(document("two-columns.pdf"))
        self.viewer.shown(1)

    def scrolledTo(self, predicate, what):
        return self.viewer.until(lambda state: predicate(state["drawn"]["scrollY"]), what)["drawn"]["scrollY"]

    def test_page_down_goes_down_and_then_to_the_next_page(self):
        self.viewer.key("Next")
        self.scrolledTo(lambda y: y > 100, "a page of the window down")
        self.viewer.key("Next", "Next")
        self.viewer.shown(2)

    def test_page_up_goes_up_and_then_to_the_end_of_the_previous_page(self):
        self.viewer.key("ctrl+Next")
        self.viewer.shown(2)
        self.viewer.key("Prior")
        self.viewer.shown(1)
        self.scrolledTo(lambda y: y > 100, "the end of the page")
        self.viewer.key("Prior", "Prior")
        self.scrolledTo(lambda y: y == 0, "the start of the page")

    def test_space_is_page_down_and_shift_space_page_up(self):
        self.viewer.key("space")
        self.scrolledTo(lambda y: y > 100, "a page of the window down")
        self.viewer.key("shift+space")
        self.scrolledTo(lambda y: y == 0, "a page of the window up")

    def test_arrows_scroll_a_little(self):
        self.viewer.key("Down")
        self.scrolledTo(lambda y: y == 48, "a little down")
        self.viewer.key("Down")
        self.scrolledTo(lambda y: y == 96, "a little more")
        self.viewer.key("Up")
        self.scrolledTo(lambda y: y == 48, "a little up")

    def test_arrows_to_the_sides_turn_pages_that_are_not_wider_than_the_window(self):
        self.viewer.key("Right")
        self.viewer.shown(2)
        self.viewer.key("Left")
        self.viewer.shown(1)

    def test_arrows_to_the_sides_scroll_a_wide_page(self):
        for _ in range(3):
            self.viewer.key("plus")
        self.viewer.until(lambda state: state["zoom"] > 1.4, "larger")
        before = self.viewer.now()["drawn"]["scrollX"]
        self.viewer.key("Right")
        self.viewer.until(lambda state: state["drawn"]["scrollX"] > before, "to the right")
        self.assertEqual(self.viewer.now()["page"], 1)

    def test_home_and_end_are_the_first_and_the_last_page(self):
        self.viewer.key("End")
        self.viewer.shown(4)
        self.viewer.key("Home")
        self.viewer.shown(1)

    def test_a_key_does_nothing_with_a_modifier_that_is_not_its_own(self):
        before = self.viewer.now()
        # A window manager has Alt+Space, Alt+Down and others for itself.
        self.viewer.key("ctrl+p", "ctrl+slash", "ctrl+Left", "ctrl+space", "ctrl+BackSpace", "alt+p", "alt+w", "alt+Left",
                        "alt+Right", "alt+BackSpace", "super+p", "super+minus", "shift+End", ALTGR + "p", ALTGR + "space",
                        ALTGR + "Next", ALTGR + "F9", "super+F9", "Down")
        after = self.scrolledTo(lambda y: y == 48, "what the last key alone does")
        self.assertEqual([self.viewer.now()[name] for name in ("page", "zoom", "fit", "dialogs", "panel")],
                         [before[name] for name in ("page", "zoom", "fit", "dialogs", "panel")])
        self.assertEqual(after, 48)

    def test_locks_do_not_change_what_a_key_does(self):
        for lock in ("Num_Lock", "Caps_Lock", "Scroll_Lock"):
            with self.subTest(lock):
                self.display.xdotool("key", lock)
                try:
                    self.viewer.key("End")
                    self.viewer.shown(4)
                    self.viewer.key("Home", "p")
                    self.viewer.until(lambda state: state["page"] == 1 and state["fit"] == 2, "the complete page")
                    self.viewer.key("w", "F9")
                    self.viewer.until(lambda state: state["fit"] == 1 and state["panel"]["shown"], "width and panel")
                    self.viewer.key("Escape", "F9")
                    self.viewer.until(lambda state: not state["panel"]["shown"], "no panel")
                finally:
                    self.display.xdotool("key", lock)

    def test_the_keypad_works_too(self):
        self.viewer.key("KP_End")
        self.viewer.shown(4)
        self.viewer.key("KP_Home")
        self.viewer.shown(1)

    def test_plus_and_minus_change_the_size(self):
        before = self.viewer.now()["zoom"]
        for larger, smaller in (("plus", "minus"), ("ctrl+plus", "ctrl+minus"), ("KP_Add", "KP_Subtract")):
            self.viewer.key(larger)
            between = self.viewer.until(lambda state: state["zoom"] > before, larger)["zoom"]
            self.viewer.key(smaller)
            before = self.viewer.until(lambda state: state["zoom"] < between, smaller)["zoom"]

    def test_keys_for_sizes(self):
        self.viewer.key("ctrl+1")
        self.viewer.until(lambda state: state["zoom"] == 1, "actual size")
        self.viewer.key("ctrl+3")
        state = self.viewer.until(lambda state: state["drawn"]["height"] < state["area"]["height"], "the complete page")
        self.assertLess(state["drawn"]["width"], state["area"]["width"] - 100)
        self.viewer.key("ctrl+2")
        self.viewer.until(lambda state: state["drawn"]["width"] > state["area"]["width"] - 60, "the page's width")

    def test_open_asks_for_a_file_and_opens_it(self):
        self.viewer.key("ctrl+o")
        dialog = self.viewer.dialog("openFile")
        self.viewer.click(dialog["fields"][0])
        file = document("three-hundred.pdf")
        self.display.xdotool("type", "--delay", "1", file)
        self.viewer.until(lambda state: any(part["text"] == file for one in state["dialogs"]
                                            for part in one["fields"]), "the file's name")
        self.display.xdotool("key", "Return")
        self.viewer.until(lambda state: state["documents"] == ["two-columns.pdf", "three-hundred.pdf"], "both")
        self.viewer.noDialog()
        self.viewer.until(lambda state: state["front"] == 1 and state["pages"] == 300, "the new one in front")

    def test_escape_leaves_the_open_dialog(self):
        self.viewer.key("ctrl+o")
        dialog = self.viewer.dialog("openFile")
        if not self.managed:
            self.viewer.display.xdotool("mousemove", int(dialog["x"]) + 5, int(dialog["y"]) + 5)
        self.display.xdotool("key", "Escape")
        self.viewer.noDialog()

    def test_close_leaves_an_empty_viewer(self):
        self.viewer.key("ctrl+w")
        state = self.viewer.until(lambda state: state["documents"] == [], "no document")
        self.assertEqual(state["title"], "Tavrel")
        self.viewer.until(lambda state: not state["drawn"]["there"], "an empty window")
        self.viewer.key("F1")
        self.viewer.dialog("keys")

    def test_quit_ends_well(self):
        self.viewer.key("ctrl+q")
        self.assertEqual(self.viewer.ends(), 0)

    def test_quit_ends_well_without_a_document(self):
        self.viewer.key("ctrl+w", "ctrl+q")
        self.assertEqual(self.viewer.ends(), 0)

    def test_find_again_asks_for_a_text_if_there_is_none(self):
        self.viewer.key("ctrl+g")
        self.viewer.dialog("find")

    def test_slash_asks_for_a_text(self):
        self.viewer.key("slash")
        self.viewer.dialog("find")

    # What the dialog says of a key.
    def told(self, keys):
        texts = self.viewer.dialog("keys")["texts"]
        for left, right in zip(texts[::2], texts[1::2]):
            lines = [line.strip() for line in left.split("\n")]
            self.assertEqual(len(lines), len(right.split("\n")))
            if keys in lines:
                return right.split("\n")[lines.index(keys)]
        self.fail(f"{keys} is not among {texts}")

    def test_help_shows_the_keys(self):
        self.viewer.key("F1")
        for keys, sentence in (("Ctrl+Page Down", "Next Page"), ("Ctrl+Q", "Quit"), ("Ctrl+F, /", "Find\u2026"),
                               ("Down", "A little down"), ("Shift+Wheel up", "Scrolls to the left"),
                               ("F10, Alt+F, Alt+E, Alt+V, Alt+G,", "Opens the menus")):
            self.assertEqual(self.told(keys), sentence)
        for keys in ("F3", "Shift+F3"):  # of a plug-in
            self.assertGreater(len(self.told(keys)), 3)
        self.viewer.answer("keys", "OK")
        self.viewer.noDialog()

    def test_help_shows_the_keys_of_text_fields_and_of_dialogs(self):
        self.viewer.key("F1")
        for keys, sentence in (("Ctrl+C, Ctrl+Insert, Copy", "Copies the selected text"), ("Tab", "Completes the name"),
                               ("Return, Keypad Enter", "Goes to the hit")):
            self.assertEqual(self.told(keys), sentence)

    def test_help_again_brings_the_keys_to_front(self):
        self.viewer = self.view(document("two-columns.pdf"), "--geometry", "1240x980+0+0")
        self.viewer.shown(1)
        self.viewer.key("F1")
        first = self.viewer.dialog("keys")
        # Beside the dialog, where the page gets the keys.
        area = self.viewer.now()["area"]
        self.assertGreater(first["x"], area["x"] + 20)
        self.display.xdotool("mousemove", area["x"] + 10, area["y"] + 10, "click", 1)
        self.display.xdotool("key", "F1", "ctrl+Next")
        self.viewer.shown(2)
        self.assertEqual([one["name"] for one in self.viewer.now()["dialogs"]], ["keys"])
        self.viewer.click(self.viewer.now()["dialogs"][0]["buttons"][0])
        self.viewer.noDialog()
        self.display.xdotool("mousemove", area["x"] + 10, area["y"] + 10, "click", 1)
        self.display.xdotool("key", "F1")
        self.viewer.until(lambda state: len(state["dialogs"]) == 1, "a new dialog")

    def test_after_fast_keys_and_clicks_the_window_gets_the_keys(self):
        bar = self.viewer.button("Open")
        self.viewer.pointAtPage()
        for key in ("F10", "Left", "ctrl+f", "Down"):
            self.display.xdotool("key", key)
        self.display.xdotool("mousemove", bar["x"] + 14, bar["y"] - 20, "click", 1)  # the menu File
        self.display.xdotool("key", "Escape", "key", "Escape")
        self.viewer.key("ctrl+Next")
        self.viewer.shown(2)

    def test_f10_opens_the_menus(self):
        before = self.display.settled()
        area = self.viewer.now()["area"]
        self.viewer.key("F10", "Down")
        self.display.screen(lambda picture: not picture.same(before, area), "a menu over the page")
        self.viewer.display.xdotool("key", "Escape", "Escape")
        self.display.screen(lambda picture: picture.same(before, area), "the page again")
        self.viewer.key("Down")
        self.scrolledTo(lambda y: y == 48, "a little down")

    def test_an_entry_of_a_menu_is_reached_by_keys(self):
        self.viewer.key("F10", "Right", "Right", "Right", "Down", "Return")  # Go > Next Page
        self.viewer.shown(2)

    def test_a_mnemonic_opens_a_menu(self):
        area = self.viewer.now()["area"]
        before = self.display.settled()
        self.viewer.pointAtPage()
        # Alt is held until the menu is open: the toolkit closes it again if Alt is released at once.
        self.display.xdotool("keydown", "Alt_L")
        self.display.xdotool("key", "g")
        self.display.screen(lambda picture: not picture.same(before, area), "a menu over the page")
        self.display.xdotool("keyup", "Alt_L")
        self.display.xdotool("key", "Return")  # the first enabled entry is selected
        self.viewer.shown(2)

    def test_escape_leaves_the_page_field_as_it_was(self):
        self.viewer.key("ctrl+l")
        self.viewer.display.xdotool("type", "77")
        self.viewer.display.xdotool("key", "Escape")
        self.viewer.key("ctrl+Next")
        self.viewer.shown(2)
        self.viewer.until(lambda state: state["pageField"]["text"] == "2", "the number of the page")

    def test_escape_with_a_modifier_does_not_leave_the_page_field(self):
        self.viewer.key("ctrl+l")
        self.display.xdotool("key", "7", ALTGR + "Escape", "super+Escape", "7")
        self.viewer.until(lambda state: state["pageField"]["text"] == "77", "what was typed before and after")

    def test_the_wheel_scrolls(self):
        self.viewer.wheel(5)
        self.scrolledTo(lambda y: y == 90, "down")
        self.viewer.wheel(4)
        self.scrolledTo(lambda y: y == 0, "up")

    def test_the_wheel_turns_at_the_end_of_a_page(self):
        self.display.xdotool("mousemove", 400, 500, "click", "--repeat", 8, "--delay", 1, 5)
        self.viewer.shown(2)

    def test_the_wheel_with_control_changes_the_size(self):
        before = self.viewer.now()["zoom"]
        self.viewer.wheel(4, ["ctrl"])
        larger = self.viewer.until(lambda state: state["zoom"] > before, "larger")["zoom"]
        self.viewer.wheel(5, ["ctrl"])
        self.viewer.until(lambda state: state["zoom"] < larger, "smaller")

    def test_dragging_moves_the_page_with_the_pointer(self):
        self.viewer.pointAtPage()
        self.display.xdotool("mousedown", 1, "mousemove_relative", "--", 0, -60, "mousemove_relative", "--", 0, -70,
                             "mouseup", 1, "mousemove_relative", "--", 0, -50)
        self.scrolledTo(lambda y: y == 130, "moved as far as the pointer")
        self.viewer.key("Down")
        self.scrolledTo(lambda y: y == 178, "moved by the key alone")

    def typePage(self, text):
        self.viewer.key("ctrl+l")
        self.display.xdotool("type", "--delay", "1", text)
        self.viewer.until(lambda state: state["pageField"]["text"] == text, f"{text} in the page field")
        self.display.xdotool("key", "Return")

    def test_the_page_field_goes_to_a_page(self):
        self.typePage("3")
        self.viewer.shown(3)
        self.viewer.key("Home")  # the page has the focus again
        self.viewer.shown(1)

    def test_the_page_field_by_pointer(self):
        field = self.viewer.now()["pageField"]
        self.display.xdotool("mousemove", field["x"] + field["width"] // 2, field["y"] + field["height"] // 2,
                             "click", "--repeat", 3, "--delay", 1, 1, "key", "BackSpace", "2", "Return")
        self.viewer.shown(2)

    def test_a_page_beyond_the_last_is_clamped(self):
        self.typePage("99")
        self.viewer.says("There are only 4 pages")
        self.viewer.shown(4)
        self.viewer.until(lambda state: state["pageField"]["text"] == "4", "4 in the page field")

    def test_an_invalid_page_number_is_reported(self):
        self.typePage("2x")
        self.viewer.says("\u201c2x\u201d is no page number")
        state = self.viewer.now()
        self.assertEqual(state["page"], 1)
        self.viewer.until(lambda state: state["pageField"]["text"] == "1", "the page's own number")


    def destroyWindow(self):
        self.display.xdotool("search", "--name", "^two-columns.pdf", "windowclose")

    def test_a_window_that_another_program_destroys_ends_the_viewer_well(self):
        self.destroyWindow()
        self.assertEqual(self.viewer.ends(), 0)

    def test_a_window_that_is_destroyed_during_a_dialog_ends_the_viewer_well(self):
        self.viewer.key("ctrl+o")
        self.viewer.dialog("openFile")
        self.destroyWindow()
        self.assertEqual(self.viewer.ends(), 0)


class KeysManaged(Keys):
    managed = True

    def test_the_window_managers_close_ends_well(self):
        self.display.xdotool("key", "alt+F4")
        self.assertEqual(self.viewer.ends(), 0)


class KeysOfALargeFont(ViewerTest):
    """The list of keys is higher than the screen."""
    managed = True

    def test_it_is_as_wide_as_its_columns_and_scrolls_by_keys(self):
        viewer = self.view(document("two-columns.pdf"), "--xrm", "Xft.dpi: 192")
        viewer.shown(1)
        viewer.key("F1")
        dialog = viewer.dialog("keys")
        self.assertLess(dialog["width"], 1280)
        self.assertLess(dialog["height"], 1024)
        self.assertEqual(len(dialog["texts"]), 2)  # one column: two would be too wide
        above = dict(dialog, height=dialog["buttons"][0]["y"] - dialog["y"] - 30)
        begin = self.display.settled()
        for down, up in (("Down", "Up"), ("Next", "Prior"), ("End", "Home")):
            self.display.xdotool("key", down)
            self.display.screen(lambda picture: not picture.same(begin, above), f"other keys after {down}")
            self.display.xdotool("key", up)
            self.display.screen(lambda picture: picture.same(begin, above), f"the first keys after {up}")


class Buttons(ViewerTest):
    def setUp(self):
        super().setUp()
        self.viewer = self.view(document("two-columns.pdf"))
        self.viewer.shown(1)

    def test_zoom_buttons(self):
        before = self.viewer.now()["zoom"]
        self.viewer.press("ZoomIn")
        larger = self.viewer.until(lambda state: state["zoom"] > before, "larger")["zoom"]
        self.viewer.press("ZoomOut")
        self.viewer.until(lambda state: state["zoom"] < larger, "smaller")

    def test_fit_page_and_fit_width(self):
        self.viewer.press("FitPage")
        state = self.viewer.until(lambda state: state["drawn"]["height"] < state["area"]["height"], "the complete page")
        self.assertGreater(state["drawn"]["height"], state["area"]["height"] - 60)
        self.viewer.press("FitWidth")
        state = self.viewer.until(lambda state: state["drawn"]["width"] > state["area"]["width"] - 60, "the width")
        self.assertLess(state["drawn"]["width"], state["area"]["width"])

    def test_pages(self):
        self.viewer.press("NextPage")
        self.viewer.shown(2)
        self.viewer.press("PreviousPage")
        self.viewer.shown(1)

    def test_the_first_page_has_no_previous_and_the_last_no_next_one(self):
        self.assertFalse(self.viewer.button("PreviousPage")["enabled"])
        self.viewer.key("End")
        self.viewer.shown(4)
        self.viewer.until(lambda state: not self.viewer.button("NextPage")["enabled"], "Next greyed")
        self.assertTrue(self.viewer.button("PreviousPage")["enabled"])

    def test_open_and_find_ask(self):
        self.viewer.press("Open")
        self.viewer.answer("openFile", "Cancel")
        self.viewer.noDialog()
        self.viewer.press("FindDialog")
        self.viewer.answer("find", "Close")
        self.viewer.noDialog()
        self.viewer.press("FindAgainDialog")
        self.viewer.dialog("find")

    def test_buttons_stay_where_they_are_in_a_document_with_other_page_numbers(self):
        before = [(one["name"], one["x"]) for one in self.viewer.now()["buttons"]]

        def same(state):
            return [(one["name"], one["x"]) for one in state["buttons"]] == before

        self.viewer.key("ctrl+w")
        self.assertTrue(same(self.viewer.until(lambda state: state["documents"] == [] and not state["pageField"]["text"],
                                               "no document")))
        viewer = self.view(document("three-hundred.pdf"))
        viewer.shown(1)
        viewer.key("End")
        viewer.shown(300)
        self.assertTrue(same(viewer.until(lambda state: state["pageField"]["text"] == "300", "the last page")))

    def test_buttons_have_tips_with_their_keys(self):
        self.assertEqual(self.viewer.button("NextPage")["tip"], "Next Page (Ctrl+Page Down)")


if __name__ == "__main__":
    unittest.main()
