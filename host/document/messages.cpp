// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Checks answers: they may come from another program, which may have been made to answer wrongly by a hostile file.
#include "host/document/messages.h"

#include <climits>

#include <algorithm>
#include <new>

#include "host/document/utf8.h"

namespace host {
namespace {

bool areSizes(const std::vector<PageSize> &sizes) {
  return std::all_of(sizes.begin(), sizes.end(), [](const PageSize &size) {
    return size.width >= 1 && size.height >= 1 && size.width <= longestPage && size.height <= longestPage;
  });
}

bool areBoxes(const std::vector<Box> &boxes) { return std::all_of(boxes.begin(), boxes.end(), isUsable); }

bool isCodePoint(char32_t c) { return c < 0xD800 || (c > 0xDFFF && c <= 0x10FFFF); }

bool isPlainWord(const std::u32string &word) {
  return !word.empty() && std::all_of(word.begin(), word.end(), isCodePoint);
}

bool isWord(const WordText &word) {
  return isPlainWord(word.text) && isUsable(word.bounds) && word.characters.size() == word.text.size() &&
         areBoxes(word.characters) && word.quarterTurns >= 0 && word.quarterTurns < 4;
}

// The words joined by one space have the offsets that they claim.
bool isText(const PageText &text) {
  size_t offset = 0;
  return std::all_of(text.words.begin(), text.words.end(), [&offset](const WordText &word) {
    const bool follows = word.offset == offset && isWord(word);
    offset += word.text.size() + 1;
    return follows;
  });
}

// Its line is shown as it is.
bool isFailure(const Failure &failure) {
  constexpr size_t longest = size_t{2} * PATH_MAX;
  const std::string &line = failure.line;
  return failure.code > tavrel::errNone && failure.code <= tavrel::errDocument &&
         failure.reason <= DocumentError::processFailed && line.size() <= longest && isLine(line);
}

bool isPermutation(const std::vector<uint32_t> &order, size_t count) {
  if (order.size() != count) return false;
  std::vector<bool> seen(count);
  return std::all_of(order.begin(), order.end(), [&](uint32_t index) {
    if (index >= count || seen[index]) return false;
    seen[index] = true;
    return true;
  });
}

bool isImage(const Image &image) {
  return image.width >= 1 && image.height >= 1 && image.width <= longestSide && image.height <= longestSide &&
         image.pixels.size() == static_cast<size_t>(image.width) * static_cast<size_t>(image.height);
}

struct Fits {
  bool operator()(const OpenRequest & /*asked*/, const Opened &got) const {
    constexpr int32_t mostPages = 10'000'000; // more objects than a PDF has
    return got.pageCount > 0 && got.pageCount <= mostPages && got.sizes.size() <= static_cast<size_t>(got.pageCount) &&
           areSizes(got.sizes);
  }
  bool operator()(const SizesRequest &asked, const Sizes &got) const {
    return got.first == asked.first && got.sizes.size() == static_cast<size_t>(asked.count) && areSizes(got.sizes);
  }
  bool operator()(const WordsRequest &asked, const PageWords &got) const {
    return got.page == asked.page && isText(got.text) &&
           isPermutation(got.order, asked.order ? got.text.words.size() : 0);
  }
  bool operator()(const ImageRequest &asked, const PageImage &got) const {
    return got.page == asked.page && got.dpi == asked.dpi && isImage(got.image);
  }
  bool operator()(const MatchesRequest &asked, const PageMatches &got) const {
    return got.page == asked.page && std::all_of(got.found.begin(), got.found.end(), [](const Found &one) {
             return !one.boxes.empty() && areBoxes(one.boxes);
           });
  }
  bool operator()(const StructureRequest &asked, const Structure &got) const { return isValid(got, asked.pages); }
  bool operator()(const PageStructureRequest &asked, const PageStructure &got) const {
    return got.page == asked.page && isValid(got, asked.pages);
  }
  bool operator()(const AttachmentRequest &asked, const AttachedFile &got) const {
    return got.index == asked.index && got.bytes.size() <= most::attachedFile;
  }
  bool operator()(const PlainWordsRequest &asked, const PagePlainWords &got) const {
    return got.page == asked.page && std::all_of(got.words.begin(), got.words.end(), isPlainWord);
  }
  template <typename Asked> bool operator()(const Asked & /*asked*/, const Failure &got) const {
    return isFailure(got);
  }
  template <typename Asked, typename Got> bool operator()(const Asked & /*asked*/, const Got & /*got*/) const {
    return false;
  }
};

} // namespace

bool fits(const Request &request, const Answer &answer) { return std::visit(Fits{}, request, answer.value); }

void raise(const Failure &failure) {
  if (failure.code == tavrel::errNoMemory) throw std::bad_alloc();
  if (failure.code != tavrel::errDocument) throw HostError(failure.code, failure.line);
  throw DocumentError(failure.reason, failure.line);
}

} // namespace host
