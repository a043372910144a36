# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Fonts, symbols and the icon of the window, at every size.
import os
import subprocess
import unittest

from harness import HELPERS, TIMEOUT, ViewerTest, document

TWICE = "--xrm", "Xft.dpi: 192"
BLUE = (0x3B, 0x6E, 0xC4)


class Fonts(ViewerTest):
    def end(self, viewer):
        viewer.key("ctrl+q")
        self.assertEqual(viewer.ends(), 0)

    # The width of the note in an empty window.
    def noted(self, *arguments):
        viewer = self.view("--xrm", "Tavrel*noteColor: black", *arguments)
        area = viewer.until(lambda state: state["note"] and state["area"]["width"] > 1, "a note")["area"]
        inside = dict(area, x=area["x"] + 5, width=area["width"] - 10)
        parts = self.display.screen(lambda picture: picture.clusters(inside, 1000), "the note")
        self.end(viewer)
        return parts[0]["width"]

    def test_a_note_is_as_large_as_the_other_texts(self):
        usual = self.noted()
        self.assertGreater(usual, 120)
        for larger in (TWICE, ("--xrm", "Tavrel*rt*fontSize: 20")):
            self.assertGreater(self.noted(*larger), 1.8 * usual, larger)

    # A picture of the text field of Find with some text, without its cursor.
    def field(self, text):
        viewer = self.view(document("two-columns.pdf"), "--xrm", f"Tavrel*findText.value: {text}", "--xrm",
                           "Tavrel*findText.cursorPositionVisible: False")
        viewer.shown(1)
        viewer.key("ctrl+f")
        dialog = viewer.dialog("find")
        self.assertEqual(dialog["fields"][0]["text"], text)
        picture = self.display.settled()
        self.end(viewer)
        return picture, dialog["fields"][0]

    def test_a_text_field_shows_characters_that_the_font_does_not_have(self):
        # As signs for missing characters they would be the same.
        (one, area), (other, _), (same, _) = self.field("\u8a9e\u8a9e"), self.field("\u672c\u672c"), self.field("\u8a9e\u8a9e")
        self.assertTrue(one.same(same, area))
        self.assertFalse(one.same(other, area))

    # A picture of the status line with a message, and its position.
    def status(self, text):
        viewer = self.view(document("two-columns.pdf"), "--geometry", "700x500", "--xrm",
                           f"Tavrel*page.translations: #override <Key>j: do(GoToPage,{text})")
        area = viewer.shown(1)["area"]
        viewer.key("j")
        viewer.says(text)
        picture = self.display.settled()
        self.end(viewer)
        return picture, {"x": 0, "y": area["y"] + area["height"] + 1, "width": 400, "height": 20}

    def test_a_label_shows_characters_that_the_font_does_not_have(self):
        (one, area), (other, _), (same, _) = self.status("\u8a9e"), self.status("\u672c"), self.status("\u8a9e")
        self.assertTrue(one.same(same, area))
        self.assertFalse(one.same(other, area))

    def test_a_character_that_no_font_has_is_shown_as_missing(self):
        (without, area), (missing, _) = self.status("ab"), self.status("a\U000F0123b")
        self.assertFalse(missing.same(without, area))


class Symbols(ViewerTest):
    # The symbol's width in a dialog with a question.
    def symbol(self, *arguments):
        file = document("three-hundred.pdf")
        viewer = self.view(file, "--hits", self.hits(file, "needle", [0], units="words", version="9"), *arguments,
                           errors=1)  # the answer is no
        dialog = viewer.dialog("alert")
        above = dict(dialog, height=dialog["buttons"][0]["y"] - 8 - dialog["y"])
        found = self.display.screen(lambda picture: picture.find(BLUE, above), "the symbol")
        viewer.answer("alert", "No")
        viewer.noDialog()
        return found.right - found.left

    def test_the_symbol_of_a_dialog_is_as_large_as_its_text(self):
        usual = self.symbol()
        self.assertGreater(usual, 24)
        self.assertGreater(self.symbol(*TWICE), 1.8 * usual)


class Icon(ViewerTest):
    def test_the_window_has_an_icon_in_several_sizes(self):
        self.view(document("two-columns.pdf")).shown(1)
        printed = subprocess.run([os.path.join(HELPERS, "property"), "_NET_WM_ICON"], env=self.display.environment,
                                 check=True, timeout=TIMEOUT, capture_output=True, text=True).stdout
        numbers = [int(word) for word in printed.split()]
        sizes = []
        while numbers:
            width, height = numbers[:2]
            pixels, numbers = numbers[2:2 + width * height], numbers[2 + width * height:]
            self.assertEqual(len(pixels), width * height)
            self.assertEqual((width, pixels[0]), (height, 0))  # the corner is transparent
            self.assertEqual(pixels[(height // 4) * width + width // 2] & 0xFF000000, 0xFF000000)
            sizes.append(width)
        self.assertEqual(sizes, [16, 24, 32, 48, 64])


if __name__ == "__main__":
    unittest.main()
