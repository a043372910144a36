// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What has changed since the window was brought up to date.
#pragma once

#include <cstdint>
#include <utility>

namespace viewer {

/// Parts of the window that show something of the model.
enum Part : uint32_t {
  partPage = 1 << 0,    ///< the scroll bars, ticks and list; whether to draw is the screen's question
  partToolBar = 1 << 1, ///< the buttons, the page number
  partMenus = 1 << 2,
  partStatus = 1 << 3, ///< the status line and the title
  partFind = 1 << 4,   ///< the find dialog
  allParts = (1 << 5) - 1,
};

class Changes {
public:
  void note(uint32_t parts) { parts_ |= parts; }
  /// The parts noted since the last call.
  uint32_t take() { return std::exchange(parts_, 0U); }

private:
  uint32_t parts_ = allParts;
};

} // namespace viewer
