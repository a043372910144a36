// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What plug-ins show on the status line.
#pragma once

#include <map>
#include <string>

#include "tavrel/types.h"

namespace host {

class StatusTexts {
public:
  /// Sets a plug-in's text; empty removes it. False where nothing changes.
  bool set(tavrel::ExtensionID extension, const std::string &text) {
    const auto known = texts_.find(extension);
    if ((known == texts_.end() ? std::string() : known->second) == text) return false;
    if (text.empty())
      texts_.erase(extension);
    else
      texts_[extension] = text;
    return true;
  }

  /// Returns how many texts were removed.
  size_t retire(tavrel::ExtensionID extension) noexcept { return texts_.erase(extension); }

  /// All of them, in the order in which the plug-ins were loaded.
  std::string all() const {
    std::string all;
    for (const auto &[extension, text] : texts_)
      all += (all.empty() ? "" : "; ") + text;
    return all;
  }

private:
  std::map<tavrel::ExtensionID, std::string> texts_; ///< none is empty
};

} // namespace host
