# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The dialog that asks for a file. Its lists are read from the widgets.
import fcntl
import os
import shutil
import signal
import unittest

from harness import SCREENSHOTS, document
from opening import NAMES, OpenTest


class OpenByKeys(OpenTest):
    def test_a_typed_text_narrows_the_list_and_the_only_name_opens(self):
        self.openDialog()
        self.types("r")
        self.lists(["report 1.pdf", "report 2.PDF"])
        self.types("eport 2")
        self.lists(["report 2.PDF"], "report 2.PDF")
        self.keys("Return")
        self.opens("report 2.PDF")

    def test_tab_completes_what_is_typed(self):
        self.openDialog()
        self.types("re")
        self.keys("Tab")
        self.hasText("report ")
        self.types("1")
        self.keys("Tab")
        self.hasText("report 1.pdf")
        self.keys("ctrl+z")
        self.hasText("report 1")
        self.keys("Return")
        self.opens("report 1.pdf")

    def test_a_folder_is_completed_and_entered(self):
        self.openDialog()
        self.types("20")
        self.keys("Tab")
        self.hasText("2024/")
        self.lists(["new.pdf"])
        self.keys("Return")
        self.hasText("")
        self.lists(["new.pdf"])
        self.keys("Down", "Return")
        self.opens("new.pdf")

    def test_arrows_select_while_the_cursor_stays_in_the_field(self):
        self.openDialog()
        self.keys("Down", "Down", "Down")
        self.lists(NAMES, "report 1.pdf")
        self.keys("Up")
        self.lists(NAMES, "archive/")
        self.keys("Next")
        self.lists(NAMES, "\u00dcbersicht.pdf")
        self.keys("Prior", "Return")
        self.lists(["new.pdf"])

    def test_a_key_with_a_modifier_that_is_not_its_own_does_nothing(self):
        self.openDialog()
        for key in ("shift+Down", "super+Down", "ISO_Level3_Shift+Down", "ISO_Level3_Shift+Next", "super+BackSpace",
                    "ISO_Level3_Shift+BackSpace", "ctrl+alt+Up"):
            self.keys(key)
        self.keys("Down", "Return")  # the first of the list is selected
        self.lists(["new.pdf"])

    def test_backspace_without_a_text_goes_up(self):
        self.openDialog()
        self.types("x")
        self.lists([])
        self.keys("BackSpace")
        self.lists(NAMES)
        self.keys("BackSpace")
        self.lists(["Documents/", "papers/"], "papers/")
        self.keys("Return")
        self.lists(NAMES)

    def test_alt_up_goes_up_from_everywhere(self):
        self.openDialog()
        self.types("2024/")
        self.lists(["new.pdf"])
        self.keys("alt+Up")
        self.lists(NAMES, "2024/")
        self.keys("Tab", "Tab", "alt+Up")  # from the list
        self.lists(["Documents/", "papers/"], "papers/")

    def test_what_is_typed_in_the_list_continues_the_name(self):
        self.openDialog()
        self.keys("Tab", "Tab", "Down", "r")
        self.hasText("r")
        self.types("eport 2")
        self.lists(["report 2.PDF"])
        self.keys("Return")
        self.opens("report 2.PDF")

    def test_tab_in_the_lists_is_no_text(self):
        self.openDialog()
        self.types("report ")
        self.keys("Tab", "Tab", "Tab", "shift+Tab", "r")
        self.hasText("report r")

    def test_return_in_the_list_opens_the_selected_file(self):
        self.openDialog()
        self.keys("Tab", "Tab", "Down", "Down")
        self.lists(NAMES, "report 1.pdf")
        self.keys("Return")
        self.opens("report 1.pdf")
        self.assertEqual(self.viewer.now()["documents"], ["Summary.pdf", "report 1.pdf"])

    def test_usual_folders_are_chosen_by_keys(self):
        self.openDialog()
        self.keys("Tab", "Down")
        self.lists([])
        self.says("There are no PDF files in this folder.")
        self.keys("Up")
        self.lists(["Documents/", "papers/"])

    def test_escape_cancels_from_the_field_and_from_the_list(self):
        self.openDialog()
        self.keys("Escape")
        self.viewer.noDialog()
        self.keys("ctrl+o")
        self.viewer.dialog("openFile")
        self.keys("Tab", "Tab", "Escape")
        self.viewer.noDialog()
        self.assertEqual(self.viewer.now()["documents"], ["Summary.pdf"])

    def test_names_are_relative_to_the_folder_and_to_home(self):
        self.openDialog()
        self.types("../papers/./report 1.pdf")
        self.keys("Return")
        self.opens("report 1.pdf")
        self.keys("ctrl+o")
        self.viewer.dialog("openFile")
        self.types("~/papers/2024/n")
        self.lists(["new.pdf"])
        self.keys("Return")
        self.opens("new.pdf")

    def test_a_file_of_any_name_opens(self):
        self.openDialog()
        self.types("no ending")
        self.keys("Return")
        self.opens("no ending")

    def test_a_name_that_is_not_utf_8_opens(self):
        os.rename(os.path.join(self.papers, "report 1.pdf"), os.fsencode(self.papers) + b"/latin\xe4.pdf")
        self.viewer = self.view(os.path.join(self.papers, "Summary.pdf"))
        self.viewer.shown(1)
        self.keys("ctrl+o")
        self.viewer.dialog("openFile")
        self.types("lat")
        self.lists(["latin\ufffd.pdf"])
        self.keys("Return")
        self.viewer.noDialog()
        self.viewer.until(lambda state: len(state["documents"]) == 2, "the document")

    def test_a_missing_file_is_reported_in_the_dialog(self):
        self.openDialog()
        self.types("missing.pdf")
        self.says("No name here begins with \u201cmissing.pdf\u201d.")
        self.keys("Return")
        self.says(os.path.join(self.papers, "missing.pdf") + ": No such file or directory")
        self.hasText("missing.pdf")

    def test_a_file_that_cannot_be_opened_is_reported_in_the_dialog_and_another_one_opens(self):
        for name, content in (("broken.pdf", b"%PDF-1.4 and no more"), ("letter.pdf", b"Dear reader\n")):
            with open(os.path.join(self.papers, name), "wb") as stream:
                stream.write(content)
        self.viewer = self.view(os.path.join(self.papers, "Summary.pdf"), errors=2)
        self.viewer.shown(1)
        self.keys("ctrl+o")
        self.viewer.dialog("openFile")
        self.types("bro")
        self.lists(["broken.pdf"], "broken.pdf")
        self.keys("Return")
        self.says("broken.pdf: the file is damaged")
        self.assertEqual([part["text"] for part in self.viewer.dialog("openFile")["fields"]], ["bro"])
        self.keys("ctrl+a", "BackSpace")
        self.click("files", "letter.pdf", times=2)
        self.says("letter.pdf: this is not a PDF")
        self.click("files", "report 1.pdf", times=2)
        self.opens("report 1.pdf")

    def test_an_encrypted_file_asks_for_its_password_instead(self):
        shutil.copy(document("encrypted.pdf"), self.papers)
        self.viewer = self.view(os.path.join(self.papers, "Summary.pdf"))
        self.viewer.shown(1)
        self.keys("ctrl+o")
        self.viewer.dialog("openFile")
        self.types("encrypted.pdf")
        self.keys("Return")
        self.viewer.until(lambda state: [one["name"] for one in state["dialogs"]] == ["password"], "the question alone")
        self.viewer.type("password", "secret")
        self.opens("encrypted.pdf")

    def test_a_document_that_is_open_is_shown(self):
        self.openDialog()
        self.types("Summary.pdf")
        self.keys("Return")
        self.viewer.noDialog()
        self.assertEqual(self.viewer.now()["documents"], ["Summary.pdf"])

    def test_tab_completes_the_only_name_without_a_text(self):
        self.openDialog()
        self.types("2024/")
        self.lists(["new.pdf"])
        self.keys("Tab")
        self.hasText("2024/new.pdf")
        self.keys("Return")
        self.opens("new.pdf")

    def test_a_folder_that_cannot_be_read_is_reported_in_the_dialog(self):
        os.symlink("loop", os.path.join(self.papers, "loop"))
        self.openDialog()
        self.types("loop/")
        self.says("loop: Too many levels of symbolic links")


class OpenByPointer(OpenTest):
    def test_a_double_click_opens_a_file(self):
        self.openDialog()
        self.click("files", "report 2.PDF", times=2)
        self.opens("report 2.PDF")

    def test_a_double_click_enters_a_folder(self):
        self.openDialog()
        self.click("files", "2024/", times=2)
        self.lists(["new.pdf"])

    def test_a_click_selects_for_the_button(self):
        self.openDialog()
        self.click("files", "report 1.pdf")
        self.lists(NAMES, "report 1.pdf")
        self.viewer.answer("openFile", "Open")
        self.opens("report 1.pdf")

    def test_a_click_on_a_usual_folder_lists_it(self):
        self.openDialog()
        self.click("folders", "Home")
        self.lists(["Documents/", "papers/"])

    def test_up_and_all_files(self):
        self.openDialog()
        self.viewer.answer("openFile", "All files")
        self.lists([*NAMES[:2], "no ending", *NAMES[2:]])
        self.viewer.answer("openFile", "Up")
        self.lists(["Documents/", "papers/"], "papers/")


class OpenSlowly(OpenTest):
    """Other choices while a file is being opened."""

    # Has a file take long to be opened: until release(), at most the system's limit of 45 seconds.
    def hold(self, name):
        signal.signal(signal.SIGIO, signal.SIG_IGN)  # sent when the viewer opens it
        held = open(os.path.join(self.papers, name), "r+b")
        self.addCleanup(held.close)
        try:
            fcntl.fcntl(held, fcntl.F_SETLEASE, fcntl.F_WRLCK)
        except OSError as error:
            self.skipTest(f"no leases in this file system: {error}")
        return held

    def choose(self, name):
        self.click("files", name, times=2)

    def test_a_later_choice_opens_before_the_first_one(self):
        self.openDialog()
        held = self.hold("report 1.pdf")
        self.choose("report 1.pdf")
        self.says("Opening report 1.pdf")
        self.choose("report 2.PDF")
        self.opens("report 2.PDF")
        self.assertEqual(self.viewer.now()["documents"], ["Summary.pdf", "report 2.PDF"])
        held.close()
        self.viewer.until(lambda state: "report 1.pdf" in state["documents"], "the first choice")

    def test_the_dialog_stays_until_the_last_choice_is_open(self):
        self.openDialog()
        first, last = self.hold("report 1.pdf"), self.hold("report 2.PDF")
        self.choose("report 1.pdf")
        self.says("Opening report 1.pdf")
        self.choose("report 2.PDF")
        self.says("Opening report 2.PDF")
        first.close()
        self.viewer.until(lambda state: "report 1.pdf" in state["documents"], "the first choice")
        self.display.settled()
        self.says("Opening report 2.PDF")
        last.close()
        self.opens("report 2.PDF")

    def test_a_failure_of_an_earlier_choice_is_not_shown_in_the_dialog(self):
        with open(os.path.join(self.papers, "letter.pdf"), "wb") as stream:
            stream.write(b"Dear reader\n")
        self.viewer = self.view(os.path.join(self.papers, "Summary.pdf"), errors=1)
        self.viewer.shown(1)
        self.keys("ctrl+o")
        self.viewer.dialog("openFile")
        first, last = self.hold("letter.pdf"), self.hold("report 2.PDF")
        self.choose("letter.pdf")
        self.says("Opening letter.pdf")
        self.choose("report 2.PDF")
        self.says("Opening report 2.PDF")
        first.close()
        self.viewer.says("this is not a PDF")
        self.display.settled()
        self.says("Opening report 2.PDF")
        last.close()
        self.opens("report 2.PDF")


class OpenWhere(OpenTest):
    """In which folder it begins, and what it remembers."""

    def begins(self, folder, *arguments):
        viewer = self.view(*arguments)
        viewer.until(lambda state: state["drawn"]["there"] or "Ctrl+O" in state["note"], "the window")
        self.keys("ctrl+o")
        self.assertIn(folder, viewer.dialog("openFile")["texts"])
        return viewer

    def test_in_the_current_folder_then_in_the_last_used_one(self):
        viewer = self.begins(self.display.folder)
        self.types("~/papers/Summary.pdf")
        self.keys("Return")
        viewer.shown(1)
        self.keys("ctrl+w", "ctrl+q")
        viewer.ends()
        viewer = self.begins(self.papers)
        self.assertEqual(self.part(viewer.now(), "lists", "folders")["items"], ["Home", "Documents", "papers"])
        with open(os.path.join(self.home, ".local/state/tavrel/folders")) as stream:
            self.assertEqual(stream.read(), self.papers + "\n")

    def test_beside_the_document_in_front(self):
        viewer = self.begins(self.papers, os.path.join(self.papers, "Summary.pdf"))
        self.types("2024/new.pdf")
        self.keys("Return")
        viewer.until(lambda state: state["front"] == 1, "the other document")
        self.keys("ctrl+o")
        self.assertIn(os.path.join(self.papers, "2024"), viewer.dialog("openFile")["texts"])

    def test_a_hostile_file_of_folders_is_ignored(self):
        os.makedirs(os.path.join(self.home, ".local/state/tavrel"))
        with open(os.path.join(self.home, ".local/state/tavrel/folders"), "wb") as stream:
            stream.write(b"\0\xff relative\n/" + b"x" * 100_000 + b"\n/\x1b[2J\n")
        viewer = self.begins(self.display.folder)
        self.assertEqual(self.part(viewer.now(), "lists", "folders")["items"], ["Home", "Documents"])


class OpenSizes(OpenTest):
    def measure(self, dpi):
        self.resources(f"Xft.dpi: {dpi}")
        self.openDialog()
        self.display.screen(lambda picture: picture.darkest(self.part(self.viewer.now(), "lists", "files")) < 128,
                            "the names", os.path.join(SCREENSHOTS, f"open-{dpi}.png"))
        return self.viewer.dialog("openFile")

    def setUp(self):
        super().setUp()
        os.makedirs(SCREENSHOTS, exist_ok=True)

    def test_all_parts_are_in_the_dialog_at_every_resolution(self):
        for dpi in (72, 96, 144, 192):
            dialog = self.measure(dpi)
            for part in [*dialog["buttons"], *dialog["fields"], *dialog["lists"]]:
                self.assertTrue(dialog["x"] <= part["x"] and part["x"] + part["width"] <= dialog["x"] + dialog["width"]
                                and dialog["y"] <= part["y"]
                                and part["y"] + part["height"] <= dialog["y"] + dialog["height"], (dpi, part))
            line = dialog["fields"][0]["height"]  # of the font, and a little more
            for one, least in zip(dialog["lists"], (5, 12)):
                self.assertGreater(one["width"], least * line, (dpi, one["name"]))
                self.assertGreater(one["height"], 8 * line, (dpi, one["name"]))
            self.keys("Escape")
            self.viewer.noDialog()
            self.keys("ctrl+q")
            self.viewer.ends()

    def test_the_size_stays_whatever_is_listed_and_the_lists_follow_the_window(self):
        long = ["long " * 40 + f"{number}.pdf" for number in range(60)]  # need scroll bars
        for name in long:
            shutil.copy(document("cjk.pdf"), os.path.join(self.papers, "2024", name))
        self.openDialog()
        before = self.viewer.dialog("openFile")
        for text, names in (("2024/", [*long, "new.pdf"]), ("n", ["new.pdf"]), ("x" * 300, [])):
            self.types(text)
            self.lists(names)
            self.display.settled()
            after = self.viewer.dialog("openFile")
            for side in ("width", "height"):
                self.assertEqual(before[side], after[side], (text, side))
        self.display.xdotool("search", "--name", "^Open$", "windowsize", before["width"] + 100, before["height"] + 50)
        width = self.part({"dialogs": [before]}, "lists", "files")["width"]
        self.shows(lambda state: self.part(state, "lists", "files")["width"] > width + 60, "a wider list")


if __name__ == "__main__":
    unittest.main()
