# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Six screenshots, whose important parts are checked. They are kept for inspection: harness.SCREENSHOTS.
import os
import unittest

from harness import FOUND, NEXT, PREVIOUS, SCREENSHOTS, YELLOW, ViewerTest, document


class Pictures(ViewerTest):
    def setUp(self):
        super().setUp()
        self.file = document("three-hundred.pdf")
        os.makedirs(SCREENSHOTS, exist_ok=True)

    def keep(self, name, predicate, what):
        return self.display.screen(lambda picture: predicate(picture) and picture, what,
                                   os.path.join(SCREENSHOTS, name + ".png"))

    # The visible part of the page.
    def page(self, state):
        area, drawn = state["area"], state["drawn"]
        left, top = max(area["x"], drawn["x"]), max(area["y"], drawn["y"])
        return {"x": left, "y": top, "width": min(area["x"] + area["width"], drawn["x"] + drawn["width"]) - left,
                "height": min(area["y"] + area["height"], drawn["y"] + drawn["height"]) - top}

    # Yellow on the page, in one line of text, and nowhere else in the window.
    def marked(self, state, picture):
        everything = dict(state["area"], x=0, y=0, width=picture.width, height=picture.height)
        everywhere, here = picture.find(YELLOW, everything), picture.find(YELLOW, self.page(state))
        return here and everywhere.count == here.count and here.right - here.left > here.bottom - here.top > 8

    def lighter(self, picture, greyed, enabled):
        return picture.darkest(inner(greyed)) > picture.darkest(inner(enabled)) + 40

    def test_hits(self):
        viewer = self.viewHits(self.file, self.hits(self.file, "needle", [2, 5, 9, 40]))
        state = viewer.until(lambda state: state["ticks"], "ticks")
        bar = {"x": state["area"]["x"] + state["area"]["width"], "y": state["area"]["y"], "width": 40,
               "height": state["area"]["height"]}
        self.keep("hits", lambda picture: self.marked(state, picture) and picture.find((0xD8, 0xA2, 0), bar)
                  and self.lighter(picture, viewer.button(PREVIOUS), viewer.button(NEXT)),
                  "a mark, ticks, Prev greyed and Next not")

    def test_the_last_hit(self):
        viewer = self.viewHits(self.file, self.hits(self.file, "needle", [2, 5]))
        viewer.key("F3")
        viewer.hit("hit 2 of 2")
        state = viewer.shown(6)
        self.keep("last-hit", lambda picture: self.marked(state, picture)
                  and self.lighter(picture, viewer.button(NEXT), viewer.button(PREVIOUS)),
                  "a mark, Next greyed and Prev not")

    def test_no_hits(self):
        viewer = self.view(self.file)
        state = viewer.shown(1)
        self.keep("no-hits", lambda picture: not picture.find(YELLOW, state["area"])
                  and picture.darkest(self.page(state)) < 60
                  and self.lighter(picture, viewer.button(NEXT), viewer.button("NextPage"))
                  and self.lighter(picture, viewer.button(PREVIOUS), viewer.button("NextPage")),
                  "text without a mark, Next and Prev greyed")
        self.assertEqual(state["plugins"], "")

    def test_the_question(self):
        hits = self.hits(self.file, "needle", [0], units="words", version="9")
        viewer = self.view(self.file, "--hits", hits)
        dialog = viewer.dialog("alert")
        self.assertIn("highlights anyway?", " ".join(dialog["texts"]))
        for part in dialog["buttons"]:
            self.assertTrue(dialog["x"] <= part["x"] and part["x"] + part["width"] <= dialog["x"] + dialog["width"])
        self.keep("question", lambda picture: not picture.find(YELLOW, viewer.now()["area"])
                  and all(picture.darkest(inner(one)) < 100 for one in dialog["buttons"]), "the buttons' labels")
        viewer.answer("alert", "Yes")
        viewer.hit("hit 1 of 1")

    def test_find(self):
        viewer = self.view(self.file)
        viewer.shown(1)
        viewer.key("ctrl+f")
        viewer.type("find", "needle")
        viewer.until(lambda state: state["findMessage"] == "" and state["dialogs"], "found")
        dialog = viewer.dialog("find")
        self.assertEqual([one["label"] for one in dialog["buttons"]],
                         ["Match case", "Whole words", "Close", "Find Next", "Find Previous"])
        self.keep("find", lambda picture: picture.find(FOUND, self.page(viewer.now()))
                  and all(picture.darkest(inner(one)) < 100 for one in dialog["buttons"]),
                  "a mark beside the dialog, and its labels")

    def test_twice_the_size(self):
        plain = self.viewHits(self.file, self.hits(self.file, "needle", [2, 5]))
        usual = plain.button(NEXT)
        plain.key("ctrl+q")
        plain.ends()
        viewer = self.viewHits(self.file, self.hits(self.file, "needle", [2, 5]), "--xrm", "Xft.dpi: 192")
        state = viewer.until(lambda state: state["drawn"]["marks"] == 1, "a mark")
        button = viewer.button(NEXT)
        self.assertGreater(button["width"], 1.6 * usual["width"])
        self.assertGreater(button["height"], 1.6 * usual["height"])
        self.keep("twice-the-size", lambda picture: self.marked(state, picture)
                  and self.lighter(picture, viewer.button(PREVIOUS), button), "a mark, Prev greyed and Next not")


class PicturesManaged(Pictures):
    managed = True

    def keep(self, name, predicate, what):
        return super().keep(name + "-managed", predicate, what)


# A button without its border.
def inner(button):
    return {"x": button["x"] + 3, "y": button["y"] + 3, "width": button["width"] - 6, "height": button["height"] - 6}


if __name__ == "__main__":
    unittest.main()
