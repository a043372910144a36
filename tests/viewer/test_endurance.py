# Documents that are spoilt, and pages that take long.
import os
import subprocess

from harness import ViewerTest, document

SEEDS, SHARES = range(40), ("0.00002", "0.0001", "0.0005", "0.002", "0.01")


class DamagedDocuments(ViewerTest):
    def spoilt(self):
        folder = self.folder()
        files = []
        for name in ("two-columns.pdf", "cjk.pdf", "rotated-90.pdf", "cropped.pdf"):
            with open(document(name), "rb") as stream:
                whole = stream.read()
            for share in SHARES:
                for seed in SEEDS[::4]:
                    file = os.path.join(folder, f"{share}-{seed}-{name}")
                    with open(file, "wb") as stream:
                        subprocess.run(["zzuf", "-s", str(seed), "-r", share], input=whole, stdout=stream, check=True)
                    files.append(file)
        return files

    def test_each_of_two_hundred_is_shown_or_named_in_a_line(self):
        files = self.spoilt()
        self.assertEqual(len(files), 200)
        viewer = self.view(*files, complaints=None)
        viewer.until(lambda state: not state["opening"], "an end of opening")
        opened = viewer.now()["documents"]
        refused = [line for line in viewer.lines() if any(os.path.basename(file) in line for file in files)]
        self.assertGreater(len(opened), 20)
        self.assertGreater(len(refused), 20)
        for file in files:
            name = os.path.basename(file)
            self.assertTrue(name in opened or any(name in line for line in refused), name)

        # Every one of them in front, to its last page.
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


# A document whose second page takes seconds: thirty thousand long strokes.
def slow(file):
    strokes = b"".join(b"%d %d m %d %d l S\n" % (i * 7 % 612, i * 13 % 792, i * 31 % 612, i * 17 % 792)
                       for i in range(30_000))
    streams = [b"", strokes, b""]
    objects = [b"<</Type/Catalog/Pages 2 0 R>>",
               b"<</Type/Pages/Count 3/Kids[3 0 R 4 0 R 5 0 R]>>"]
    objects += [b"<</Type/Page/Parent 2 0 R/MediaBox[0 0 612 792]/Contents %d 0 R>>" % (6 + i) for i in range(3)]
    objects += [b"<</Length %d>>stream\n" % len(stream) + stream + b"\nendstream" for stream in streams]
    whole, places = b"%PDF-1.4\n", []
    for number, content in enumerate(objects, 1):
        places.append(len(whole))
        whole += b"%d 0 obj\n" % number + content + b"\nendobj\n"
    table = len(whole)
    whole += b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    whole += b"".join(b"%010d 00000 n \n" % place for place in places)
    whole += b"trailer<</Size %d/Root 1 0 R>>\nstartxref\n%d\n%%%%EOF\n" % (len(objects) + 1, table)
    with open(file, "wb") as stream:
        stream.write(whole)
    return file


class SlowPages(ViewerTest):
    def open(self):
        return self.view(slow(os.path.join(self.folder(), "slow.pdf")))

    def test_a_page_that_takes_long_shows_its_outline_and_says_so(self):
        viewer = self.open()
        viewer.shown(1)
        viewer.key("ctrl+Next")
        waiting = viewer.until(lambda state: state["drawn"]["page"] == 2 and not state["drawn"]["there"], "an outline")
        self.assertGreater(waiting["drawn"]["height"], 500)
        viewer.until(lambda state: state["note"] == "rendering", "a note")
        viewer.shown(2)
        viewer.until(lambda state: state["note"] == "", "no note")

    def test_the_window_answers_meanwhile(self):
        viewer = self.open()
        viewer.shown(1)
        viewer.key("ctrl+Next")
        viewer.until(lambda state: state["drawn"]["page"] == 2 and not state["drawn"]["there"], "an outline")
        viewer.key("ctrl+Prior")
        viewer.until(lambda state: state["drawn"]["page"] == 1 and state["drawn"]["there"], "the first page")
        self.assertFalse(any(state["drawn"]["page"] == 2 and state["drawn"]["there"] for state in viewer.past))
