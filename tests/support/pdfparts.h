// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Parts of PDFs for tests: outlines and attached files.
#pragma once

#include <string>
#include <vector>

#include "support/pdf.h"

namespace test {

struct PdfOutlineEntry {
  int depth = 0;
  std::string title;        ///< as pdfString() gives it
  std::string entries = {}; ///< further ones, such as its destination
};

/// Gives the document an outline.
void addOutline(PdfParts &parts, const std::vector<PdfOutlineEntry> &outline);

struct PdfAttachment {
  std::string name, bytes;
  std::string entries = {};       ///< further ones of its dictionary
  std::string streamEntries = {}; ///< further ones of its stream
};

/// Gives the document attached files, in the order of their names.
void addAttachments(PdfParts &parts, const std::vector<PdfAttachment> &files);

} // namespace test
