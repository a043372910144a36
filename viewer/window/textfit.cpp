// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/textfit.h"

#include "viewer/model/onelinetext.h"

namespace viewer {

// Measuring is slow: a binary search needs eight measurements for a row of 247 bytes.
std::string fitted(const std::string &text, int width, const std::function<int(const std::string &)> &widthOf) {
  if (widthOf(text) <= width) return text;
  const auto truncated = [&](size_t bytes) { return std::string(firstBytes(text, bytes)) + "\u2026"; };
  size_t fits = 0, tooLong = text.size();
  while (fits + 1 < tooLong) {
    const size_t middle = (fits + tooLong) / 2;
    (widthOf(truncated(middle)) <= width ? fits : tooLong) = middle;
  }
  return truncated(fits);
}

} // namespace viewer
