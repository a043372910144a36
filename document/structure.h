// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The structure of a document, read from its file. It is the GLib interface of the PDF library that has outlines,
// links, forms and annotations; it opens the document once more, when structure is asked for first.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "document/mappedfile.h"
#include "host/document/messages.h"

namespace document {

class StructureReader {
public:
  /// The name is for messages.
  StructureReader(std::unique_ptr<const MappedFile> file, std::filesystem::path name, std::string password);
  StructureReader(const StructureReader &) = delete;
  StructureReader &operator=(const StructureReader &) = delete;
  ~StructureReader();

  /// Has the libraries load now what they would load with the first document, and print nothing.
  static void prepareLibraries();

  /// The answer to a request about structure, or to open the document, which the first one does otherwise.
  host::Answer answer(const host::Request &request) noexcept;

private:
  class Pdf;

  std::unique_ptr<const MappedFile> file_;
  std::filesystem::path name_;
  std::string password_;
  std::unique_ptr<Pdf> pdf_; ///< null until it is needed
};

} // namespace document
