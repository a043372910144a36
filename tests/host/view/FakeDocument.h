// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A document of blank pages, whose selections a test puts together box by box.
#pragma once

#include <deque>
#include <utility>
#include <vector>

#include "host/document/document.h"

namespace test {

class FakeDocument : public host::Document {
public:
  /// So many pages of that size, in points.
  explicit FakeDocument(int32_t pages, host::PageSize size = {100, 200}) : pages_(pages), size_(size) {}
  ~FakeDocument() override {
    for (const host::Selection &selection : selections_)
      host::selections().remove(&selection);
  }

  int32_t pageCount() const override { return pages_; }
  host::PageSize pageSize(int32_t page) override {
    check(page);
    return size_;
  }
  const host::PageText &pageText(int32_t) override { return text_; }
  const std::vector<uint32_t> &contentOrder(int32_t) override { return order_; }
  void forgetText(int32_t) override {}
  host::Image render(int32_t page, double dpi) override {
    check(page);
    ++renders;
    host::Image image;
    image.width = static_cast<int>(size_.width * dpi / 72);
    image.height = static_cast<int>(size_.height * dpi / 72);
    image.pixels.assign(static_cast<size_t>(image.width) * static_cast<size_t>(image.height), paper);
    return image;
  }
  const host::Selection *selectCharacters(int32_t, std::span<const tavrel::TextRange>) override { return nullptr; }
  const host::Selection *selectWords(int32_t, std::span<const tavrel::TextRange>, int16_t) override { return nullptr; }
  size_t takeRangesWithoutText(int32_t) override { return std::exchange(withoutText, 0); }
  size_t selectionCount() const override { return selections_.size(); }

  /// A selection of boxes, one for each range.
  tavrel::TextSelection select(int32_t page, const std::vector<host::Box> &boxes) {
    return host::selections().add(&selections_.emplace_back(host::Selection{page, boxes.size(), boxes, boxes.at(0)}));
  }

  /// A selection of one range that lies outside of the page.
  tavrel::TextSelection selectOffPage(int32_t page) {
    const host::Box box{0, -10, 10, -20};
    return host::selections().add(&selections_.emplace_back(host::Selection{page, 0, {box}, box, 1}));
  }

  static constexpr uint32_t paper = 0xFFFFFFFF;
  int renders = 0;        ///< how many pages were rendered
  size_t withoutText = 0; ///< how many ranges were asked for that cover nothing

private:
  void check(int32_t page) const {
    if (page < 0 || page >= pages_) throw host::HostError(tavrel::errBadPage, "no such page");
  }
  int32_t pages_;
  host::PageSize size_;
  host::PageText text_;
  std::vector<uint32_t> order_;
  std::deque<host::Selection> selections_;
};

} // namespace test
