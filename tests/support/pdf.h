// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Small PDFs for tests, written when the test runs: pages with text at given positions. And a directory for them.
//
// The text is set in one font. In a typewriter font every character is 0.6 times as wide as the font is high, so a test
// can compute where each of them is.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace test {

/// A run of text (UTF-8) on a page.
struct PdfText {
  double x = 0, y = 0; ///< where its base line starts: points from the lower left of the unrotated page
  std::string text;
  double size = 10;     ///< of the font, in points
  bool upwards = false; ///< the line runs up the page
};

struct PdfPage {
  std::vector<PdfText> texts = {};           ///< in the order of the content stream
  double width = 400, height = 600;          ///< before rotation
  int rotate = 0;                            ///< degrees, clockwise
  std::string cropBox = {};                  ///< "left bottom right top", or empty
  std::string drawing = {};                  ///< further operators, drawn before the text
  std::vector<std::string> annotations = {}; ///< the entries of each; one with /FT is a field of the form, too
};

/// The text that a character is extracted as, if not as itself: U+FB01 as "fi", for instance.
using ReadAs = std::map<char32_t, std::u32string>;

/// The font of a document.
struct PdfFont {
  enum Kind {
    typewriter, ///< not embedded
    drawn,      ///< every character is a black rectangle from the base line to 0.7 of the font's height
    vertical    ///< not embedded; writes from the top down, each character as high as the font
  };
  Kind kind = typewriter;
  int width = 600;             ///< of each character, in thousandths of the font's height
  std::string box = "0 0 0 0"; ///< of a drawn font, as the file states it
};

/// A text in UTF-16 as an object, such as a title.
std::string pdfString(const std::u32string &text);
/// The same of bytes, which need not be a text.
std::string pdfBytes(const std::string &bytes);

/// What a document has besides its pages. In all of it, and in annotations, "{page 3}" is a reference to that page,
/// counting from 0, and "{object 2}" one to an element of `objects`.
struct PdfParts {
  std::string catalog = {};     ///< further entries
  std::string information = {}; ///< entries of the dictionary with the title, or empty
  std::vector<std::string> objects = {};
};

/// The bytes of a PDF. At most 127 different characters; those of ASCII do not count in a typewriter font.
std::string pdfOf(const std::vector<PdfPage> &pages, const ReadAs &readAs = {}, const PdfFont &font = {},
                  const PdfParts &parts = {});

/// A temporary directory, which is removed with everything in it.
class ScratchFolder {
public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder &) = delete;
  ScratchFolder &operator=(const ScratchFolder &) = delete;

  const std::filesystem::path &path() const { return path_; }
  /// A file in the directory with these bytes.
  std::filesystem::path write(const std::string &name, const std::string &bytes) const;
  /// A PDF in the directory.
  std::filesystem::path pdf(const std::vector<PdfPage> &pages, const ReadAs &readAs = {}, const PdfFont &font = {},
                            const PdfParts &parts = {}) const {
    return write("test.pdf", pdfOf(pages, readAs, font, parts));
  }

private:
  std::filesystem::path path_;
};

/// The bytes of a file; empty if it is not there.
std::string bytesOf(const std::filesystem::path &file);

} // namespace test
