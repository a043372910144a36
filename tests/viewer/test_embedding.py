# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# A viewer that is embedded in another program's window.
import os
import subprocess
import unittest

from harness import BUTTONS_PLUGIN, HELPERS, NEXT, YELLOW, ViewerTest, document


class Embedding(ViewerTest):
    def setUp(self):
        super().setUp()
        self.outer = subprocess.Popen([os.path.join(HELPERS, "outer")], env=self.display.environment,
                                      stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.outer.wait)
        self.addCleanup(self.outer.stdout.close)
        self.addCleanup(self.outer.stdin.close)
        self.window = self.outer.stdout.readline().strip()

    def command(self, line):
        self.outer.stdin.write(line + "\n")
        self.outer.stdin.flush()
        self.outer.stdout.readline()

    def open(self):
        file = document("three-hundred.pdf")
        self.viewer = self.view(file, "--hits", self.hits(file, "needle", [1, 4]), "--into", self.window)
        self.viewer.hit("hit 1 of 2")
        return self.viewer

    def fills(self, width, height):
        def filled(state):
            area = state["area"]
            return area["x"] == 40 and 0 < 40 + width - area["x"] - area["width"] < 60 \
                and 0 < 30 + height - area["y"] - area["height"] < 60

        self.viewer.until(filled, f"{width} x {height} filled")

    def test_it_fills_the_window(self):
        self.open()
        self.fills(700, 600)
        self.assertEqual(self.viewer.now()["buttons"][0]["x"], 46)

    def test_hits_work_within(self):
        viewer = self.open()
        self.fills(700, 600)
        self.display.screen(lambda picture: picture.find(YELLOW, viewer.now()["area"]), "a yellow mark")
        viewer.press(NEXT)
        viewer.hit("hit 2 of 2")
        viewer.shown(5)
        viewer.key("shift+F3")
        viewer.hit("hit 1 of 2")

    def test_it_shows_only_the_plug_ins_buttons_for_browsers(self):
        viewer = self.view(document("cjk.pdf"), "--into", self.window, "--plugins-dir", BUTTONS_PLUGIN)
        viewer.shown(1)
        names = [button["name"] for button in viewer.now()["buttons"]]
        self.assertIn("buttons:Always", names)
        self.assertNotIn("buttons:OwnWindow", names)
        self.assertIn("NextPage", names)

    def test_it_follows_the_windows_size(self):
        viewer = self.open()
        self.fills(700, 600)
        self.command("resize 500 400")
        self.fills(500, 400)
        self.command("resize 900 700")
        self.fills(900, 700)
        viewer.until(lambda state: state["drawn"]["width"] > 800, "the page as wide as before")

    def test_it_ends_with_the_window(self):
        viewer = self.open()
        self.command("destroy")
        self.assertEqual(viewer.ends(), 0)
        self.assertEqual(viewer.stderrText(), "")

    def test_it_ends_with_the_other_program(self):
        viewer = self.open()
        self.outer.kill()
        self.assertEqual(viewer.ends(), 0)
        self.assertEqual(viewer.stderrText(), "")

    def test_it_stays_open_without_a_document(self):
        viewer = self.open()
        viewer.pointAtPage()
        viewer.key("ctrl+w")
        viewer.until(lambda state: state["documents"] == [] and not state["drawn"]["there"], "an empty viewer")
        self.command("resize 600 500")
        self.fills(600, 500)

    def test_no_such_window(self):
        viewer = self.view(document("cjk.pdf"), "--into", "4711", errors=1)
        self.assertEqual(viewer.ends(), 1)
        self.assertEqual(viewer.stderrText(), "tavrel: window 4711: there is no such window\n")

    def test_an_invalid_window_number(self):
        for number in ("0", "window"):
            with self.subTest(number):
                viewer = self.view(document("cjk.pdf"), "--into", number, errors=1)
                self.assertEqual(viewer.ends(), 2)
                self.assertIn(f'--into: "{number}" is not the number of a window', viewer.stderrText())


class EmbeddingManaged(Embedding):
    """A window manager frames the outer window: its position is not known."""
    managed = True

    def fills(self, width, height):
        self.viewer.until(lambda state: width - 60 < state["area"]["width"] < width
                          and height - 150 < state["area"]["height"] < height, f"{width} x {height} filled")

    def test_it_fills_the_window(self):
        self.open()
        self.fills(700, 600)


if __name__ == "__main__":
    unittest.main()
