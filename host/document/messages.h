// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What can be asked of a document, and the answers: plain values, which may be sent to another thread or process. Pages
// count from 0.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

#include "host/document/documenterror.h"
#include "host/document/find.h"
#include "host/document/image.h"
#include "host/document/page.h"
#include "host/document/structure.h"

namespace host {

/// Opens the file. Nothing else is asked before it is answered.
struct OpenRequest {
  std::filesystem::path file;
  std::string password;
};

/// Points a side, far beyond any printed page.
inline constexpr double longestPage = 200'000;

/// How many sizes are asked for together: of a page and of those that a reader turns to next. All of them at once take
/// 80 ms and 13 MB for 10,000 pages, which a viewer would spend before it shows the first page.
inline constexpr int32_t sizesTogether = 32;

/// The sizes of consecutive pages.
struct SizesRequest {
  int32_t first = 0, count = 0;
};

struct WordsRequest {
  int32_t page = 0;
  bool order = false; ///< with the order of the content stream
};

/// The words without their boxes, which is faster and takes a tenth of the bytes.
struct PlainWordsRequest {
  int32_t page = 0;
};

/// A page at a resolution.
struct ImageRequest {
  int32_t page = 0;
  double dpi = 0;
  PixelSize size = {}; ///< pixelSize() of the page
  PixelBox part = {};  ///< of the page's pixels, which is drawn; an empty one: all

  /// What is drawn.
  PixelBox drawn() const { return part.right > part.left ? part : PixelBox{0, 0, size.width, size.height}; }
};

/// Where a text is on a page, see Finder.
struct MatchesRequest {
  int32_t page = 0;
  std::string text; ///< UTF-8
  FindOptions options;
};

/// The structure of the document.
struct StructureRequest {
  int32_t pages = 0; ///< of the document: there are labels for so many, and targets on them
};

/// The links, forms and annotations of a page.
struct PageStructureRequest {
  int32_t page = 0;
  int32_t pages = 0; ///< of the document: there are targets on them
};

/// The bytes of an attached file.
struct AttachmentRequest {
  uint32_t index = 0; ///< into Structure::attachments
};

using Request = std::variant<OpenRequest, SizesRequest, WordsRequest, ImageRequest, MatchesRequest, StructureRequest,
                             PageStructureRequest, AttachmentRequest, PlainWordsRequest>;

/// A request that could not be fulfilled.
struct Failure {
  tavrel::ErrorCode code = tavrel::errGeneric;
  std::string line;                                         ///< names the file
  DocumentError::Reason reason = DocumentError::unreadable; ///< if the code is errDocument
};

struct Opened {
  int32_t pageCount = 0;
  std::vector<PageSize> sizes; ///< of the first pages
  bool isConfined = true;      ///< what reads it can do nothing else
};

struct Sizes {
  int32_t first = 0;
  std::vector<PageSize> sizes;
};

struct PageWords {
  int32_t page = 0;
  PageText text;
  std::vector<uint32_t> order; ///< of the content stream, if it was asked for: indices into the words, each once
};

struct PageImage {
  int32_t page = 0;
  double dpi = 0;
  Image image; ///< on white
};

struct PageMatches {
  int32_t page = 0;
  std::vector<Found> found; ///< in reading order
};

struct PagePlainWords {
  int32_t page = 0;
  std::vector<std::u32string> words; ///< those of PageWords, in the same order
};

struct Answer {
  std::variant<Failure, Opened, Sizes, PageWords, PageImage, PageMatches, Structure, PageStructure, AttachedFile,
               PagePlainWords>
      value;
  bool fileChanged = false; ///< the file's name belongs to another file now than the one that is open
};

/// Whether an answer is one to the request, and has no contradictions. A failure is an answer to any.
bool fits(const Request &request, const Answer &answer);

/// Throws what the failure was made of: std::bad_alloc, DocumentError or HostError.
[[noreturn]] void raise(const Failure &failure);

} // namespace host
