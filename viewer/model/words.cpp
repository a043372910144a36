// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/words.h"

#include <algorithm>

namespace viewer {

void Words::expect(host::Document &document, int32_t page, bool shown) {
  const auto isPage = [=](int32_t other) { return other == page; };
  if (std::none_of(shown_.begin(), shown_.end(), isPage) && std::none_of(expected_.begin(), expected_.end(), isPage))
    expected_.push_back(page);
  document.expectText(page, shown);
}

void Words::show(host::Document &document, int32_t page) {
  constexpr size_t kept = 8;
  std::erase(expected_, page);
  std::erase(shown_, page);
  shown_.push_back(page);
  std::erase_if(expected_, [&](int32_t other) {
    if (other == page + 1 || other == page - 1) return false;
    document.forgetText(other);
    return true;
  });
  if (shown_.size() <= kept) return;
  document.forgetText(shown_.front());
  shown_.erase(shown_.begin());
}

} // namespace viewer
