// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Turns calls of the PDF library into answers, and its exceptions into failures.
#include "document/answering.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

#include "document/finder.h"

namespace document {
namespace {

using host::Answer;
using host::DocumentError;
using host::Failure;
using host::Found;
using host::HostError;
using host::ImageRequest;
using host::MatchesRequest;
using host::nameInMessage;
using host::Opened;
using host::OpenRequest;
using host::PageImage;
using host::PageMatches;
using host::PagePlainWords;
using host::PageSize;
using host::PageWords;
using host::PlainWordsRequest;
using host::Request;
using host::Sizes;
using host::SizesRequest;
using host::WordsRequest;

constexpr char outOfMemory[] = "out of memory"; // short enough for a string without an allocation

// What `make()` returns, or `outOfMemory` where there is no memory for it.
template <typename Make> std::string reasonFrom(const Make &make) noexcept {
  try {
    return make();
  } catch (const std::exception &) {
    return outOfMemory;
  }
}

Failure failureOf(const std::exception &error, tavrel::ErrorCode code) noexcept {
  return {code, reasonFrom([&] { return std::string(error.what()); })};
}

// The answer that `make` returns, or the failure.
template <typename Make> Answer answerOf(const std::filesystem::path &file, const Make &make) noexcept {
  Answer answer;
  try {
    answer.value = make();
  } catch (const std::exception &) {
    answer.value = caughtFailure(file);
  }
  return answer;
}

using Value = decltype(Answer::value);

std::vector<PageSize> sizesOf(PdfFile &file, int32_t first, int32_t count) {
  std::vector<PageSize> sizes;
  sizes.reserve(static_cast<size_t>(count));
  for (int32_t page = first; page < first + count; ++page)
    sizes.push_back(file.pageSize(page));
  return sizes;
}

struct Answering {
  PdfFile &file;
  std::span<uint32_t> pixels = {};

  Value operator()(const OpenRequest & /*asked*/) const {
    const int32_t pages = file.pageCount();
    return Opened{pages, sizesOf(file, 0, std::min(pages, host::sizesTogether))};
  }
  Value operator()(const SizesRequest &asked) const {
    return Sizes{asked.first, sizesOf(file, asked.first, asked.count)};
  }
  Value operator()(const WordsRequest &asked) const {
    PageWords words{asked.page, file.text(asked.page), {}};
    if (asked.order) words.order = file.contentOrder(asked.page, words.text);
    return words;
  }
  Value operator()(const PlainWordsRequest &asked) const {
    return PagePlainWords{asked.page, file.plainWords(asked.page)};
  }
  Value operator()(const ImageRequest &asked) const {
    if (pixels.empty()) return PageImage{asked.page, asked.dpi, file.render(asked.page, asked.dpi)};
    file.render(asked, pixels);
    return PageImage{asked.page, asked.dpi, {}};
  }
  Value operator()(const MatchesRequest &asked) const {
    const Finder finder(asked.text, asked.options);
    return PageMatches{asked.page, finder.empty() ? std::vector<Found>() : finder.find(file.text(asked.page))};
  }
  // Those about its structure, which only its process reads.
  template <typename Other> Value operator()(const Other & /*asked*/) const {
    throw HostError(tavrel::errBadArgument, nameInMessage(file.file()) + ": its structure is not read here");
  }
};

} // namespace

Failure caughtFailure(const std::filesystem::path &file) noexcept {
  try {
    throw;
  } catch (const DocumentError &error) {
    Failure failure = failureOf(error, error.code);
    failure.reason = error.reason;
    return failure;
  } catch (const HostError &error) {
    return failureOf(error, error.code);
  } catch (const std::invalid_argument &error) { // of Finder
    return failureOf(error, tavrel::errBadArgument);
  } catch (const std::bad_alloc &) {
    return {tavrel::errNoMemory, reasonFrom([&] { return nameInMessage(file) + ": memory is exhausted"; })};
  } catch (const std::exception &error) {
    return {tavrel::errDocument, reasonFrom([&] { return nameInMessage(file) + ": " + error.what(); })};
  }
}

Answer answerOpen(const OpenRequest &request, int descriptor, std::unique_ptr<PdfFile> &opened) noexcept {
  Answer answer = answerOf(request.file, [&]() -> Value {
    opened = PdfFile::open(std::make_unique<MappedFile>(descriptor, request.file), request.file, request.password);
    return Answering{*opened}(request);
  });
  if (std::holds_alternative<Failure>(answer.value)) opened.reset();
  return answer;
}

Answer answerFrom(PdfFile &file, const Request &request, const std::filesystem::path &name,
                  std::span<uint32_t> pixels) noexcept {
  return answerOf(name, [&] { return std::visit(Answering{file, pixels}, request); });
}

} // namespace document
