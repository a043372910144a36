# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
"""includes.py on small trees: what it must report, and what it must accept."""

import pathlib
import tempfile
import unittest

import includes

DESIGN = """
| module | includes | libraries |
|---|---|---|
| `sdk` | | |
| `host/kernel` | `sdk` | |
| `host/document` | `host/kernel` | `poppler` |

| file | includes |
|---|---|
| `viewer/model/session` | |
| `viewer/model/place` | `session` |
| `viewer/model` | `host/kernel` | |
"""
SOURCES = {
    "sdk/tavrel/types.h": "#include <cstdint>\n",
    "host/kernel/atoms.h": '#include "tavrel/types.h"\n',
    "host/kernel/atoms.cpp": '#include "host/kernel/atoms.h"\n',
    "host/document/pdf.cpp": '#include <poppler-page.h>\n#include "host/kernel/atoms.h"\n',
    "viewer/model/session.h": '#include "host/kernel/atoms.h"\n',
    "viewer/model/place.cpp": "",
}


class Includes(unittest.TestCase):
    def errors(self, changed=None, design=DESIGN):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for file, text in {**SOURCES, "docs/design.md": design, **(changed or {})}.items():
                (root / file).parent.mkdir(parents=True, exist_ok=True)
                (root / file).write_text(text, encoding="utf-8")
            return includes.errors_below(root)

    def setUp(self):
        only = dict(includes.ONLY)
        includes.ONLY.clear()
        includes.ONLY["viewer/model/session"] = {"viewer/model/place"}
        self.addCleanup(lambda: (includes.ONLY.clear(), includes.ONLY.update(only)))
        SOURCES["viewer/model/place.cpp"] = '#include "viewer/model/session.h"\n'

    def test_accepts_what_the_tables_allow(self):
        self.assertEqual(self.errors(), [])

    def test_reports_an_include_against_the_arrows(self):
        errors = self.errors({"host/kernel/up.cpp": '#include "host/document/pdf.h"\n', "host/document/pdf.h": ""})
        self.assertEqual(
            errors, ["host/kernel/up.cpp includes host/document/pdf.h: no arrow from host/kernel to host/document"]
        )

    def test_reports_a_library_of_another_module(self):
        errors = self.errors({"host/kernel/page.cpp": "#include <poppler-page.h>\n"})
        self.assertEqual(errors, ["host/kernel/page.cpp includes <poppler-page.h>: not a library of host/kernel"])

    def test_reports_a_file_that_includes_another_one_of_its_module_without_a_row_for_it(self):
        errors = self.errors({"viewer/model/session.cpp": '#include "viewer/model/place.h"\n', "viewer/model/place.h": ""})
        self.assertEqual(errors, ["viewer/model/session.cpp includes viewer/model/place.h: no arrow from it"])

    def test_reports_who_includes_what_is_for_others(self):
        errors = self.errors(
            {"viewer/model/other.cpp": '#include "viewer/model/session.h"\n'},
            DESIGN.replace("| `viewer/model/place`", "| `viewer/model/other` | `session` |\n| `viewer/model/place`"),
        )
        self.assertEqual(
            errors,
            ["viewer/model/other.cpp includes viewer/model/session.h, which is only for viewer/model/place"],
        )

    def test_reports_sources_without_a_row(self):
        errors = self.errors({"tools/render.cpp": "", "viewer/model/more.cpp": ""})
        self.assertEqual(
            errors, ["viewer/model/more.cpp: no row for the file", "tools/render.cpp: no row for its module"]
        )

    def test_reports_arrows_that_no_file_needs(self):
        errors = self.errors({"host/document/pdf.cpp": ""})
        self.assertEqual(
            errors,
            [
                "docs/design.md: `host/document` does not include `host/kernel`",
                "docs/design.md: `host/document` does not include `poppler`",
            ],
        )


if __name__ == "__main__":
    unittest.main()
