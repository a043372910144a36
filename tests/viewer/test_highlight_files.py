# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# A highlight file that is opened like a document, as by a double click.
import os
import re
import shutil
import subprocess
import unittest

from harness import ViewerTest, document


class HighlightFiles(ViewerTest):
    def setUp(self):
        super().setUp()
        self.file = self.copy("three-hundred.pdf")
        self.hitsOfIt = self.hits(self.file, "needle", [0, 3])

    # A copy of the highlight file with another name, in the document's folder or in another one.
    def named(self, name, beside):
        folder = os.path.dirname(self.file) if beside else self.folder()
        return shutil.copy(self.hitsOfIt, os.path.join(folder, name))

    def test_the_document_of_its_name_is_opened_with_it(self):
        for name in ("three-hundred.xml", "three-hundred.hits.xml", "three-hundred.pdf.xml"):
            viewer = self.view(self.named(name, beside=True))
            viewer.hit("hit 1 of 2")
            viewer.key("ctrl+q")
            self.assertEqual(viewer.ends(), 0)

    def test_without_its_document_a_dialog_says_what_it_is(self):
        viewer = self.view(self.named("lonely.xml", beside=False), errors=1)
        text = " ".join("\n".join(viewer.dialog("information")["texts"]).split())
        self.assertIn("lonely.xml holds the hits of a search in a document", text)
        self.assertIn("--hits", text)
        self.assertIn("lonely.xml: this is a highlight file, and its document is not beside it", viewer.stderrText())
        viewer.answer("information", "OK")
        viewer.noDialog()
        self.assertIsNone(viewer.process.poll(), "the window stays, and a document can be opened in it")

    def test_other_documents_are_opened_beside_the_dialog(self):
        viewer = self.view(self.named("lonely.xml", beside=False), document("cjk.pdf"), errors=1)
        viewer.shown(1)
        viewer.dialog("information")

    def test_hits_of_a_pipe_are_marked_and_stay_when_the_document_is_loaded_again(self):
        with subprocess.Popen(["cat", self.hitsOfIt], stdout=subprocess.PIPE) as program:
            viewer = self.view(self.file, "--hits", "-", stdin=program.stdout)
            viewer.hit("hit 1 of 2")
            shown = viewer.shown(1)["drawn"]
            # The next page, too: with an image that is drawn later the change would be reported.
            viewer.until(lambda state: state["cacheBytes"] >= 2 * 4 * shown["width"] * shown["height"], "two images")
            # Of another length, so that it is recognised: a document may be open within an iteration of the event loop.
            os.replace(self.copy("two-columns.pdf"), self.file)
            viewer.key("ctrl+r")
            viewer.until(lambda state: state["pages"] == 4 and "hit 1 of 2" in state["plugins"]
                         and state["drawn"]["marks"] == 1, "the hits in the document loaded again")

    def test_standard_input_that_is_no_highlight_file_is_reported_beside_the_document(self):
        with open(self.file, "rb") as stream:
            viewer = self.view(self.file, "--hits", "/dev/stdin", stdin=stream, errors=1)
            viewer.shown(1)
            line = "standard input: this is a PDF, not a highlight file"
            self.assertIn(line, " ".join(viewer.dialog("information")["texts"]))
            self.assertEqual(viewer.stderrLines(), ["tavrel: " + line])

    def test_a_missing_file_is_reported(self):
        viewer = self.view(self.file, "--hits", "missing.xml", errors=1)
        viewer.shown(1)
        viewer.until(lambda state: "missing.xml: No such file or directory" in state["plugins"], "the reason")
        missing = os.path.join(self.display.folder, "missing.xml")
        self.assertEqual(viewer.stderrLines(), [f"tavrel: {missing}: No such file or directory"])

    def test_without_a_plug_in_that_handles_it_it_is_reported(self):
        environment = self.display.environment
        self.addCleanup(environment.__setitem__, "TAVREL_PLUGIN_PATH", environment["TAVREL_PLUGIN_PATH"])
        environment["TAVREL_PLUGIN_PATH"] = self.folder()
        viewer = self.view(self.file, "--hits", self.hitsOfIt, errors=1)
        viewer.shown(1)
        reason = f"{self.file}: no plug-in is loaded that handles #xml={self.hitsOfIt}"
        viewer.said(reason)
        self.assertEqual(viewer.stderrLines(), ["tavrel: " + reason])

    def test_a_page_that_the_address_names_is_shown(self):
        viewer = self.view(self.file + "#page=4", "--hits", self.hitsOfIt)
        viewer.hit("hit 2 of 2")
        viewer.shown(4)

    def test_a_hit_beyond_the_text_of_its_page_is_reported(self):
        with open(self.hitsOfIt) as stream:
            text = stream.read()
        with open(self.hitsOfIt, "w") as stream:
            stream.write(re.sub(r'(<loc pg="3" pos=)"\d+"', r'\1"60000"', text))
        viewer = self.viewHits(self.file, self.hitsOfIt)
        viewer.key("F3")
        viewer.shown(4)
        viewer.says("Page 4: 1 hit is outside of the page and not marked")


if __name__ == "__main__":
    unittest.main()
