// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A PDF file as the PDF library has it: its pages, their words, their images.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "document/mappedfile.h"
#include "host/document/documenterror.h"
#include "host/document/image.h"
#include "host/document/messages.h"
#include "host/document/page.h"

namespace document {

class PdfFile {
public:
  /// Opens what the library can read as a PDF, whatever its first line. Throws DocumentError with one clear line that
  /// names the file.
  static std::unique_ptr<PdfFile> open(const std::filesystem::path &file, const std::string &password);
  /// The same of a file that is mapped. Messages name it.
  static std::unique_ptr<PdfFile> open(std::unique_ptr<const MappedFile> bytes, const std::filesystem::path &name,
                                       const std::string &password);
  /// Has the PDF library load now what it would load with the first document.
  static void prepareLibrary();
  virtual ~PdfFile() = default;
  /// The name by which it was opened.
  virtual const std::filesystem::path &file() const = 0;

  virtual int32_t pageCount() const = 0;
  // All of these throw HostError errBadPage for a page that is not there, DocumentError for one that is damaged or
  // whose box is empty; the line names the file and the page, counted from 1.
  /// A page that is damaged has the size of a letter page, so that a reader can turn to it and beyond.
  virtual host::PageSize pageSize(int32_t page) = 0;
  /// Computed at each call.
  virtual host::PageText text(int32_t page) = 0;
  /// The words of its text alone, which is faster.
  virtual std::vector<std::u32string> plainWords(int32_t page) = 0;
  /// Indices into the words of a page's text, in the order of the content stream; every word once.
  virtual std::vector<uint32_t> contentOrder(int32_t page, const host::PageText &text) = 0;
  /// The page on white, width and height rounded up to whole pixels. Throws errBadArgument for an image of no pixels or
  /// of more than 20,000 a side.
  virtual host::Image render(int32_t page, double dpi) = 0;
  /// The same, or a part of it, into memory that is as large. Throws DocumentError if the page's image has another
  /// size, errBadArgument if the part is not in it.
  virtual void render(const host::ImageRequest &request, std::span<uint32_t> pixels) = 0;
};

} // namespace document
