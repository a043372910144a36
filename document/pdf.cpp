// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The PDF library's side of a document: opens files, takes words from pages, draws pages. Everything about a page is
// fetched when it is first asked for, so that opening a manual of a thousand pages costs no more than opening one.
#include "document/pdf.h"

#include <iconv.h>
#include <poppler-document.h>
#include <poppler-page-renderer.h>
#include <poppler-page.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <optional>
#include <span>
#include <tuple>
#include <unordered_map>

#include "document/boxes.h"
#include "document/words.h"
#include "host/document/messages.h"
#include "host/document/openfile.h"

namespace document {
namespace {

using host::Box;
using host::DocumentError;
using host::HostError;
using host::Image;
using host::nameInMessage;
using host::PageSize;
using host::PageText;
using host::PixelBox;
using host::PixelSize;
using host::WordText;

[[noreturn]] void fail(const std::filesystem::path &file, const std::string &reason) {
  throw DocumentError(DocumentError::unreadable, nameInMessage(file) + ": " + reason);
}

// Counted from 1, as in messages.
std::string numberOf(int32_t page) { return std::to_string(int64_t{page} + 1); }

std::string numberOf(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

void silenceLibrary() {
  const auto drop = [](const std::string & /*message*/, void * /*closure*/) {};
  [[maybe_unused]] static const bool silent = (poppler::set_debug_error_function(drop, nullptr), true);
}

bool hasArea(const poppler::rectf &rect) { return rect.width() > 0 && rect.height() > 0; }

// The error of a file that the library cannot open. The library opens files without "%PDF-", so this is not checked
// before.
[[noreturn]] void failUnreadable(const std::filesystem::path &file, std::span<const char> bytes, const char *damage) {
  constexpr size_t head = 1024; // PDF readers look for the mark in these bytes
  const std::string_view beginning(bytes.data(), std::min(bytes.size(), head));
  fail(file, beginning.find("%PDF-") != std::string_view::npos ? damage : "this is not a PDF");
}

struct FoundWords {
  std::vector<WordText> words;
  std::vector<WordFont> fonts; // of each word; unknown where the list has none
};

WordFont fontOf(const poppler::text_box &box) {
  return {box.get_font_size(), box.get_wmode() == poppler::text_box::vertical_wmode};
}

// `height` is that of the page in points.
FoundWords wordsOf(const std::vector<poppler::text_box> &list, double height) {
  const auto upright = [height](const poppler::rectf &rect) {
    const auto [left, right] = std::minmax({rect.left(), rect.right()});
    const auto [below, above] = std::minmax({rect.top(), rect.bottom()}); // downwards
    const Box box{left, height - below, right, height - above};
    return isUsable(box) ? box : Box{};
  };
  FoundWords result;
  uint32_t offset = 0;
  for (const poppler::text_box &box : list) {
    WordText word;
    word.text = codePoints(box.text());
    if (word.text.empty()) // characters without a meaning in Unicode: nothing to count or to find
      continue;
    word.offset = offset;
    word.bounds = upright(box.bbox());
    word.quarterTurns = box.rotation();
    word.characters.resize(word.text.size());
    // A box that the library does not have is all zeros, which is the upper left of the page.
    size_t index = 0;
    for (Box &character : word.characters)
      if (const poppler::rectf rect = box.char_bbox(index++); hasArea(rect)) character = upright(rect);
    offset += static_cast<uint32_t>(word.text.size()) + 1;
    result.words.push_back(std::move(word));
    result.fonts.push_back(box.has_font_info() ? fontOf(box) : WordFont{});
  }
  return result;
}

// Throws as PdfFile::open does.
std::unique_ptr<poppler::document> openedDocument(const std::filesystem::path &file, const std::string &password,
                                                  std::span<const char> bytes) {
  std::unique_ptr<poppler::document> pdf(
      poppler::document::load_from_raw_data(bytes.data(), static_cast<int>(bytes.size()), password, password));
  if (!pdf) failUnreadable(file, bytes, "the file is damaged");
  if (pdf->is_locked())
    throw DocumentError(DocumentError::wrongPassword,
                        nameInMessage(file) + (password.empty() ? ": the file is encrypted: a password is needed"
                                                                : ": the password is wrong"));
  if (pdf->pages() <= 0) failUnreadable(file, bytes, "the file is damaged: it has no pages");
  return pdf;
}

class PopplerFile final : public PdfFile {
public:
  /// Throws as PdfFile::open does.
  PopplerFile(const std::filesystem::path &file, const std::string &password, std::unique_ptr<const MappedFile> bytes)
      : file_(file), bytes_(std::move(bytes)), pdf_(openedDocument(file, password, bytes_->bytes())),
        pages_(pdf_->pages()) {}

  const std::filesystem::path &file() const override { return file_; }
  int32_t pageCount() const override { return pages_; }
  PageSize pageSize(int32_t page) override;
  PageText text(int32_t page) override;
  std::vector<std::u32string> plainWords(int32_t page) override;

  std::vector<uint32_t> contentOrder(int32_t page, const PageText &text) override {
    std::vector<std::u32string_view> boxes(text.words.size());
    std::transform(text.words.begin(), text.words.end(), boxes.begin(),
                   [](const WordText &word) { return std::u32string_view(word.text); });
    // A rectangle beyond any page: characters that are partly off the page are included.
    const poppler::rectf everything(-1e6, -1e6, 2e6, 2e6);
    return orderByContent(boxes, codePoints(shown(page).pdf->text(everything, poppler::page::raw_order_layout)));
  }

  Image render(int32_t page, double dpi) override;
  void render(const host::ImageRequest &request, std::span<uint32_t> pixels) override;

private:
  PixelSize sizeOfImage(int32_t page, double dpi);
  void drawStrip(int32_t page, double dpi, const PixelBox &strip, std::span<uint32_t> pixels);
  struct ShownPage {
    std::unique_ptr<poppler::page> pdf;
    PageSize size;
  };
  ShownPage &shown(int32_t page);

  const std::filesystem::path file_;
  const std::unique_ptr<const MappedFile> bytes_;
  const std::unique_ptr<poppler::document> pdf_; // declared before the pages, which it outlives
  const int32_t pages_;
  std::unordered_map<int32_t, ShownPage> shown_;
  // Font information costs half as much again as the words alone, so it is only requested where boxes need it, and at
  // once for the page after such a page, which mostly needs it, too.
  bool withFonts_ = false;
};

PopplerFile::ShownPage &PopplerFile::shown(int32_t page) {
  if (page < 0 || page >= pages_)
    throw HostError(tavrel::errBadPage, nameInMessage(file_) + ": no page " + numberOf(page));
  if (const auto known = shown_.find(page); known != shown_.end()) return known->second;

  ShownPage made;
  made.pdf.reset(pdf_->create_page(page));
  if (!made.pdf) fail(file_, "page " + numberOf(page) + " is damaged");
  const poppler::rectf rect = made.pdf->page_rect(poppler::crop_box);
  made.size = {rect.width(), rect.height()};
  const auto orientation = made.pdf->orientation();
  if (orientation == poppler::page::landscape || orientation == poppler::page::seascape)
    std::swap(made.size.width, made.size.height);
  if (!(made.size.width > 0 && made.size.height > 0))
    fail(file_, "page " + numberOf(page) + " is damaged: its page box is empty");
  if (!(std::max(made.size.width, made.size.height) <= host::longestPage))
    fail(file_, "page " + numberOf(page) + " is damaged: its page box is too large");
  return shown_.emplace(page, std::move(made)).first->second;
}

PageSize PopplerFile::pageSize(int32_t page) {
  constexpr PageSize letter{612, 792};
  try {
    const PageSize size = shown(page).size;
    return size.width >= 1 && size.height >= 1 ? size : letter;
  } catch (const DocumentError &) {
    return letter;
  }
}

PageText PopplerFile::text(int32_t page) {
  const ShownPage &that = shown(page);
  const auto takeWords = [&that](int options) { return wordsOf(that.pdf->text_list(options), that.size.height); };
  FoundWords found = takeWords(withFonts_ ? poppler::page::text_list_include_font : 0);
  const bool needFonts = std::any_of(found.words.begin(), found.words.end(), needsFont);
  if (needFonts && !withFonts_) found = takeWords(poppler::page::text_list_include_font);
  withFonts_ = needFonts;
  if (needFonts) correctBoxes(found.words, found.fonts);
  return {std::move(found.words)};
}

std::vector<std::u32string> PopplerFile::plainWords(int32_t page) {
  std::vector<std::u32string> words;
  for (const poppler::text_box &box : shown(page).pdf->text_list(0))
    if (std::u32string text = codePoints(box.text()); !text.empty()) words.push_back(std::move(text));
  return words;
}

PixelSize PopplerFile::sizeOfImage(int32_t page, double dpi) {
  const PixelSize size = imageSize(shown(page).size, dpi);
  if (!isImageSize(size))
    throw HostError(tavrel::errBadArgument, nameInMessage(file_) + ": page " + numberOf(page) + " at " + numberOf(dpi) +
                                                " dots per inch makes no image of a usable size");
  return size;
}

Image PopplerFile::render(int32_t page, double dpi) {
  const PixelSize size = sizeOfImage(page, dpi);
  Image image{size.width, size.height, {}};
  image.pixels.resize(static_cast<size_t>(size.width) * static_cast<size_t>(size.height));
  render({page, dpi, size}, image.pixels);
  return image;
}

void PopplerFile::render(const host::ImageRequest &request, std::span<uint32_t> pixels) {
  const auto &[page, dpi, size, part] = request;
  if (const PixelSize own = sizeOfImage(page, dpi);
      std::tie(own.width, own.height) != std::tie(size.width, size.height))
    fail(file_, "page " + numberOf(page) + ": its image has a wrong size");
  const PixelBox box = request.drawn();
  if (box.left < 0 || box.top < 0 || box.right > size.width || box.bottom > size.height || box.bottom <= box.top)
    fail(file_, "page " + numberOf(page) + " has no such part");
  // The library takes twice the memory of what it draws at once, so a large image is drawn in strips.
  constexpr int mostAtOnce = 16 << 20; // pixels
  const int width = box.right - box.left, rows = std::max(1, mostAtOnce / width);
  for (int top = box.top; top < box.bottom; top += rows) {
    const PixelBox strip{box.left, top, box.right, std::min(top + rows, box.bottom)};
    const size_t first = static_cast<size_t>(top - box.top) * static_cast<size_t>(width);
    drawStrip(page, dpi, strip, pixels.subspan(first));
  }
}

void PopplerFile::drawStrip(int32_t page, double dpi, const PixelBox &strip, std::span<uint32_t> pixels) {
  const auto [columns, rows] = host::sizeOf(strip);
  poppler::page_renderer renderer;
  renderer.set_paper_color(0xFFFFFFFF);
  renderer.set_render_hints(poppler::page_renderer::antialiasing | poppler::page_renderer::text_antialiasing);
  const poppler::image drawn =
      renderer.render_page(shown(page).pdf.get(), dpi, dpi, strip.left, strip.top, columns, rows);
  // An image that is not valid has no width.
  if (std::tuple(drawn.width(), drawn.height(), drawn.format()) !=
      std::tuple(columns, rows, poppler::image::format_argb32))
    fail(file_, "page " + numberOf(page) + " cannot be drawn");

  const auto width = static_cast<size_t>(columns), bytesPerRow = static_cast<size_t>(drawn.bytes_per_row());
  for (size_t y = 0; y < static_cast<size_t>(rows); ++y) {
    const std::span<uint32_t> row = pixels.subspan(y * width, width);
    std::memcpy(row.data(), drawn.const_data() + y * bytesPerRow, row.size_bytes());
    for (uint32_t &pixel : row)
      pixel |= 0xFF000000;
  }
}

} // namespace

void PdfFile::prepareLibrary() {
  tzset(); // for dates
  // Conversions of characters are modules, which stay loaded while they are in use.
  for (const auto &[to, from] : {std::pair("UTF-8", "UTF-16"), std::pair("UTF-16", "UTF-8")})
    if (iconv_open(to, from) == iconv_t(-1)) return; // texts will be empty
}

std::unique_ptr<PdfFile> PdfFile::open(std::unique_ptr<const MappedFile> bytes, const std::filesystem::path &name,
                                       const std::string &password) {
  silenceLibrary();
  return std::make_unique<PopplerFile>(name, password, std::move(bytes));
}

std::unique_ptr<PdfFile> PdfFile::open(const std::filesystem::path &file, const std::string &password) {
  return open(std::make_unique<MappedFile>(host::OpenFile(file).descriptor(), file), file, password);
}

} // namespace document
