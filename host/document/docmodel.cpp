// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The "DocModel" table, and what plug-ins hold through it: live documents and selections, pages, word finders, words.
// All of it belongs to a document, which destroys what a plug-in has not released when it closes.
#include "tavrel/DocModel.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <numeric>
#include <unordered_map>
#include <utility>

#include "host/document/document.h"
#include "host/document/line.h"
#include "host/document/utf8.h"
#include "host/kernel/table.h"

namespace host {
namespace {

using namespace tavrel;

struct OpenPage {
  Document *document;
  int32_t number;
};

struct FoundWord {
  uint32_t length;
  uint32_t offset;
};

class Finder;

// Everything that plug-ins have open, by document. Never destroyed: a document may outlive any static object.
struct Registry {
  Handles<ModelDoc, Document> documents{"document"};
  Selections selections;
  Handles<Page, OpenPage> pages{"page"};
  Handles<WordFinder, Finder> finders{"word finder"};
  Handles<Word, FoundWord> words{"word"};

  struct Belongings {
    std::unordered_map<const OpenPage *, std::unique_ptr<OpenPage>> pages;
    std::unordered_map<const Finder *, std::unique_ptr<Finder>> finders;
  };
  std::unordered_map<const Document *, Belongings> belongings;
};

Registry &registry() {
  static Registry &only = *new Registry;
  return only;
}

void require(bool condition, const char *reason) {
  if (!condition) throw HostError(errBadArgument, reason);
}

// The words of an acquired page. They are copies: the document may forget a page's text while a plug-in reads it.
class AcquiredPage {
public:
  AcquiredPage(Document &document, int32_t page, int16_t version) {
    const std::vector<uint32_t> order =
        version == contentOrderVersion ? document.contentOrder(page) : std::vector<uint32_t>();
    const PageText &text = document.pageText(page);
    for (const WordText &word : text.words)
      words_.push_back({static_cast<uint32_t>(word.text.size()), word.offset});
    for (FoundWord &word : words_)
      reading.push_back(registry().words.add(&word));

    own = reading;
    for (size_t i = 0; i < order.size(); ++i)
      own[i] = reading[order[i]];

    std::vector<uint32_t> byPosition(words_.size());
    std::iota(byPosition.begin(), byPosition.end(), 0);
    std::stable_sort(byPosition.begin(), byPosition.end(), [&text](uint32_t a, uint32_t b) {
      const Box &first = text.words[a].bounds, &second = text.words[b].bounds;
      return std::pair(-first.top, first.left) < std::pair(-second.top, second.left);
    });
    for (const uint32_t index : byPosition)
      sorted.push_back(reading[index]);
  }
  AcquiredPage(const AcquiredPage &) = delete;
  AcquiredPage &operator=(const AcquiredPage &) = delete;
  ~AcquiredPage() {
    for (FoundWord &word : words_)
      registry().words.remove(&word);
  }

  size_t acquisitions = 0;
  std::vector<Word> own;     // in the order of the finder's version
  std::vector<Word> sorted;  // by position: from the top down, then from the left
  std::vector<Word> reading; // in reading order

private:
  std::vector<FoundWord> words_; // in reading order; never grows, its elements are handles
};

class Finder {
public:
  Finder(Document &document, int16_t version) : document_(document), version_(version) {}

  Document &document() { return document_; }

  AcquiredPage &acquire(int32_t page) {
    AcquiredPage &acquired =
        acquired_.try_emplace(checkedPage(page, document_.pageCount()), document_, page, version_).first->second;
    ++acquired.acquisitions;
    last_ = page;
    return acquired;
  }

  void release(int32_t page) {
    const auto found = acquired_.find(checkedPage(page, document_.pageCount()));
    require(found != acquired_.end(), "the page is not acquired");
    if (--found->second.acquisitions == 0) acquired_.erase(found);
  }

  Word wordOfLastPage(int32_t index) const {
    const auto found = acquired_.find(last_);
    const auto position = static_cast<size_t>(index); // a negative index becomes one beyond any end
    if (found == acquired_.end() || position >= found->second.own.size()) return nullptr;
    return found->second.own[position];
  }

  size_t acquisitions() const {
    size_t sum = 0;
    for (const auto &[page, acquired] : acquired_)
      sum += acquired.acquisitions;
    return sum;
  }

private:
  Document &document_;
  int16_t version_;
  std::map<int32_t, AcquiredPage> acquired_;
  int32_t last_ = -1;
};

Fixed fixedOf(double points) {
  constexpr double largest = INT32_MAX;
  return static_cast<Fixed>(std::clamp(std::round(points * fixedOne), -largest, largest));
}

std::span<const TextRange> checkedRanges(const TextRange *ranges, int32_t count) {
  require(count >= 0, "a negative number of ranges");
  require(ranges != nullptr || count == 0, "no ranges");
  return {ranges, static_cast<size_t>(count)};
}

TextSelection handleOf(const Selection *selection) { return registry().selections.handle(selection); }

Page docOpenPage(ModelDoc handle, int32_t page) {
  Document &document = registry().documents.find(handle);
  auto opened = std::make_unique<OpenPage>(OpenPage{&document, checkedPage(page, document.pageCount())});
  OpenPage *const address = opened.get();
  registry().belongings[&document].pages.emplace(address, std::move(opened));
  return registry().pages.add(address);
}

void pageClose(Page handle) {
  OpenPage &page = registry().pages.find(handle);
  registry().pages.remove(&page);
  registry().belongings[page.document].pages.erase(&page);
}

WordFinder wordFinderCreate(ModelDoc handle, void *encoding, void *names, void *map, int16_t version, uint32_t flags,
                            void *clientData) {
  constexpr uint32_t wordsUnchanged = 8;
  Document &document = registry().documents.find(handle);
  if (version != contentOrderVersion && version != readingOrderVersion) return nullptr;
  require(encoding == nullptr && names == nullptr && map == nullptr && clientData == nullptr,
          "a word finder takes no options");
  require(flags == wordsUnchanged, "the only flags of a word finder are 8");
  auto made = std::make_unique<Finder>(document, version);
  Finder *const address = made.get();
  registry().belongings[&document].finders.emplace(address, std::move(made));
  return registry().finders.add(address);
}

void wordFinderDestroy(WordFinder handle) {
  Finder &finder = registry().finders.find(handle);
  registry().finders.remove(&finder);
  registry().belongings[&finder.document()].finders.erase(&finder);
}

void wordFinderAcquirePage(WordFinder handle, int32_t page, Word **words, Word **sorted, Word **reading,
                           int32_t *count) {
  AcquiredPage &acquired = registry().finders.find(handle).acquire(page);
  if (words != nullptr) *words = acquired.own.data();
  if (sorted != nullptr) *sorted = acquired.sorted.data();
  if (reading != nullptr) *reading = acquired.reading.data();
  if (count != nullptr) *count = static_cast<int32_t>(acquired.own.size());
}

Word wordFinderGetNthWord(WordFinder handle, int32_t index) {
  return registry().finders.find(handle).wordOfLastPage(index);
}

void wordFinderReleasePage(WordFinder handle, int32_t page) { registry().finders.find(handle).release(page); }

uint32_t wordGetLength(Word word) { return registry().words.find(word).length; }

uint32_t wordGetCharOffset(Word word) { return registry().words.find(word).offset; }

TextSelection selectionFromCharRanges(Page handle, const TextRange *ranges, int32_t count) {
  const OpenPage &page = registry().pages.find(handle);
  return handleOf(page.document->selectCharacters(page.number, checkedRanges(ranges, count)));
}

TextSelection selectionFromWordRanges(Page handle, const TextRange *ranges, int32_t count, int16_t version) {
  const OpenPage &page = registry().pages.find(handle);
  return handleOf(page.document->selectWords(page.number, checkedRanges(ranges, count), version));
}

int32_t selectionPageNumber(TextSelection handle) { return registry().selections.find(handle).page; }

void selectionBounds(TextSelection handle, FixedRect *bounds) {
  const Box &box = registry().selections.find(handle).bounds;
  require(bounds != nullptr, "a null pointer for the bounds");
  *bounds = {fixedOf(box.left), fixedOf(box.top), fixedOf(box.right), fixedOf(box.bottom)};
}

uint32_t pageGetLine(Page pageHandle, TextSelection handle, char *text, uint32_t size, uint32_t *start) {
  const OpenPage &page = registry().pages.find(pageHandle);
  const Selection &selection = registry().selections.find(handle);
  require(selection.page == page.number, "the selection is on another page");
  require(text != nullptr && size > 0, "no space for a line");
  const TextLine line = lineAround(page.document->pageText(page.number), selection.boxes.front());
  const std::string_view part = firstBytes(line.text, size - 1);
  *std::copy(part.begin(), part.end(), text) = 0;
  if (start != nullptr) *start = static_cast<uint32_t>(line.start);
  return static_cast<uint32_t>(part.size());
}

Table completeTable() {
  Table table("DocModel", DocModel::operations);
  table.provide<docOpenPage>(DocModel::DocOpenPage);
  table.provide<pageClose>(DocModel::PageClose);
  table.provide<wordFinderCreate>(DocModel::WordFinderCreate);
  table.provide<wordFinderDestroy>(DocModel::WordFinderDestroy);
  table.provide<wordFinderAcquirePage>(DocModel::WordFinderAcquirePage);
  table.provide<wordFinderGetNthWord>(DocModel::WordFinderGetNthWord);
  table.provide<wordFinderReleasePage>(DocModel::WordFinderReleasePage);
  table.provide<wordGetLength>(DocModel::WordGetLength);
  table.provide<wordGetCharOffset>(DocModel::WordGetCharOffset);
  table.provide<selectionFromCharRanges>(DocModel::SelectionFromCharRanges);
  table.provide<selectionFromWordRanges>(DocModel::SelectionFromWordRanges);
  table.provide<selectionPageNumber>(DocModel::SelectionPageNumber);
  table.provide<selectionBounds>(DocModel::SelectionBounds);
  table.provide<pageGetLine>(DocModel::PageGetLine);
  return table;
}

} // namespace

Document::Document() { registry().documents.add(this); }

Document::~Document() {
  const auto found = registry().belongings.find(this);
  if (found != registry().belongings.end()) {
    for (const auto &[address, page] : found->second.pages)
      registry().pages.remove(page.get());
    for (const auto &[address, finder] : found->second.finders)
      registry().finders.remove(finder.get());
    registry().belongings.erase(found);
  }
  registry().documents.remove(this);
}

Handles<ModelDoc, Document> &modelDocs() { return registry().documents; }
Selections &selections() { return registry().selections; }

HFT docModelTable() {
  static Table &table = *new Table(completeTable());
  return table.entries();
}

OpenObjects openObjects() {
  OpenObjects result;
  result.pages = registry().pages.size();
  result.wordFinders = registry().finders.size();
  for (const auto &[document, belongings] : registry().belongings)
    for (const auto &[address, finder] : belongings.finders)
      result.acquiredPages += finder->acquisitions();
  return result;
}

} // namespace host
