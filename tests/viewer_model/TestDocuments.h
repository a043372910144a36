// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// PDFs for the viewer: numbered pages, slow pages, damaged pages, encrypted documents.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "support/pdf.h"

namespace test {

/// A page of 400 by 600 points with a line of text, which begins at (x, y) from its lower left corner.
inline PdfPage pageWith(const std::string &text, double x = 50, double y = 550) {
  return {.texts = {{.x = x, .y = y, .text = text}}};
}

/// Pages that say "page 1", "page 2" and so on.
inline std::vector<PdfPage> numberedPages(int count) {
  std::vector<PdfPage> pages;
  for (int page = 1; page <= count; ++page)
    pages.push_back(pageWith("page " + std::to_string(page)));
  return pages;
}

/// A page whose rendering takes a good part of a second.
inline PdfPage slowPage() {
  PdfPage page = pageWith("slow");
  for (int layer = 0; layer < 150; ++layer)
    page.drawing += "0." + std::to_string(layer % 10) + " g 0 0 m 400 0 l 400 600 l 0 600 l h f\n";
  return page;
}

/// A page whose rendering takes minutes.
inline PdfPage endlessPage() {
  PdfPage page = slowPage();
  for (int times = 0; times < 9; ++times)
    page.drawing += page.drawing;
  return page;
}

/// A page that takes a second even if it is only searched for words.
inline PdfPage slowlyReadPage() {
  PdfPage page = endlessPage();
  for (int times = 0; times < 3; ++times)
    page.drawing += page.drawing;
  return page;
}

inline std::string replaced(std::string text, const std::string &part, const std::string &by) {
  const size_t at = text.find(part);
  EXPECT_NE(at, std::string::npos) << part;
  return at == std::string::npos ? text : text.replace(at, part.size(), by);
}

/// A PDF whose page count includes pages that cannot be read, at its end.
inline std::string withDamagedPages(const std::vector<PdfPage> &pages, int damaged) {
  const std::string count = "/Count ";
  return replaced(pdfOf(pages), count + std::to_string(pages.size()),
                  count + std::to_string(pages.size() + static_cast<size_t>(damaged)));
}

/// A PDF of one page that cannot be read.
inline std::string allDamaged() { return replaced(pdfOf({PdfPage{}}), "5 0 obj\n<< /Type /Page ", "5 0 obj\n42 "); }

/// A PDF of one page that takes years even if it is only searched for words: a drawing that is drawn 30 times by
/// another one, and so on.
inline std::string endlesslyRead() {
  constexpr int drawings = 10;
  std::string thirtyTimes;
  for (int times = 0; times < 30; ++times)
    thirtyTimes += "/Next Do ";
  PdfParts parts;
  for (int i = 1; i <= drawings; ++i) {
    const bool isLast = i == drawings;
    parts.objects.push_back("<< /Type /XObject /Subtype /Form /BBox [0 0 400 600] /Resources << /XObject << " +
                            (isLast ? "" : "/Next {object " + std::to_string(i) + "}") + " >> >> /Length " +
                            std::to_string(isLast ? 0 : thirtyTimes.size()) + " >>\nstream\n" +
                            (isLast ? "" : thirtyTimes) + "\nendstream");
  }
  PdfPage page = pageWith("words");
  page.drawing = thirtyTimes;
  return replaced(pdfOf({page}, {}, {}, parts), "/Resources << /Font",
                  "/Resources << /XObject << /Next 7 0 R >> /Font");
}

/// Encrypts a PDF with the password "user".
inline std::filesystem::path locked(const std::filesystem::path &plain) {
  std::filesystem::path result = plain;
  result += ".locked.pdf";
  const std::string command =
      std::string(QPDF) + " --encrypt user owner 256 -- " + plain.string() + " " + result.string();
  EXPECT_EQ(std::system(command.c_str()), 0); // NOLINT(cert-env33-c): a test's own command
  return result;
}

/// Whether this program has the file open.
inline bool hasOpen(const std::filesystem::path &file) {
  std::error_code ignored;
  for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd"))
    if (std::filesystem::read_symlink(entry, ignored) == file) return true;
  return false;
}

} // namespace test
