# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Corrupted documents, and pages whose rendering takes long.
import os
import subprocess

from harness import FEEDBACK_PLUGIN, ViewerTest, document

SEEDS, SHARES = range(40), ("0.00002", "0.0001", "0.0005", "0.002", "0.01")


class DamagedDocuments(ViewerTest):
    def corrupted(self):
        folder = self.folder()
        files = []
        for name in ("two-columns.pdf", "cjk.pdf", "rotated-90.pdf", "cropped.pdf"):
            with open(document(name), "rb") as stream:
                content = stream.read()
            for share in SHARES:
                for seed in SEEDS[::4]:
                    file = os.path.join(folder, f"{share}-{seed}-{name}")
                    with open(file, "wb") as stream:
                        subprocess.run(["zzuf", "-s", str(seed), "-r", share], input=content, stdout=stream, check=True)
                    files.append(file)
        return files

    def test_each_of_two_hundred_is_shown_or_reported(self):
        files = self.corrupted()
        self.assertEqual(len(files), 200)
        viewer = self.view(*files, errors=None)
        viewer.until(lambda state: not state["opening"], "an end of opening")
        opened = viewer.now()["documents"]
        refused = [line for line in viewer.stderrLines() if any(os.path.basename(file) in line for file in files)]
        self.assertGreater(len(opened), 20)
        self.assertGreater(len(refused), 20)
        for file in files:
            name = os.path.basename(file)
            self.assertTrue(name in opened or any(name in line for line in refused), name)

        # Each of them is shown to its last page.
        while viewer.now()["documents"]:
            left = len(viewer.now()["documents"])
            viewer.until(lambda state: len(state["documents"]) == left and state["drawn"]["there"], "a page")
            viewer.key("End")
            viewer.until(lambda state: state["page"] == state["pages"] and state["drawn"]["there"] and
                         state["drawn"]["page"] == state["page"], "the last page")
            viewer.key("ctrl+w")
            viewer.until(lambda state: len(state["documents"]) == left - 1, "one document less")
        viewer.key("ctrl+q")
        self.assertEqual(viewer.ends(), 0)


# Writes a document of these objects; the first one is its catalog. Its table of objects has an additional free entry
# with the number `last`.
def written(file, objects, last=0):
    content, offsets = b"%PDF-1.4\n", []
    for number, each in enumerate(objects, 1):
        offsets.append(len(content))
        content += b"%d 0 obj\n" % number + each + b"\nendobj\n"
    table = len(content)
    content += b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    content += b"".join(b"%010d 00000 n \n" % offset for offset in offsets)
    content += b"%d 1\n0000000000 00000 f \n" % last
    size = max(last, len(objects)) + 1
    content += b"trailer<</Size %d/Root 1 0 R>>\nstartxref\n%d\n%%%%EOF\n" % (size, table)
    with open(file, "wb") as stream:
        stream.write(content)
    return file


def stream(content, entries=b""):
    return b"<<" + entries + b"/Length %d>>stream\n" % len(content) + content + b"\nendstream"


# A document whose second page takes seconds: thirty thousand long strokes.
def slow(file):
    strokes = b"".join(b"%d %d m %d %d l S\n" % (i * 7 % 612, i * 13 % 792, i * 31 % 612, i * 17 % 792)
                       for i in range(30_000))
    objects = [b"<</Type/Catalog/Pages 2 0 R>>",
               b"<</Type/Pages/Count 3/Kids[3 0 R 4 0 R 5 0 R]>>"]
    objects += [b"<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]/Contents %d 0 R>>" % (6 + i) for i in range(3)]
    return written(file, objects + [stream(content) for content in (b"", strokes, b"")])


# A document of four pages, one of which takes hours, to render and to search: ten levels of forms, each drawn ten times
# by the one above it. The third page says "needle".
def endless(file, number=4):
    levels = 10
    page = b"<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]"
    pages = [page + b">>"] * 4
    pages[2] = page + b"/Contents %d 0 R/Resources<</Font<</T %d 0 R>>>>>>" % (levels + 9, levels + 10)
    pages[number - 1] = page + b"/Contents 7 0 R/Resources<</XObject<</F 8 0 R>>>>>>"
    objects = [b"<</Type/Catalog/Pages 2 0 R>>", b"<</Type/Pages/Count 4/Kids[3 0 R 4 0 R 5 0 R 6 0 R]>>", *pages,
               stream(b"/F Do")]
    form = b"/Type/XObject/Subtype/Form/BBox[0 0 612 792]"
    objects += [stream(b"/F Do " * 10, form + b"/Resources<</XObject<</F %d 0 R>>>>" % (9 + level))
                for level in range(levels)]
    objects += [stream(b"q Q", form), stream(b"BT /T 12 Tf 50 700 Td (needle) Tj ET"),
                b"<</Type/Font/Subtype/Type1/BaseFont/Courier>>"]
    return written(file, objects)


class SlowPages(ViewerTest):
    def open(self):
        return self.view(slow(os.path.join(self.folder(), "slow.pdf")))

    def test_a_page_that_takes_long_shows_its_outline_and_a_note(self):
        viewer = self.open()
        viewer.shown(1)
        viewer.key("ctrl+Next")
        waiting = viewer.until(lambda state: state["drawn"]["page"] == 2 and not state["drawn"]["there"], "an outline")
        self.assertGreater(waiting["drawn"]["height"], 500)
        viewer.until(lambda state: state["note"] == "rendering", "a note")
        viewer.shown(2)
        viewer.until(lambda state: state["note"] == "", "no note")

    def test_the_window_is_responsive_meanwhile(self):
        viewer = self.open()
        viewer.shown(1)
        viewer.key("ctrl+Next")
        viewer.until(lambda state: state["drawn"]["page"] == 2 and not state["drawn"]["there"], "an outline")
        viewer.key("ctrl+Prior")
        viewer.until(lambda state: state["drawn"]["page"] == 1 and state["drawn"]["there"], "the first page")
        self.assertFalse(any(state["drawn"]["page"] == 2 and state["drawn"]["there"] for state in viewer.past))


class EndlessSearch(ViewerTest):
    def test_quitting_does_not_wait_for_it(self):
        viewer = self.view(endless(os.path.join(self.folder(), "endless.pdf")))
        viewer.shown(1)
        viewer.key("ctrl+f")
        viewer.type("find", "nowhere")
        viewer.until(lambda state: "3 of 4 pages" in state["findMessage"], "a search that has come to the last page")
        viewer.key("ctrl+q")
        self.assertEqual(viewer.ends(), 0)


class EndlessPage(ViewerTest):
    def open(self, errors=0):
        viewer = self.view(endless(os.path.join(self.folder(), "endless.pdf"), 1), "--plugins-dir", FEEDBACK_PLUGIN,
                           errors=errors)
        viewer.until(lambda state: state["drawn"]["page"] == 1 and state["note"] == "rendering", "a page awaited")
        return viewer

    def test_a_plugin_that_asks_for_its_words_gets_an_error_and_the_window_goes_on(self):
        viewer = self.open(errors=1)
        viewer.press("f:H")
        viewer.key("ctrl+Next")
        viewer.shown(2)
        self.assertRegex(viewer.stderrText(), "^tavrel: feedback: .*endless.pdf: page 1 takes too long to read\n$")
        viewer.key("ctrl+f")
        viewer.type("find", "needle")
        viewer.shown(3)
        self.assertLess(viewer.now()["longestIteration"], 5000)
        viewer.key("ctrl+q")
        self.assertEqual(viewer.ends(), 0)

    def test_the_number_of_its_hit_is_shown_before_its_picture(self):
        folder = self.folder()
        hits = os.path.join(folder, "hits.xml")
        with open(hits, "w") as stream:
            stream.write('<XML>\n<Body Units="characters" mode="active" version="2">\n<highlights>\n'
                         '<loc pg="2" pos="0" len="6"/>\n<loc pg="3" pos="0" len="6"/>\n</highlights>\n</Body>\n</XML>\n')
        viewer = self.view(endless(os.path.join(folder, "endless.pdf")), "--hits", hits)
        viewer.hit("hit 1 of 2, page 1 of 2")
        viewer.key("ctrl+Next")
        state = viewer.until(lambda state: "hit 2 of 2, page 2 of 2" in state["plugins"], "the number")
        self.assertFalse(state["drawn"]["there"])
        viewer.key("ctrl+Home")
        viewer.until(lambda state: "2 hits on 2 pages, none on this one" in state["plugins"], "no number")

    def test_zooming_it_delays_no_other_page(self):
        viewer = self.open()
        for _ in range(6):
            zoom = viewer.now()["zoom"]
            viewer.key("plus")
            viewer.until(lambda state: state["zoom"] > zoom, "a larger page")
        viewer.key("ctrl+Next")
        viewer.shown(2)


class ManyPages(ViewerTest):
    def test_the_scroll_bar_is_bounded(self):
        count, there = 2_200_000, 3
        page = b"<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]>>"
        kids = b" ".join(b"%d 0 R" % (3 + number) for number in range(there))
        pages = b"<</Type/Pages/Count %d/Kids[%s]>>" % (count, kids)
        viewer = self.view(written(os.path.join(self.folder(), "many.pdf"),
                                   [b"<</Type/Catalog/Pages 2 0 R>>", pages, *[page] * there], last=count + there))
        self.assertEqual(viewer.shown(1)["pages"], count)
        viewer.key("ctrl+Next")
        viewer.shown(2)  # without a warning of the toolkit
