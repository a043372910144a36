# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Plug-ins that fail, together with others that work.
import os
import unittest

from harness import BUTTONS_PLUGIN, NEXT, TEST_PLUGINS, ViewerTest, document

NOT_RUNNING = ["nohandshake", "nomain", "nosetup", "noversion", "otherversion", "raises", "refuses", "unknowncallback"]
UNLOADING_FAILS = ["raisesunload", "ping"]
FAILING = ["forgets", *NOT_RUNNING]  # "forgets" does not clean up and runs nevertheless


class Plugins(ViewerTest):
    def setUp(self):
        super().setUp()
        file = document("three-hundred.pdf")
        self.viewer = self.viewHits(file, self.hits(file, "needle", [1, 4]), "--plugins-dir", TEST_PLUGINS,
                                    errors=None)

    def test_each_failing_one_is_one_line(self):
        lines = self.viewer.stderrLines()
        for name in FAILING:
            with self.subTest(name):
                self.assertEqual(len([line for line in lines if name in line]), 1, lines)
        self.assertEqual(len(lines), len(FAILING), lines)

    def test_the_others_work_nevertheless(self):
        self.viewer.press(NEXT)
        self.viewer.hit("hit 2 of 2")
        self.viewer.shown(5)
        before = self.viewer.stderrLines()
        self.viewer.key("ctrl+q")
        self.assertEqual(self.viewer.ends(), 0)
        unloading = self.viewer.stderrLines()[len(before):]
        for line in unloading:
            self.assertTrue(any(name in line for name in UNLOADING_FAILS), line)
        for name in UNLOADING_FAILS:
            self.assertTrue(any(name in line for line in unloading), name)

    def about(self):
        self.viewer.key("F10", "Left", "Down", "Down", "Return")  # Help > About Plug-Ins
        return "\n".join(self.viewer.dialog("information")["texts"])

    def test_about_lists_each_with_its_version_and_state(self):
        text = self.about()
        for wanted in (r"TavrelGLT [0-9.]+: +running", r"HitPages [0-9.]+: +running", r"BRZ [0-9.]+: +running",
                       r"HitSteps [0-9.]+: +running", r"good: +running", "forgets: +running",
                       *(name + r"(\.so)?: +failed: \S" for name in NOT_RUNNING)):
            with self.subTest(wanted):
                self.assertRegex(text, wanted)


class PluginButtons(ViewerTest):
    def open(self):
        viewer = self.view(document("three-hundred.pdf"), "--plugins-dir", BUTTONS_PLUGIN)
        viewer.shown(1)
        return viewer

    def test_a_window_of_its_own_shows_all(self):
        names = [button["name"] for button in self.open().now()["buttons"]]
        self.assertEqual(names[-3:], ["buttons:Always", "buttons:OwnWindow", "buttons:Detach"])

    def test_without_the_button_of_the_next_page_its_field_still_follows_the_page(self):
        viewer = self.open()
        viewer.press("buttons:Detach")
        viewer.until(lambda state: all(one["name"] != "NextPage" for one in state["buttons"]), "a button less")
        viewer.key("ctrl+Next")
        viewer.until(lambda state: state["pageField"]["text"] == "2", "the page's number in its field")
        last = viewer.now()["buttons"][-1]
        self.assertGreater(viewer.now()["pageField"]["x"], last["x"])


class NoPlugins(ViewerTest):
    def test_a_missing_folder_is_ignored(self):
        viewer = self.view(document("cjk.pdf"), "--plugins-dir", os.path.join(self.folder(), "none"), errors=None)
        viewer.shown(1)


if __name__ == "__main__":
    unittest.main()
