# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The find dialog, on pages that differ only in their number.
import unittest

from harness import ALSO_FOUND, FOUND, ViewerTest, document, middle

NOT_FOUND = "\u201czebra\u201d is not in the document"
ROUND_THE_END = "Reached the end, continued from the start"
ROUND_THE_START = "Reached the start, continued from the end"


class Find(ViewerTest):
    def setUp(self):
        super().setUp()
        self.viewer = self.view(document("three-hundred.pdf"))
        self.viewer.shown(1)

    def find(self, text):
        self.viewer.key("ctrl+f")
        self.viewer.type("find", text)

    # Waits for a match beside the dialog.
    def found(self):
        self.display.screen(lambda picture: picture.find(FOUND, self.area()), "a match")

    def toggle(self, label):
        self.viewer.answer("find", label)

    def area(self):
        return self.viewer.now()["area"]

    # The marks of a colour. Closes the dialog, which may cover them.
    def marks(self, color):
        self.viewer.answer("find", "Close")
        self.viewer.noDialog()
        return self.display.screen(lambda picture: picture.find(color, self.area()), "a match")

    def test_a_match_is_marked(self):
        self.find("needle")
        self.found()
        found = self.marks(FOUND)
        self.assertLess(found.bottom - found.top, 40)
        self.assertGreater(found.right - found.left, 30)

    def test_all_matches_on_the_page_are_marked_and_the_current_one_differently(self):
        self.find("straw")
        self.found()
        self.viewer.answer("find", "Close")
        self.viewer.noDialog()

        def both(picture):
            here, there = picture.find(FOUND, self.area()), picture.find(ALSO_FOUND, self.area())
            return here and there and here.left < there.left

        self.display.screen(both, "two marks")

    def test_find_next_steps_through_a_page_and_then_to_the_next(self):
        self.find("straw")
        self.viewer.answer("find", "Close")
        self.viewer.noDialog()
        self.display.screen(lambda picture: picture.find(ALSO_FOUND, self.area()), "two marks")
        self.viewer.key("ctrl+g")

        def second(picture):
            here, there = picture.find(FOUND, self.area()), picture.find(ALSO_FOUND, self.area())
            return here and there and there.left < here.left

        self.display.screen(second, "the second mark as the current one")
        self.assertEqual(self.viewer.now()["page"], 1)
        self.viewer.key("ctrl+g")
        self.viewer.shown(2)

    def test_keys_of_the_dialog_find_both_ways(self):
        self.find("needle")
        self.found()
        for key, page in (("Return", 2), ("ctrl+g", 3), ("F3", 4), ("shift+F3", 3), ("ctrl+shift+g", 2),
                          ("shift+Return", 1)):
            self.display.xdotool("key", key)
            self.viewer.shown(page)

    def test_a_key_with_a_modifier_that_is_not_its_own_does_not_find(self):
        self.find("needle")
        self.found()
        before = len(self.viewer.past)
        for modifier in ("super", "ISO_Level3_Shift"):
            self.display.xdotool("key", *(f"{modifier}+{key}" for key in ("F3", "shift+F3", "ctrl+g", "ctrl+shift+g")))
        self.display.xdotool("key", "super+Return", "super+shift+Return", "ISO_Level3_Shift+shift+Return", "F3")
        self.viewer.shown(2)
        self.display.settled()
        self.viewer.now()
        self.assertLessEqual({state["page"] for state in self.viewer.since(before)}, {1, 2})

    def test_the_buttons_have_these_keys_too(self):
        self.find("needle")
        self.found()
        if not self.managed:
            button = next(one for one in self.viewer.dialog("find")["buttons"] if one["label"] == "Match case")
            self.display.xdotool("mousemove", *middle(button))
        self.display.xdotool("key", "Tab", "ctrl+g")
        self.viewer.shown(2)
        self.display.xdotool("key", "shift+F3")
        self.viewer.shown(1)

    def test_the_number_of_matches_is_shown(self):
        self.find("needle")
        self.says("1 of 300")
        self.display.xdotool("key", "ctrl+g")
        self.says("2 of 300")
        self.find("zebra")
        self.viewer.until(lambda state: not any(" of 300" in text for text in state["dialogs"][0]["texts"]),
                          "no number")

    def says(self, text):
        self.viewer.until(lambda state: any(text in one["texts"] for one in state["dialogs"]), text)

    def test_return_finds_the_next_match_also_on_a_check_box(self):
        self.find("needle")
        self.says("1 of 300")
        if not self.managed:
            button = next(one for one in self.viewer.dialog("find")["buttons"] if one["label"] == "Match case")
            self.display.xdotool("mousemove", *middle(button))
        self.display.xdotool("key", "Tab", "Return")
        self.says("2 of 300")

    def test_the_number_goes_when_the_text_changes(self):
        self.find("needle")
        self.says("1 of 300")
        self.display.xdotool("key", "End", "s")
        self.viewer.until(lambda state: not any(" of 300" in text for text in state["dialogs"][0]["texts"]),
                          "no number")

    def test_the_dialog_does_not_cover_the_match(self):
        self.find("needle")
        match = self.visible()
        dialog = self.viewer.dialog("find")
        self.display.xdotool("search", "--name", "^Find$", "windowmove", match.left - 100, match.top - 60)
        self.viewer.until(lambda state: state["dialogs"][0]["x"] != dialog["x"]
                          or state["dialogs"][0]["y"] != dialog["y"], "the dialog elsewhere")
        self.viewer.answer("find", "Find Next")
        self.viewer.shown(2)
        self.visible()

    # The current match, when the dialog does not cover it.
    def visible(self):
        def there(picture):
            match = picture.find(FOUND, self.area())
            if not match:
                return None
            dialog = self.viewer.now()["dialogs"][0]
            covered = (dialog["x"] < match.right and match.left < dialog["x"] + dialog["width"]
                       and dialog["y"] < match.bottom and match.top < dialog["y"] + dialog["height"])
            return match if match.right - match.left > 30 and not covered else None

        return self.display.screen(there, "a match beside the dialog")

    def test_forwards_and_backwards(self):
        self.find("needle")
        self.found()
        self.viewer.answer("find", "Find Next")
        self.viewer.shown(2)
        self.viewer.answer("find", "Find Next")
        self.viewer.shown(3)
        self.viewer.answer("find", "Find Previous")
        self.viewer.shown(2)

    def test_keys_find_again_both_ways(self):
        self.find("needle")
        self.found()
        self.viewer.answer("find", "Close")
        self.viewer.noDialog()
        self.viewer.key("ctrl+g")
        self.viewer.shown(2)
        self.viewer.key("ctrl+shift+g")
        self.viewer.shown(1)

    def test_at_the_end_it_continues_from_the_start_with_a_message(self):
        self.viewer.key("ctrl+End")
        self.viewer.shown(300)
        self.find("needle")
        self.found()
        self.viewer.answer("find", "Find Next")
        self.viewer.shown(1)
        state = self.viewer.until(lambda state: state["findMessage"] == ROUND_THE_END, "the message")
        self.assertEqual(state["status"], ROUND_THE_END)
        self.viewer.until(lambda state: ROUND_THE_END in state["dialogs"][0]["texts"], "the dialog's message")

    def test_at_the_start_it_continues_from_the_end_with_a_message(self):
        self.find("needle")
        self.found()
        self.viewer.answer("find", "Find Previous")
        self.viewer.shown(300)
        self.viewer.until(lambda state: state["findMessage"] == ROUND_THE_START, "the message")

    def test_a_text_that_is_not_found_is_reported(self):
        self.find("zebra")
        state = self.viewer.until(lambda state: state["findMessage"] == NOT_FOUND, "the message")
        self.assertEqual(state["page"], 1)
        self.viewer.until(lambda state: NOT_FOUND in state["dialogs"][0]["texts"], "the dialog's message")

    def test_match_case(self):
        self.find("NEEDLE")
        self.found()
        self.toggle("Match case")
        self.viewer.answer("find", "Find Next")
        self.viewer.until(lambda state: "is not in the document" in state["findMessage"], "nothing in capitals")
        self.toggle("Match case")
        self.viewer.answer("find", "Find Next")
        self.found()

    def test_whole_words(self):
        self.find("need")
        self.found()
        self.toggle("Whole words")
        self.viewer.answer("find", "Find Next")
        self.viewer.until(lambda state: "is not in the document" in state["findMessage"], "no such word")

    def test_escape_removes_the_marks(self):
        self.find("needle")
        self.marks(FOUND)
        self.viewer.key("Escape")
        self.display.screen(lambda picture: not picture.find(FOUND, self.area()), "no mark")

    def test_an_empty_text_finds_nothing(self):
        self.viewer.key("ctrl+f")
        self.viewer.answer("find", "Find Next")
        self.viewer.answer("find", "Close")
        self.assertEqual(self.viewer.noDialog()["findMessage"], "")

    def test_ligatures_are_found_as_letters(self):
        self.viewer.key("ctrl+w")
        self.viewer.until(lambda state: not state["documents"], "no document")
        self.viewer = self.view(document("two-columns.pdf"))
        self.viewer.shown(1)
        self.find("office staff")
        self.marks(FOUND)


class FindManaged(Find):
    managed = True


if __name__ == "__main__":
    unittest.main()
