// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Texts out of a file, for one answer: valid, and no more of them than an answer may have.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "host/document/structure.h"

namespace document {

class Texts {
public:
  // What does not fit any more is truncated; null is empty.
  std::string line(const char *text);
  std::string lines(const char *text);
  /// What is not allowed in a URI is encoded in it. None if it does not fit: a part of one leads elsewhere.
  std::optional<std::string> uri(const char *text);

private:
  std::string taken(std::string_view valid, size_t atMost);

  size_t left_ = host::most::text; ///< bytes
};

} // namespace document
