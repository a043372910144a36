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
#include "host/document/utf8.h"
#include "host/document/wire.h"

namespace {

using namespace host;

constexpr int32_t pages = 2; // of the document

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

struct CheckTarget {
  int32_t pages;
  void operator()(std::monostate /*none*/) const {}
  void operator()(const PageTarget &target) const {
    require(target.page >= 0 && target.page < pages, "a target is on a page of the document");
  }
  void operator()(const UriTarget &target) const { require(isUri(target.uri), "a URI is one"); }
  void operator()(const FileTarget &target) const {
    require(!target.file.empty() && isLine(target.file), "a file's name is a line");
  }
  void operator()(const ActionTarget &target) const { require(isLine(target.name), "an action's name is a line"); }
};

void requireArea(const Box &area) {
  require(area.right - area.left > 0 && area.top - area.bottom > 0, "an area is one");
}

void use(const Structure &structure) {
  int32_t deepest = 0;
  for (const OutlineEntry &entry : structure.outline) {
    require(isLine(entry.title), "a title is a line");
    require(entry.depth >= 0 && entry.depth <= deepest && entry.depth < most::depth, "an entry has one above it");
    deepest = entry.depth + 1;
    std::visit(CheckTarget{pages}, entry.target);
  }
  require(structure.labels.empty() || structure.labels.size() == size_t{pages}, "all pages have labels");
  for (const Attachment &file : structure.attachments)
    require(isLine(file.name) && isLine(file.description) && isLine(file.type), "a file is described by lines");
}

void use(const PageStructure &structure) {
  for (const Link &link : structure.links) {
    requireArea(link.area);
    std::visit(CheckTarget{pages}, link.target);
  }
  for (const FormField &field : structure.fields) {
    requireArea(field.area);
    require(field.kind <= FormField::Kind::unknown && isLines(field.contents), "a field is of a kind");
  }
  for (const Annotation &annotation : structure.annotations) {
    requireArea(annotation.area);
    require(annotation.kind <= Annotation::Kind::other && isLines(annotation.contents), "an annotation is of a kind");
  }
}

void use(const AttachedFile &file) { require(file.bytes.size() <= most::attachedFile, "a file is not too long"); }

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
        Request(MatchesRequest{page, "a", {}}), Request(StructureRequest{pages}),
        Request(PageStructureRequest{page, pages}), Request(AttachmentRequest{page})})
    if (fits(request, *answer)) std::visit([](const auto &value) { use(value); }, answer->value);
  return 0;
}
