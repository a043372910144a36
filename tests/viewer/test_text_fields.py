# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The usual keys in text fields: clipboard, undo.
import unittest

from fields import TextFieldTest
from harness import document, middle


class TextFields(TextFieldTest):
    """The field of the find dialog."""

    def setUp(self):
        super().setUp()
        self.viewer = self.view(document("two-columns.pdf"))
        self.viewer.shown(1)
        self.viewer.key("ctrl+f")
        self.display.xdotool("mousemove", *middle(self.viewer.dialog("find")["fields"][0]))

    def test_copied_text_is_there_for_other_programs(self):
        self.putOnClipboard("gr\u00fc\u00dfe \u6f22".encode())
        self.keys("ctrl+v", "a")
        self.shows("gr\u00fc\u00dfe \u6f22a")
        self.keys("ctrl+a", "ctrl+c", "End", "x")
        self.shows("gr\u00fc\u00dfe \u6f22ax")
        self.assertEqual(self.read(), "gr\u00fc\u00dfe \u6f22a")

    def test_copied_text_is_there_when_the_dialog_has_been_closed(self):
        self.typed("word")
        self.keys("ctrl+a", "ctrl+c", "Escape")
        self.viewer.noDialog()
        self.assertEqual(self.read(), "word")

    def test_cut_text_is_removed_and_pasted(self):
        self.typed("one two")
        self.keys("ctrl+a", "ctrl+x")
        self.shows("")
        self.assertEqual(self.read(), "one two")
        self.keys("ctrl+v", "ctrl+v")
        self.shows("one twoone two")

    def test_text_of_another_program_replaces_the_selected_text(self):
        self.putOnClipboard("Stra\u00dfe".encode())
        self.typed("old")
        self.keys("ctrl+a", "ctrl+v")
        self.shows("Stra\u00dfe")

    def test_a_program_without_utf_8_gives_latin_1(self):
        self.putOnClipboard(b"Stra\xdfe", "STRING")
        self.keys("ctrl+v")
        self.shows("Stra\u00dfe")

    def test_several_lines_become_one_without_control_characters(self):
        self.putOnClipboard(b"a\x01\x7f\xc2\x85b\nc\td\x1b\xff\r\n")
        self.keys("ctrl+v")
        self.shows("ab c d\ufffd")

    def test_a_large_text_is_truncated_at_a_character(self):
        self.putOnClipboard("\u00fc".encode() * 100_000)
        self.keys("ctrl+v")
        self.shows("\u00fc" * 2048)

    def test_a_text_in_parts_is_pasted(self):
        self.putOnClipboard(b"0123456789" * 250, how="parts")
        self.keys("ctrl+v")
        self.shows("0123456789" * 250)

    def test_an_old_program_sends_parts_too(self):
        self.putOnClipboard(b"Stra\xdfe", "STRING", how="parts")
        self.keys("ctrl+v")
        self.shows("Stra\u00dfe")

    def test_the_beginning_of_a_text_without_an_end_is_pasted(self):
        self.putOnClipboard(b"y" * 100_000, how="endless")
        self.keys("ctrl+v")
        self.shows("y" * 4096)
        self.keys("ctrl+a", "x")
        self.shows("x")

    def test_a_huge_text_takes_no_memory(self):
        self.typed("a")
        before = self.highestMemory()
        self.putOnClipboard(b"z" * 80_000_000)
        self.keys("ctrl+v")
        self.shows("a" + "z" * 4095)
        self.assertLess(self.highestMemory() - before, 40_000)

    # Of the viewer, resident, in kilobytes.
    def highestMemory(self):
        with open(f"/proc/{self.viewer.process.pid}/status") as stream:
            return next(int(line.split()[1]) for line in stream if line.startswith("VmHWM"))

    def test_an_empty_clipboard_pastes_nothing(self):
        self.putOnClipboard(b"nothing that is text", "image/png")
        self.typed("a")
        self.keys("ctrl+v", "b")
        self.shows("ab")

    def test_control_characters_are_not_typed(self):
        self.typed("ab")
        self.keys("ctrl+b", "ctrl+d", "ctrl+k", "ctrl+m", "ctrl+bracketleft", "c")
        self.shows("abc")

    def test_a_control_character_leaves_the_selected_text(self):
        self.typed("ab")
        self.keys("ctrl+a", "ctrl+b", "End", "c")
        self.shows("abc")

    def test_undo_and_redo(self):
        self.typed("one two")
        self.keys("ctrl+a", "ctrl+x")
        self.shows("")
        self.keys("ctrl+z")
        self.shows("one two")
        self.keys("ctrl+z")
        self.shows("one ")
        self.keys("ctrl+shift+z")
        self.shows("one two")
        self.keys("ctrl+y")
        self.shows("")

    def test_moving_the_cursor_ends_the_selection(self):
        self.typed("b")
        self.keys("ctrl+a", "End", "c")
        self.shows("bc")
        self.keys("ctrl+a", "Home", "a")
        self.shows("abc")

    def test_a_key_with_a_modifier_that_is_not_its_own_neither_moves_the_cursor_nor_edits(self):
        self.typed("ab")
        self.keys("ctrl+a")
        for key in ("Left", "Right", "Home", "End", "BackSpace", "Delete", "ctrl+x", "ctrl+z"):
            self.keys(f"super+{key}", f"alt+{key}", f"ISO_Level3_Shift+{key}")
        self.keys("super+x", "alt+x", "End")
        self.shows("ab")
        for key in ("Left", "Home", "ctrl+Left"):
            self.keys(f"super+{key}", f"alt+{key}", f"ISO_Level3_Shift+{key}")
        self.keys("c")
        self.shows("abc")

    def test_alt_gr_types_characters(self):
        self.keys("ISO_Level3_Shift+e", "ISO_Level3_Shift+shift+e")
        self.shows("eE")

    def test_a_paste_is_undone(self):
        self.putOnClipboard(b"pasted")
        self.typed("a")
        self.keys("ctrl+v")
        self.shows("apasted")
        self.keys("ctrl+z")
        self.shows("a")

    def test_a_word_before_the_cursor_is_removed(self):
        self.typed("one two")
        self.keys("ctrl+BackSpace")
        self.shows("one ")

    def test_the_page_field_has_them_too(self):
        self.putOnClipboard(b"3\n")
        self.keys("Escape")
        self.viewer.noDialog()
        self.viewer.key("ctrl+l", "ctrl+a", "ctrl+v", "Return")
        self.viewer.shown(3)


class PasswordField(TextFieldTest):
    def setUp(self):
        super().setUp()
        self.viewer = self.view(document("encrypted.pdf"))
        self.display.xdotool("mousemove", *middle(self.viewer.dialog("password")["fields"][0]))

    def opens(self):
        self.keys("Return")
        self.viewer.until(lambda state: state["documents"] == ["encrypted.pdf"], "the document")

    def test_a_password_is_pasted(self):
        self.putOnClipboard(b"secret\n")
        self.keys("ctrl+v")
        self.shows("******")
        self.opens()

    def test_nothing_of_it_is_copied_or_cut(self):
        self.putOnClipboard(b"before")
        self.typed_hidden("secret")
        self.keys("ctrl+a", "ctrl+c", "ctrl+x", "ctrl+Insert", "shift+Delete", "End", "x")
        self.shows("*******")
        self.assertEqual(self.read(), "before")

    def test_its_selection_is_not_given_to_other_programs(self):
        self.typed_hidden("secret")
        self.keys("ctrl+a")
        self.assertIsNone(self.read("PRIMARY"))
        self.keys("x")
        self.shows("*")

    def test_undo_restores_the_characters_behind_the_stars(self):
        self.typed_hidden("secret")
        self.keys("ctrl+a", "BackSpace")
        self.shows("")
        self.keys("ctrl+z")
        self.shows("******")
        self.opens()

    def test_control_characters_are_no_part_of_it(self):
        self.typed_hidden("sec")
        self.keys("ctrl+b", "ctrl+k")
        self.display.xdotool("type", "--delay", "1", "ret")
        self.shows("******")
        self.opens()

    def typed_hidden(self, text):
        self.display.xdotool("type", "--delay", "1", text)
        self.shows("*" * len(text))


if __name__ == "__main__":
    unittest.main()
