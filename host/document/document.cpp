// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A document as the viewer and its plug-ins have it: what a service has answered about its pages so far, and the
// selections made on them.
#include "host/document/document.h"

#include <utility>

#include "host/document/select.h"
#include "host/document/service.h"
#include "host/document/sizes.h"
#include "host/document/wordcache.h"

namespace host {
namespace {

class ServedDocument final : public Document {
public:
  ServedDocument(std::shared_ptr<Service> service, const Opened &opened, Limit limit)
      : service_(std::move(service)), pageCount_(opened.pageCount), limit_(limit),
        sizes_(*service_, pageCount_, limit_, lateListener), words_(*service_, limit_, lateListener) {
    sizes_.keep(0, opened.sizes);
  }

  int32_t pageCount() const override { return pageCount_; }
  PageSize pageSize(int32_t page) override { return sizes_.get(checked(page)); }
  const PageText &pageText(int32_t page) override { return words_.text(checked(page)); }
  const std::vector<uint32_t> &contentOrder(int32_t page) override { return words_.order(checked(page)); }
  void forgetText(int32_t page) override { words_.forget(checked(page)); }
  void expectText(int32_t page, bool shown) override {
    if (page >= 0 && page < pageCount_) words_.expect(page, shown ? Urgency::shown : Urgency::ahead);
  }

  std::vector<int32_t> withoutWaiting(const std::function<void()> &body) override {
    std::vector<int32_t> missing;
    struct Scope {
      Limit &limit;
      std::vector<int32_t> *before;
      ~Scope() { limit.missing = before; }
    } const scope{limit_, std::exchange(limit_.missing, &missing)};
    body();
    return missing;
  }
  bool isAwaited(int32_t page) const override { return words_.isAwaited(page) || sizes_.isAwaited(page); }

  Image render(int32_t page, double dpi) override {
    Answer answer;
    const Ticket ticket = service_->ask(ImageRequest{checked(page), dpi, pixelSize(pageSize(page), dpi)},
                                        Urgency::awaited, [&](Answer &got) { answer = std::move(got); });
    if (!service_->await(ticket, limit_.deadline())) throw notThere(*service_, page);
    if (const auto *failure = std::get_if<Failure>(&answer.value)) raise(*failure);
    return std::move(std::get<PageImage>(answer.value).image);
  }

  const Selection *selectCharacters(int32_t page, std::span<const tavrel::TextRange> ranges) override {
    return store_.characters(page, ranges, *this);
  }
  const Selection *selectWords(int32_t page, std::span<const tavrel::TextRange> ranges, int16_t version) override {
    return store_.words(page, ranges, version, *this);
  }
  size_t takeRangesWithoutText(int32_t page) override { return store_.takeRangesWithoutText(page); }
  size_t selectionCount() const override { return store_.size(); }

private:
  int32_t checked(int32_t page) const { return checkedPage(page, pageCount_); }

  std::shared_ptr<Service> service_; // declared before those that use it
  int32_t pageCount_;
  Limit limit_;
  SizeCache sizes_;
  WordCache words_;
  SelectionStore store_;
};

} // namespace

int32_t checkedPage(int32_t page, int32_t pageCount) {
  if (page >= 0 && page < pageCount) return page;
  throw HostError(tavrel::errBadPage, "no page " + std::to_string(int64_t{page} + 1) + " in the document");
}

std::unique_ptr<Document> Document::of(const DocumentSource &source, const Opened &opened) {
  return std::make_unique<ServedDocument>(source.service, opened, Limit{source.limit});
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
