# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# A highlight file that is opened like a document, as by a double click.
import os
import shutil
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
        self.assertIn("lonely.xml: is a highlight file, and its document is not beside it", viewer.stderrText())
        viewer.answer("information", "OK")
        viewer.noDialog()
        self.assertIsNone(viewer.process.poll(), "the window stays, and a document can be opened in it")

    def test_other_documents_are_opened_beside_the_dialog(self):
        viewer = self.view(self.named("lonely.xml", beside=False), document("cjk.pdf"), errors=1)
        viewer.shown(1)
        viewer.dialog("information")


if __name__ == "__main__":
    unittest.main()
