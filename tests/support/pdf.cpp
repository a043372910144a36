// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Writes PDFs for tests: one font, one content stream per page, a cross-reference table.
#include "support/pdf.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace test {
namespace {

std::string number(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

std::string hex(uint32_t value, int digits) {
  char text[16];
  std::snprintf(text, sizeof text, "%0*X", digits, value);
  return text;
}

std::string utf16Hex(const std::u32string &text) {
  std::string result;
  for (const char32_t c : text)
    if (c < 0x10000)
      result += hex(c, 4);
    else
      result += hex(0xD800 + ((c - 0x10000) >> 10), 4) + hex(0xDC00 + ((c - 0x10000) & 0x3FF), 4);
  return result;
}

std::u32string decoded(const std::string &utf8) {
  std::u32string result;
  for (const char byte : utf8) {
    const auto bits = static_cast<unsigned char>(byte);
    if (bits < 0x80)
      result += bits;
    else if (bits < 0xC0)
      result.back() = (result.back() << 6) | (bits & 0x3F);
    else
      result += bits < 0xE0 ? bits & 0x1F : bits < 0xF0 ? bits & 0x0F : bits & 0x07;
  }
  return result;
}

// The codes of one font: in a typewriter font ASCII is itself, everything else gets the next code from 0x80.
class Font {
public:
  Font(const ReadAs &readAs, PdfFont::Kind kind)
      : readAs_(readAs), hasAscii_(kind == PdfFont::typewriter), digits_(kind == PdfFont::vertical ? 4 : 2) {}

  uint32_t code(char32_t c) {
    if (c < 0x80 && hasAscii_) return c;
    const auto [entry, isNew] = codes_.emplace(c, 0x80 + static_cast<uint32_t>(codes_.size()));
    if (entry->second > 0xFE) throw std::logic_error("too many different characters for one font");
    return entry->second;
  }

  std::string hexCodes(const std::string &utf8) {
    std::string result;
    for (const char32_t c : decoded(utf8))
      result += hex(code(c), digits_);
    return result;
  }

  // The meaning of each code, for text extraction.
  std::string meanings() {
    std::map<uint32_t, std::u32string> all;
    for (const auto &[c, code] : codes_)
      all[code] = std::u32string(1, c);
    for (const auto &[c, text] : readAs_)
      all[code(c)] = text;
    std::string map = "/CIDInit /ProcSet findresource begin 12 dict begin begincmap /CMapType 2 def\n"
                      "1 begincodespacerange <" +
                      hex(0, digits_) + "> <" + hex(digits_ == 2 ? 0xFF : 0xFFFF, digits_) + "> endcodespacerange\n";
    for (const auto &[code, text] : all)
      map += "1 beginbfchar <" + hex(code, digits_) + "> <" + utf16Hex(text) + "> endbfchar\n";
    return map + "endcmap CMapName currentdict /CMap defineresource pop end end\n";
  }

private:
  const ReadAs &readAs_;
  bool hasAscii_;
  int digits_; // hexadecimal ones of a code
  std::map<char32_t, uint32_t> codes_;
};

class Writer {
public:
  // Objects are numbered from 1 in the order in which they are added.
  size_t add(const std::string &body) {
    offsets_.push_back(file_.size());
    file_ += std::to_string(offsets_.size()) + " 0 obj\n" + body + "\nendobj\n";
    return offsets_.size();
  }
  size_t addStream(const std::string &bytes) {
    return add("<< /Length " + std::to_string(bytes.size()) + " >>\nstream\n" + bytes + "\nendstream");
  }
  std::string finish(const std::string &trailer) {
    const size_t start = file_.size();
    file_ += "xref\n0 " + std::to_string(offsets_.size() + 1) + "\n0000000000 65535 f \n";
    for (const size_t offset : offsets_) {
      char line[24];
      std::snprintf(line, sizeof line, "%010zu 00000 n \n", offset);
      file_ += line;
    }
    return file_ + "trailer << /Size " + std::to_string(offsets_.size() + 1) + " /Root 1 0 R" + trailer +
           " >>\nstartxref\n" + std::to_string(start) + "\n%%EOF\n";
  }

private:
  std::string file_ = "%PDF-1.5\n";
  std::vector<size_t> offsets_;
};

std::string reference(size_t object) { return std::to_string(object) + " 0 R"; }

// A text with references instead of the names of objects, which begin with `word` and count from 0.
std::string withReferences(const std::string &text, const std::string &word, const std::vector<size_t> &objects) {
  const std::string start = "{" + word + " ";
  std::string result;
  size_t from = 0;
  for (size_t at = text.find(start); at != std::string::npos; at = text.find(start, from)) {
    const size_t end = text.find('}', at);
    const size_t index = std::stoul(text.substr(at + start.size(), end - at - start.size()));
    result += text.substr(from, at - from) + reference(objects.at(index));
    from = end + 1;
  }
  return result + text.substr(from);
}

// Numbers of the objects that follow those of fonts and pages: annotations, then the further ones, the information
// last.
class Further {
public:
  Further(const std::vector<PdfPage> &pages, const PdfParts &parts, size_t firstPage, size_t first) : next_(first) {
    for (size_t i = 0; i < pages.size(); ++i)
      pages_.push_back(firstPage + 2 * i);
    for (const PdfPage &page : pages)
      for (const std::string &annotation : page.annotations) {
        if (annotation.find("/FT ") != std::string::npos) fields_ += reference(next_) + " ";
        annotations_.push_back(next_++);
      }
    for (size_t i = 0; i < parts.objects.size(); ++i)
      objects_.push_back(next_++);
  }

  std::string resolved(const std::string &text) const {
    return withReferences(withReferences(text, "page", pages_), "object", objects_);
  }
  std::string form() const { return fields_.empty() ? "" : " /AcroForm << /Fields [" + fields_ + "] >>"; }
  // Of the next page.
  std::string annotations(const PdfPage &page) {
    std::string list;
    for (size_t i = 0; i < page.annotations.size(); ++i)
      list += reference(annotations_.at(given_++)) + " ";
    return list.empty() ? "" : " /Annots [" + list + "]";
  }
  size_t afterLast() const { return next_; }

private:
  size_t next_;
  std::vector<size_t> pages_, annotations_, objects_;
  std::string fields_;
  size_t given_ = 0;
};

// Of 256 characters.
std::string repeated(const std::string &item) {
  std::string all;
  for (int code = 0; code < 256; ++code)
    all += item + " ";
  return all;
}

// The dictionary of a font whose characters all are the drawing in one object.
std::string drawnFont(const PdfFont &font, size_t glyph, const std::string &common) {
  std::string names, glyphs;
  for (int code = 0; code < 256; ++code) {
    const std::string name = " /c" + std::to_string(code);
    names += name;
    glyphs += name + " " + reference(glyph);
  }
  return "/Subtype /Type3 /FontBBox [" + font.box + "] /FontMatrix [.001 0 0 .001 0 0] /Resources << >> /Encoding << " +
         "/Type /Encoding /Differences [0" + names + "] >> /CharProcs <<" + glyphs + " >> " + common;
}

std::string fontDictionary(const PdfFont &font, size_t meanings, size_t glyph) {
  const std::string toUnicode = "/ToUnicode " + reference(meanings);
  const std::string common =
      "/FirstChar 0 /LastChar 255 /Widths [" + repeated(std::to_string(font.width)) + "] " + toUnicode;
  switch (font.kind) {
  case PdfFont::drawn:
    return drawnFont(font, glyph, common);
  case PdfFont::vertical:
    return "/Subtype /Type0 /BaseFont /Vertical /Encoding /Identity-V " + toUnicode +
           " /DescendantFonts [<< /Type /Font /Subtype /CIDFontType2 /BaseFont /Vertical /CIDSystemInfo << /Registry "
           "(Adobe) /Ordering (Identity) /Supplement 0 >> >>]";
  default:
    return "/Subtype /Type1 /BaseFont /Courier " + common;
  }
}

} // namespace

std::string pdfString(const std::u32string &text) { return "<FEFF" + utf16Hex(text) + ">"; }

std::string pdfBytes(const std::string &bytes) {
  std::string digits;
  for (const char byte : bytes)
    digits += hex(static_cast<unsigned char>(byte), 2);
  return "<" + digits + ">";
}

std::string pdfOf(const std::vector<PdfPage> &pages, const ReadAs &readAs, const PdfFont &fontKind,
                  const PdfParts &parts) {
  constexpr size_t tree = 2, font = 3, meanings = 4, firstPage = 5; // a page and its content alternate
  const size_t glyph = firstPage + 2 * pages.size();
  Font codes(readAs, fontKind.kind);
  std::vector<std::string> contents;
  std::string kids;
  for (const PdfPage &page : pages) {
    kids += reference(firstPage + 2 * contents.size()) + " ";
    std::string content = page.drawing + "\n";
    for (const PdfText &text : page.texts)
      content += "BT /F " + number(text.size) + " Tf " + (text.upwards ? "0 1 -1 0 " : "1 0 0 1 ") + number(text.x) +
                 " " + number(text.y) + " Tm <" + codes.hexCodes(text.text) + "> Tj ET\n";
    contents.push_back(content);
  }

  Further further(pages, parts, firstPage, glyph + (fontKind.kind == PdfFont::drawn ? 1 : 0));
  Writer writer;
  writer.add("<< /Type /Catalog /Pages " + reference(tree) + further.form() + further.resolved(" " + parts.catalog) +
             " >>");
  writer.add("<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(pages.size()) + " >>");
  writer.add("<< /Type /Font " + fontDictionary(fontKind, meanings, glyph) + " >>");
  writer.addStream(codes.meanings());
  for (size_t i = 0; i < pages.size(); ++i) {
    const PdfPage &page = pages[i];
    writer.add("<< /Type /Page /Parent " + reference(tree) + " /MediaBox [0 0 " + number(page.width) + " " +
               number(page.height) + "]" + (page.cropBox.empty() ? "" : " /CropBox [" + page.cropBox + "]") +
               " /Rotate " + std::to_string(page.rotate) + " /Resources << /Font << /F " + reference(font) +
               " >> >> /Contents " + reference(firstPage + 2 * i + 1) + further.annotations(page) + " >>");
    writer.addStream(contents[i]);
  }
  if (fontKind.kind == PdfFont::drawn) writer.addStream(std::to_string(fontKind.width) + " 0 d0 50 0 500 700 re f");
  for (size_t i = 0; i < pages.size(); ++i)
    for (const std::string &annotation : pages[i].annotations)
      writer.add("<< /Type /Annot /P " + reference(firstPage + 2 * i) + " " + further.resolved(annotation) + " >>");
  for (const std::string &object : parts.objects)
    writer.add(further.resolved(object));
  if (parts.information.empty()) return writer.finish("");
  writer.add("<< " + parts.information + " >>");
  return writer.finish(" /Info " + reference(further.afterLast()));
}

ScratchFolder::ScratchFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "tavrel-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
  path_ = name;
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path ScratchFolder::write(const std::string &name, const std::string &bytes) const {
  std::filesystem::path file = path_ / name;
  std::ofstream(file, std::ios::binary) << bytes;
  return file;
}

std::string bytesOf(const std::filesystem::path &file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream bytes;
  bytes << stream.rdbuf();
  return bytes.str();
}

} // namespace test
