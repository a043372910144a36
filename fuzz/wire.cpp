// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What the owner of a document's process reads from its socket, over any bytes. A content that is accepted is written
// as the same bytes again; one that fits its request can be used.
//
// Input: the content of a message.
#include <climits>
#include <cstdint>
#include <string_view>

#include "fuzz/require.h"
#include "host/document/wire.h"

namespace {

using namespace host;

std::string_view contentOf(const std::string &message) { return std::string_view(message).substr(sizeof(WireHeader)); }

void use(const Opened &opened) { require(opened.pageCount > 0, "a document has pages"); }

void use(const Sizes &sizes) {
  for (const PageSize &size : sizes.sizes)
    require(size.width >= 1 && size.height >= 1, "a page has an area");
}

void use(const PageWords &words) {
  const std::u32string text = words.text.text();
  for (const WordText &word : words.text.words)
    require(text.substr(word.offset, word.text.size()) == word.text, "a word is where its offset says");
  for (const uint32_t word : words.order)
    require(word < words.text.words.size(), "the order is one of the words");
}

void use(const PagePlainWords &words) {
  for (const std::u32string &word : words.words)
    require(!word.empty(), "a word has characters");
}

void use(const PageImage &image) { require(!image.image.pixels.empty(), "an image has pixels"); }

void use(const PageMatches &matches) {
  for (const Found &one : matches.found)
    require(!one.boxes.empty(), "a match is somewhere");
}

void use(const Failure &failure) { require(failure.line.find('\n') == std::string::npos, "a failure is one line"); }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string_view content(reinterpret_cast<const char *>(data), size);
  if (const std::optional<Request> request = requestIn(content))
    require(contentOf(messageOf(*request)) == content, "a request is written as it was read");
  const std::optional<Answer> answer = answerIn(content);
  if (!answer) return 0;
  require(contentOf(messageOf(*answer)) == content, "an answer is written as it was read");
  const int32_t page = 1;
  for (const Request &request :
       {Request(OpenRequest{}), Request(SizesRequest{page, 2}), Request(WordsRequest{page, false}),
        Request(WordsRequest{page, true}), Request(PlainWordsRequest{page}), Request(ImageRequest{page, 72}),
        Request(MatchesRequest{page, "a", {}})})
    if (fits(request, *answer)) std::visit([](const auto &value) { use(value); }, answer->value);
  return 0;
}
