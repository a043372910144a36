// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A document as the viewer and its plug-ins have it: a PDF file, the words of its pages as far as they were asked for,
// and the selections made on them.
#include "host/document/document.h"

#include <optional>
#include <unordered_map>

#include "host/document/select.h"

namespace host {
namespace {

class PdfDocument final : public Document {
public:
  explicit PdfDocument(std::unique_ptr<PdfFile> file) : file_(std::move(file)) {}

  int32_t pageCount() const override { return file_->pageCount(); }
  PageSize pageSize(int32_t page) override { return file_->pageSize(page); }

  const PageText &pageText(int32_t page) override {
    Words &words = words_[page];
    if (!words.text) words.text = file_->text(page);
    return *words.text;
  }

  const std::vector<uint32_t> &contentOrder(int32_t page) override {
    const PageText &text = pageText(page);
    Words &words = words_[page];
    if (!words.order) words.order = file_->contentOrder(page, text);
    return *words.order;
  }

  void forgetText(int32_t page) override {
    file_->pageSize(page); // throws for a page that is not there
    words_.erase(page);
  }

  Image render(int32_t page, double dpi) override { return file_->render(page, dpi); }

  const Selection *selectCharacters(int32_t page, std::span<const tavrel::TextRange> ranges) override {
    return store_.characters(page, ranges, *this);
  }
  const Selection *selectWords(int32_t page, std::span<const tavrel::TextRange> ranges, int16_t version) override {
    return store_.words(page, ranges, version, *this);
  }
  size_t selectionCount() const override { return store_.size(); }

private:
  struct Words {
    std::optional<PageText> text;
    std::optional<std::vector<uint32_t>> order;
  };

  std::unique_ptr<PdfFile> file_;
  std::unordered_map<int32_t, Words> words_;
  SelectionStore store_;
};

} // namespace

std::unique_ptr<Document> Document::open(const std::filesystem::path &file, const std::string &password) {
  return of(PdfFile::open(file, password));
}

std::unique_ptr<Document> Document::of(std::unique_ptr<PdfFile> file) {
  return std::make_unique<PdfDocument>(std::move(file));
}

std::u32string PageText::text() const {
  std::u32string result;
  for (const WordText &word : words) {
    if (!result.empty()) result += U' ';
    result += word.text;
  }
  return result;
}

} // namespace host
