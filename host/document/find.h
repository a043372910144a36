// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What is looked for on a page, and where it is.
#pragma once

#include <vector>

#include "host/document/page.h"

namespace host {

struct FindOptions {
  bool matchCase = false;
  bool wholeWords = false; ///< no letter or digit is directly before or after it
};

/// An occurrence of the text on a page.
struct Found {
  std::vector<Box> boxes; ///< a box a word (or part of a word) that it covers, in page space
};

} // namespace host
