# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Several documents, the Window menu, passwords, unreadable files, and files that change while they are shown.
import os
import pathlib
import shutil
import subprocess
import unittest

from harness import NEXT, PREVIOUS, TIMEOUT, TAVREL, Display, Viewer, ViewerTest, document, middle

THREE = ["two-columns.pdf", "three-hundred.pdf", "cjk.pdf"]


# Without the line breaks of a dialog.
def unbroken(text):
    return "".join(text.split())


class Documents(ViewerTest):
    def open(self):
        self.viewer = self.view(*map(document, THREE))
        self.viewer.until(lambda state: state["documents"] == THREE and not state["opening"]
                          and state["front"] == 2 and state["drawn"]["there"] and state["drawn"]["height"] > 100
                          and state["title"].startswith("cjk"), "three documents")
        area = self.viewer.now()["area"]
        shown = [self.display.screenshot()]

        def still(picture):
            shown.append(picture)
            return shown[-2].same(picture, area)

        self.display.screen(still, "a page that stays")
        return self.viewer

    # Opens a menu by the pointer, whose button stays pressed, and returns the area that it covers.
    def menu(self, number):
        area = self.viewer.now()["area"]
        bar = {"x": area["x"], "y": self.viewer.now()["buttons"][0]["y"] - 26, "width": area["width"], "height": 22}
        before = self.display.settled()
        if not hasattr(self, "closed"):
            self.closed = before
        else:
            before = self.display.screen(lambda picture: picture.same(self.closed, bar) and picture, "no open menu")
        title = before.clusters(bar, 9)[number]
        self.display.xdotool("mousemove", *middle(title), "mousedown", 1)
        below = dict(bar, y=bar["y"] + 30, height=400)
        changes = []

        # Two equal pictures: the menu is drawn completely.
        def drawn(picture):
            changes.append(picture.changes(before, below))
            return len(changes) > 1 and changes[-2] == changes[-1] and changes[-1]

        return self.display.screen(drawn, "a menu")

    def test_the_one_with_hits_is_in_front(self):
        file = document("two-columns.pdf")
        viewer = self.view(file, document("cjk.pdf"), "--hits", self.hits(file, "Paragraph", [1]))
        viewer.until(lambda state: len(state["documents"]) == 2 and not state["opening"] and state["front"] == 0
                     and state["drawn"]["marks"] > 0 and state["title"].startswith("two-columns"), "the one with hits")

    def test_the_last_one_is_in_front(self):
        viewer = self.open()
        self.assertEqual(viewer.now()["front"], 2)
        self.assertEqual(viewer.now()["title"], "cjk.pdf - Tavrel")

    def test_the_window_menu_brings_documents_to_front(self):
        self.resources("*multiClickTime: 1")  # these clicks are faster than a user's
        viewer = self.open()
        for number in (0, 1, 2, 0):
            menu = self.menu(5)
            x, y = menu["x"] + 40, menu["y"] + menu["height"] * (2 * number + 1) // 6
            self.display.xdotool("mousemove", x, y - 2, "mousemove", x, y, "mouseup", 1)
            viewer.until(lambda state: state["front"] == number, f"document {number} in front")
            self.assertEqual(viewer.now()["title"], f"{THREE[number]} - Tavrel")
            viewer.shown(1)

    def test_each_document_keeps_its_page(self):
        viewer = self.open()
        viewer.key("F10", *["Right"] * 5, "Down", "Return")
        viewer.until(lambda state: state["front"] == 0, "the first document")
        viewer.key("ctrl+Next")
        viewer.shown(2)
        viewer.key("F10", *["Right"] * 5, "Down", "Down", "Return")
        viewer.until(lambda state: state["front"] == 1, "the second document")
        viewer.shown(1)
        viewer.key("F10", *["Right"] * 5, "Down", "Return")
        viewer.until(lambda state: state["front"] == 0, "the first document")
        viewer.shown(2)

    def test_closing_leaves_the_others(self):
        viewer = self.open()
        viewer.key("ctrl+w")
        viewer.until(lambda state: state["documents"] == THREE[:2], "two documents")
        viewer.until(lambda state: state["pages"] in (4, 300) and state["drawn"]["there"], "one of them in front")
        viewer.key("ctrl+w")
        viewer.until(lambda state: len(state["documents"]) == 1, "one document")
        viewer.key("ctrl+w")
        viewer.until(lambda state: state["documents"] == [] and state["title"] == "Tavrel", "none")
        self.assertIsNone(viewer.process.poll())

    def test_hits_belong_to_their_document(self):
        file = document("three-hundred.pdf")
        viewer = self.view(file, "--hits", self.hits(file, "needle", [1, 2]), "--xrm",
                           f"Tavrel*page.translations: #override <Key>j: do(Open,{document('cjk.pdf')})")
        viewer.hit("hit 1 of 2")
        viewer.key("j")
        viewer.until(lambda state: len(state["documents"]) == 2 and state["front"] == 1, "both")
        viewer.until(lambda state: state["plugins"] == "" and not enabled(state, NEXT) and not state["opening"]
                     and state["drawn"]["there"] and state["pages"] == 1, "no hits in front")
        viewer.key("ctrl+w")
        viewer.hit("hit 1 of 2")
        viewer.until(lambda state: enabled(state, NEXT), "Next enabled")

    def test_the_same_file_twice_is_one_document(self):
        file = document("cjk.pdf")
        viewer = self.view(file, file)
        viewer.until(lambda state: state["documents"] and not state["opening"], "it")
        self.assertEqual(viewer.now()["documents"], ["cjk.pdf"])

    def test_a_page_after_the_name(self):
        viewer = self.view(document("three-hundred.pdf") + "#page=17")
        viewer.shown(17)


def enabled(state, name):
    return any(one["name"] == name and one["enabled"] for one in state["buttons"])


class Passwords(ViewerTest):
    def ask(self):
        viewer = self.view(document("encrypted.pdf"))
        dialog = viewer.dialog("password")
        self.assertIn("encrypted.pdf is encrypted: a password is needed.", dialog["texts"])
        return viewer

    def test_the_right_one_opens(self):
        viewer = self.ask()
        viewer.type("password", "secret")
        viewer.until(lambda state: state["documents"] == ["encrypted.pdf"], "the document")
        viewer.noDialog()
        viewer.shown(1)

    def test_a_wrong_one_is_asked_again(self):
        viewer = self.ask()
        viewer.type("password", "guess")
        viewer.until(lambda state: any("That was not the password" in text for one in state["dialogs"]
                                       for text in one["texts"]), "another question")
        viewer.type("password", "secret")
        viewer.until(lambda state: state["documents"] == ["encrypted.pdf"], "the document")

    def test_what_is_typed_is_not_shown(self):
        viewer = self.ask()
        viewer.type("password", "secret", then=None)
        self.assertEqual(viewer.now()["dialogs"][0]["fields"][0]["text"], "******")
        self.assertFalse([state for state in viewer.past if "secret" in repr(state)])
        self.display.xdotool("key", "BackSpace", "BackSpace", "e", "t", "Return")
        viewer.until(lambda state: state["documents"] == ["encrypted.pdf"], "the document")

    def test_on_the_command_line(self):
        viewer = self.view(document("encrypted.pdf"), "--password", "secret")
        self.assertEqual(viewer.shown(1)["dialogs"], [])

    def test_cancelled_others_open_nevertheless(self):
        viewer = self.view(document("encrypted.pdf"), document("cjk.pdf"))
        viewer.answer("password", "Cancel")
        viewer.noDialog()
        viewer.until(lambda state: state["documents"] == ["cjk.pdf"], "the other")


    def test_a_file_that_is_encrypted_now_is_reloaded_with_its_password(self):
        file = self.copy("three-hundred.pdf")
        viewer = self.view(file, errors=None)  # that it has changed may be reported before
        viewer.shown(1)
        pages = viewer.now()["pages"]
        os.replace(self.copy("encrypted.pdf"), file)
        viewer.key("ctrl+r")
        viewer.dialog("password")
        self.assertEqual(viewer.now()["pages"], pages, "the old state is shown until the new one is open")
        viewer.type("password", "secret")
        viewer.until(lambda state: state["pages"] != pages and state["drawn"]["there"] and not state["dialogs"],
                     "the new state")
        self.assertEqual(viewer.now()["documents"], ["three-hundred.pdf"])


class PasswordsManaged(Passwords):
    managed = True


class FirstDialog(ViewerTest):
    """A window manager places each window a little further to the right and down."""
    managed = True

    def setUp(self):
        super().setUp()
        for _ in range(3):
            self.view(document("cjk.pdf")).shown(1)

    def isInTheMiddle(self, viewer, name):
        def middleOf(area):
            return [area["x"] + area["width"] / 2, area["y"] + area["height"] / 2]

        viewer.dialog(name)
        state = viewer.until(lambda state: state["area"]["x"] > 60, "a window at its place")
        dialog = viewer.dialog(name)
        for window, one in zip(middleOf(state["area"]), middleOf(dialog)):
            self.assertLess(abs(window - one), 40)

    def test_a_question_for_a_password_is_in_the_middle_of_the_window(self):
        self.isInTheMiddle(self.view(document("encrypted.pdf")), "password")

    def test_the_reason_for_which_a_document_is_not_opened_is_in_the_middle_of_the_window(self):
        self.isInTheMiddle(self.view(os.path.join(self.folder(), "none.pdf"), errors=1), "error")

    def test_an_alert_is_in_the_middle_of_the_window(self):
        file = document("three-hundred.pdf")
        self.isInTheMiddle(self.view(file, "--hits", self.hits(file, "needle", [2], units="words", version="9"),
                                     errors=None), "alert")


class Unreadable(ViewerTest):
    def corrupted(self, name, content):
        file = os.path.join(self.folder(), name)
        with open(file, "wb") as stream:
            stream.write(content)
        return file

    # The reason is in a dialog and on standard error. The window stays until the user closes it.
    def refused(self, file, *arguments):
        viewer = self.view(file, *arguments, errors=1)
        dialog = viewer.dialog("error")
        line = viewer.stderrLines()[0]
        self.assertRegex(line, "^tavrel: .*" + os.path.basename(file) + ".*: ")
        self.assertIn(unbroken(line.removeprefix("tavrel: ")), unbroken(" ".join(dialog["texts"])))
        viewer.answer("error", "OK")
        viewer.noDialog()
        viewer.key("ctrl+q")
        self.assertEqual(viewer.ends(), 3)

    def test_all_reasons_are_in_one_dialog(self):
        folder = self.folder()
        viewer = self.view(*(os.path.join(folder, name) for name in ("one.pdf", "two.pdf")), "file://elsewhere/three.pdf",
                           errors=3)
        text = unbroken(" ".join(viewer.dialog("error")["texts"]))
        for part in ("one.pdf", "two.pdf", "elsewhere"):
            self.assertIn(part, text)

    def test_of_many_reasons_the_first_are_shown(self):
        folder = self.folder()
        viewer = self.view(*(os.path.join(folder, f"{number}-missing.pdf") for number in range(30)), errors=30)
        text = unbroken(" ".join(viewer.dialog("error")["texts"]))
        self.assertEqual(text.count("-missing.pdf"), 10)
        self.assertIn("and20more", text)

    def test_a_document_opened_then_is_shown_and_the_status_is_0(self):
        viewer = self.view(os.path.join(self.folder(), "missing.pdf"), errors=1)
        viewer.answer("error", "OK")
        viewer.noDialog()
        viewer.key("ctrl+o")
        viewer.type("openFile", document("cjk.pdf"))
        viewer.shown(1)
        viewer.noDialog()
        viewer.key("ctrl+q")
        self.assertEqual(viewer.ends(), 0)

    def test_a_missing_file(self):
        self.refused(os.path.join(self.folder(), "missing.pdf"))

    def test_a_folder(self):
        self.refused(self.folder())

    def test_no_pdf(self):
        self.refused(self.corrupted("text.pdf", b"These are words and no document.\n"))

    def test_an_empty_file(self):
        self.refused(self.corrupted("empty.pdf", b""))

    def test_the_start_of_a_pdf(self):
        with open(document("two-columns.pdf"), "rb") as stream:
            self.refused(self.corrupted("start.pdf", stream.read(1500)))

    def test_another_document_opens_nevertheless(self):
        viewer = self.view(os.path.join(self.folder(), "missing.pdf"), document("cjk.pdf"), errors=1)
        viewer.until(lambda state: state["documents"] == ["cjk.pdf"], "the other document")
        viewer.shown(1)
        viewer.key("ctrl+q")
        self.assertEqual(viewer.ends(), 0)

    def test_a_damaged_page_does_not_affect_the_others(self):
        with open(document("three-hundred.pdf"), "rb") as stream:
            content = bytearray(stream.read())
        for at in range(len(content) // 3, len(content) // 3 + 2000):
            content[at] ^= 0x55
        viewer = self.view(self.corrupted("damaged.pdf", content), errors=None)
        viewer.shown(1)
        viewer.key("ctrl+End")
        viewer.until(lambda state: state["page"] == state["pages"] and state["drawn"]["there"], "its last page")
        for line in viewer.stderrLines():
            self.assertRegex(line, "^tavrel: ")


class Arguments(ViewerTest):
    """How a document is named on the command line."""

    def setUp(self):
        super().setUp()
        self.file = shutil.copy(document("cjk.pdf"), os.path.join(self.folder(), "my paper #1.pdf"))

    def opens(self, *arguments, name="my paper #1.pdf", **others):
        viewer = self.view(*arguments, **others)
        viewer.shown(1)
        self.assertEqual(viewer.now()["documents"], [name])

    def refused(self, address, reason):
        viewer = self.view(address, errors=1)
        viewer.dialog("error")
        self.assertEqual(viewer.stderrLines(), [f"tavrel: {address}: {reason}"])

    def test_without_a_command_it_is_viewed(self):
        self.opens(self.file, command=())
        self.opens(pathlib.Path(self.file).as_uri(), command=())

    def test_an_address_of_this_machine(self):
        self.opens(pathlib.Path(self.file).as_uri())
        self.opens("file://localhost" + self.file.replace(" ", "%20").replace("#", "%23"))

    def test_an_address_with_parameters(self):
        viewer = self.view(pathlib.Path(document("three-hundred.pdf")).as_uri() + "#page=17")
        viewer.shown(17)

    def test_an_address_of_a_highlight_file(self):
        file = shutil.copy(document("three-hundred.pdf"), os.path.join(self.folder(), "my paper.pdf"))
        hits = shutil.copy(self.hits(file, "needle", [0, 3]), os.path.join(os.path.dirname(file), "my paper.xml"))
        viewer = self.view(pathlib.Path(hits).as_uri())
        viewer.hit("hit 1 of 2")

    def test_an_address_of_another_machine(self):
        self.refused("file://elsewhere/a.pdf", "is on another machine, elsewhere")

    def test_hits_of_an_address_that_cannot_be_opened_are_not_those_of_the_next_document(self):
        file = document("three-hundred.pdf")
        viewer = self.view("file://elsewhere/a.pdf", file, "--hits", self.hits(file, "needle", [2]), errors=1)
        self.assertEqual(viewer.shown(1)["plugins"], "")

    def test_an_address_with_a_wrong_escape(self):
        self.refused("file:///a%zz.pdf", '"%zz" is no byte of a file name')


class WithoutADisplay(unittest.TestCase):
    def run_view(self, **environment):
        rest = {name: value for name, value in os.environ.items() if name != "DISPLAY"}
        return subprocess.run([TAVREL, "view", document("cjk.pdf")], env={**rest, **environment}, text=True,
                              capture_output=True, timeout=TIMEOUT, check=False)

    def test_no_display_is_one_line(self):
        ended = self.run_view()
        self.assertEqual((ended.returncode, ended.stderr), (1, "tavrel: no DISPLAY is set\n"))

    def test_a_wrong_display_is_one_line(self):
        ended = self.run_view(DISPLAY=":4711")
        self.assertEqual((ended.returncode, ended.stderr), (1, "tavrel: display :4711: cannot be opened\n"))


class LostDisplay(unittest.TestCase):
    def test_a_lost_connection_is_one_line(self):
        display = Display()
        self.addCleanup(display.close)
        viewer = Viewer(display, document("cjk.pdf"))
        self.addCleanup(viewer.close)
        viewer.shown(1)
        display.kill()
        self.assertEqual(viewer.ends(), 1)
        self.assertEqual(viewer.stderrText(),
                         f"tavrel: lost the connection to display {display.environment['DISPLAY']}\n")


class Changing(ViewerTest):
    """Files that are removed or changed while they are shown."""

    def setUp(self):
        super().setUp()
        self.file = self.copy("three-hundred.pdf")

    def open(self, errors):
        viewer = self.view(self.file, errors=errors)
        viewer.shown(1)
        return viewer

    def test_a_removed_file_is_reported_and_pages_still_turn(self):
        viewer = self.open(1)
        os.remove(self.file)
        viewer.key("ctrl+End")
        state = viewer.shown(300)
        self.assertEqual(state["note"], "")
        viewer.said("has changed; Reload shows it as it is now")

    def test_reloading_a_removed_file_reports_it(self):
        viewer = self.open(None)  # the change may be reported before
        os.remove(self.file)
        viewer.key("ctrl+r")
        viewer.until(lambda state: "No such file" in state["status"] and not state["opening"], "a line")
        self.assertEqual(viewer.now()["documents"], ["three-hundred.pdf"], "the document is kept")
        viewer.key("F1")
        viewer.dialog("keys")

    def test_a_truncated_file_shows_pages_or_the_reason(self):
        viewer = self.open(None)
        os.truncate(self.file, 2000)
        viewer.key("ctrl+End")
        viewer.said("three-hundred.pdf: ")
        self.assertTrue(viewer.stderrLines())
        for line in viewer.stderrLines():
            self.assertRegex(line, "^tavrel: ")
        viewer.key("F1")
        viewer.dialog("keys")

    def test_a_page_that_cannot_be_read_is_reported_by_its_number(self):
        viewer = self.open(None)
        os.truncate(self.file, 2000)
        viewer.key("ctrl+End")
        viewer.said("page 300")

    def test_a_changed_file_is_reported_once_and_reload_shows_it(self):
        viewer = self.open(1)
        viewer.key("ctrl+Next")
        viewer.shown(2)
        other = self.copy("two-columns.pdf")
        os.replace(other, self.file)
        viewer.key("ctrl+End")
        viewer.said("has changed; Reload shows it as it is now")
        viewer.key("ctrl+Home", "ctrl+Next")
        viewer.shown(2)
        viewer.key("ctrl+r")
        viewer.until(lambda state: state["pages"] == 4 and state["page"] == 2, "the new file on the same page")
        viewer.shown(2)

    def test_reload_goes_to_the_last_page_if_there_are_fewer(self):
        viewer = self.open(None)
        viewer.key("ctrl+End")
        viewer.shown(300)
        shutil.copy(document("two-columns.pdf"), self.file)
        viewer.key("ctrl+r")
        viewer.until(lambda state: state["pages"] == 4 and state["page"] == 4, "the last page")
        viewer.until(lambda state: not enabled(state, "NextPage") and enabled(state, "PreviousPage"), "no next page")

    # Waits until the buttons of the hits are so.
    def untilEnabled(self, viewer, previous, following):
        wanted = {PREVIOUS: previous, NEXT: following}
        viewer.until(lambda state: {one["name"]: one["enabled"] for one in state["buttons"] if one["name"] in wanted}
                     == wanted, f"buttons: {wanted}")

    def test_a_reload_that_leaves_fewer_pages_leaves_no_next_hit(self):
        viewer = self.viewHits(self.file, self.hits(self.file, "needle", [1, 2, 200]), errors=None)
        viewer.key("F3")
        viewer.hit("hit 2 of 3")
        self.untilEnabled(viewer, True, True)
        os.replace(self.copy("two-columns.pdf"), self.file)
        viewer.key("ctrl+r")
        viewer.until(lambda state: state["pages"] == 4 and "hit 2 of 2" in state["plugins"], "two hits")
        self.untilEnabled(viewer, True, False)
        viewer.key("ctrl+w")
        self.untilEnabled(viewer, False, False)

    def test_a_reload_without_the_hits_leaves_no_steps(self):
        hits = self.hits(self.file, "needle", [1, 2])
        viewer = self.viewHits(self.file, hits, errors=None)
        os.remove(hits)
        viewer.key("ctrl+r")
        viewer.until(lambda state: "No such file" in state["plugins"] and state["drawn"]["there"], "no hits")
        self.untilEnabled(viewer, False, False)

    def test_a_document_without_hits_has_no_steps(self):
        viewer = self.viewHits(self.file, self.hits(self.file, "needle", [1, 2]), document("cjk.pdf"))
        viewer.until(lambda state: len(state["documents"]) == 2 and not state["opening"], "both")
        self.untilEnabled(viewer, False, True)
        viewer.key("ctrl+w")
        viewer.until(lambda state: state["title"].startswith("cjk"), "the other one")
        self.untilEnabled(viewer, False, False)

    def test_hits_are_there_after_a_reload(self):
        hits = self.hits(self.file, "needle", [1, 2])
        viewer = self.view(self.file, "--hits", hits, errors=None)
        viewer.hit("hit 1 of 2")
        # Opening may take less than an iteration of the event loop and is not reported then. The new file differs from
        # the old one, so that it is recognised.
        os.replace(self.copy("two-columns.pdf"), self.file)
        viewer.key("ctrl+r")
        state = viewer.until(lambda state: state["pages"] == 4 and "hit 1 of 2" in state["plugins"]
                             and state["drawn"]["marks"] == 1, "the hits")
        self.assertEqual((state["drawn"]["page"], state["ticks"]), (2, [1, 2]))


if __name__ == "__main__":
    unittest.main()
