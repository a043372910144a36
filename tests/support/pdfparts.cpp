// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "support/pdfparts.h"

namespace test {
namespace {

std::string object(size_t index) { return "{object " + std::to_string(index) + "}"; }

// The next entry of the same level before one that is higher up; none is the number of entries.
size_t nextOnLevel(const std::vector<PdfOutlineEntry> &outline, size_t entry) {
  for (size_t i = entry + 1; i < outline.size() && outline[i].depth >= outline[entry].depth; ++i)
    if (outline[i].depth == outline[entry].depth) return i;
  return outline.size();
}

} // namespace

// The last entry of each level is not named: readers go from one to the next.
void addOutline(PdfParts &parts, const std::vector<PdfOutlineEntry> &outline) {
  const size_t root = parts.objects.size(), first = root + 1;
  parts.catalog += " /Outlines " + object(root);
  parts.objects.push_back(outline.empty() ? "<< >>" : "<< /First " + object(first) + " /Last " + object(first) + " >>");
  for (size_t i = 0; i < outline.size(); ++i) {
    std::string entry = "<< /Title " + outline[i].title + " /Parent " + object(root) + " " + outline[i].entries;
    if (const size_t next = nextOnLevel(outline, i); next < outline.size()) entry += " /Next " + object(first + next);
    if (i + 1 < outline.size() && outline[i + 1].depth > outline[i].depth)
      entry += " /First " + object(first + i + 1) + " /Last " + object(first + i + 1);
    parts.objects.push_back(entry + " >>");
  }
}

void addAttachments(PdfParts &parts, const std::vector<PdfAttachment> &files) {
  std::string names;
  for (const PdfAttachment &file : files) {
    parts.objects.push_back("<< /Type /EmbeddedFile /Length " + std::to_string(file.bytes.size()) + " " +
                            file.streamEntries + " >>\nstream\n" + file.bytes + "\nendstream");
    parts.objects.push_back("<< /Type /Filespec /F " + pdfBytes(file.name) + " /EF << /F " +
                            object(parts.objects.size() - 1) + " >> " + file.entries + " >>");
    names += pdfBytes(file.name) + " " + object(parts.objects.size() - 1) + " ";
  }
  parts.catalog += " /Names << /EmbeddedFiles << /Names [" + names + "] >> >>";
}

} // namespace test
