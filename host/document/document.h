// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A PDF document: its pages, their words and characters in reading order, the selections made on them, and the
// images of its pages.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "host/document/documenterror.h"
#include "host/document/image.h"
#include "host/document/page.h"
#include "host/kernel/handles.h"
#include "tavrel/types.h"

namespace host {

/// Versions of word extraction; there are no others.
inline constexpr int16_t contentOrderVersion = 1, readingOrderVersion = 2;

/// Words or characters of one page. Equal ranges of a page are the same selection. A document keeps those used last
/// (select.h), so a pointer to one is valid until the next selection is made.
struct Selection {
  int32_t page = 0;
  size_t ranges = 0;      ///< how many of the ranges that it was made from cover something on the page
  std::vector<Box> boxes; ///< what is marked: a box a word (or part of a word)
  Box bounds;             ///< of all boxes
  size_t offPage = 0;     ///< how many cover nothing on the page: outside of it, or beyond its text
  /// When it was made, asked for or found by its handle last: greater is later, over all selections.
  mutable uint64_t lastUse = 0;
};

/// The live selections of all documents, by the handles that plug-ins hold.
class Selections {
public:
  tavrel::TextSelection add(const Selection *selection);
  void remove(const Selection *selection) noexcept { handles_.remove(selection); }
  /// Counts as a use. Throws errBadHandle for one that is not live.
  const Selection &find(tavrel::TextSelection handle);
  tavrel::TextSelection handle(const Selection *selection) const noexcept { return handles_.handle(selection); }
  void noteUse(const Selection &selection) noexcept { selection.lastUse = ++uses_; }

private:
  Handles<tavrel::TextSelection, const Selection> handles_{"text selection"};
  uint64_t uses_ = 0;
};

class Service;
struct Opened;

/// Where a document comes from that is answered for elsewhere.
struct DocumentSource {
  std::shared_ptr<Service> service;
  std::optional<std::chrono::milliseconds> limit =
      {}; ///< how long a caller waits for an answer; none: until it is there
};

class Document {
public:
  /// The document of a service that has opened the file. What is not there within the limit throws DocumentError, or is
  /// a letter page where it is a page's size. Until the answer comes, further callers wait no more; then it is kept for
  /// them.
  static std::unique_ptr<Document> of(const DocumentSource &source, const Opened &opened);
  virtual ~Document();
  Document(const Document &) = delete;
  Document &operator=(const Document &) = delete;

  virtual int32_t pageCount() const = 0;
  // All of these throw HostError errBadPage for a page that is not there; those that read a damaged page throw
  // DocumentError.
  virtual PageSize pageSize(int32_t page) = 0;
  virtual const PageText &pageText(int32_t page) = 0;
  /// Indices into the page's words, in the order of the content stream (word-extraction version 1); every word once.
  virtual const std::vector<uint32_t> &contentOrder(int32_t page) = 0;
  /// Requests the words of a page that will be needed soon, if anybody has asked for words of this document so far.
  /// `shown` is more urgent than others. A page that is not there is ignored.
  virtual void expectText(int32_t /*page*/, bool /*shown*/) {}
  /// Calls `body`, in which nobody waits: what is not there yet, words or a size, is asked for and throws
  /// DocumentError. Returns the pages for which that happened.
  virtual std::vector<int32_t> withoutWaiting(const std::function<void()> &body) {
    body();
    return {};
  }
  /// Whether words or the size of a page have been asked for and are not there yet.
  virtual bool isAwaited(int32_t /*page*/) const { return false; }
  /// Called when an answer has come that was not there within the limit: the words of a page, or its size. On the
  /// thread and at the time of Service::collect().
  std::function<void(int32_t page)> lateListener;
  /// Frees the memory of a page's text, which is computed again when it is next needed. References that pageText() and
  /// contentOrder() returned for the page become invalid; selections stay.
  virtual void forgetText(int32_t page) = 0;
  /// The page on white, without marks, width and height rounded up to whole pixels. Throws errBadArgument for
  /// an image of no pixels or of more than 20,000 a side.
  virtual Image render(int32_t page, double dpi) = 0;

  /// The selection of ranges of characters, or null where they cover nothing. Ranges beyond the end are clamped.
  virtual const Selection *selectCharacters(int32_t page, std::span<const tavrel::TextRange> ranges) = 0;
  /// The selection of ranges of words; throws errBadArgument for a version that does not exist.
  virtual const Selection *selectWords(int32_t page, std::span<const tavrel::TextRange> ranges, int16_t version) = 0;
  /// How many ranges a caller has asked for on a page of which none covered anything: then there is no selection. The
  /// most since the last call.
  virtual size_t takeRangesWithoutText(int32_t /*page*/) { return 0; }
  /// How many different selections the document holds.
  virtual size_t selectionCount() const = 0;

protected:
  Document();
};

/// The number of a page that a document of so many pages has. Throws HostError errBadPage for another one, with a
/// message for people, who count from 1.
int32_t checkedPage(int32_t page, int32_t pageCount);

// The live documents and selections, by the handles that plug-ins hold. A Document registers and unregisters itself.
Handles<tavrel::ModelDoc, Document> &modelDocs();
Selections &selections();

/// The "DocModel" table, complete (docmodel.cpp).
tavrel::HFT docModelTable();

/// What plug-ins have open at present, for tests.
struct OpenObjects {
  size_t pages = 0, wordFinders = 0, acquiredPages = 0;
};
OpenObjects openObjects();

} // namespace host
