// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What the GLib interface of the PDF library does not say of a document, and its C++ interface does: how far a page is
// rotated, and of what types the attached files are.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace poppler {
class document;
}

namespace document {

class Details {
public:
  /// Opens the document when it is first asked about. The bytes stay the caller's, and have to outlive this object.
  Details(std::span<const char> bytes, std::string password);
  Details(const Details &) = delete;
  Details &operator=(const Details &) = delete;
  ~Details();

  /// Clockwise, 0 to 3; 0 for a page that is damaged or not there.
  int quarterTurns(int32_t page);
  /// As the document has them, a text of any bytes for each file.
  std::vector<std::string> attachmentTypes();

private:
  /// Null where it cannot be opened.
  poppler::document *pdf();

  std::span<const char> bytes_;
  std::string password_;
  bool isOpened_ = false;
  std::unique_ptr<poppler::document> pdf_;
};

} // namespace document
