// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The list of a plug-in beside the page of the document in front, with the texts of its rows. A plug-in may have to
// read a page for a row, and a list may have any number of them: only the rows that are visible are asked for, a few at
// a time.
#pragma once

#include <chrono>
#include <map>

#include "viewer/model/tiles.h"

namespace viewer {

class ListTexts {
public:
  ListTexts(host::Application &app, const Documents &documents, Tiles &tiles)
      : app_(app), documents_(documents), tiles_(tiles) {}

  /// Null if there is none.
  const host::PluginList *list() const;
  /// What a row shows; null if it has not been asked for.
  const host::ListText *text(uint32_t row) const;
  /// Asks for the texts of these rows as long as that takes no longer; false if some are missing. Nothing is asked
  /// during a call of a plug-in.
  bool fetch(uint32_t first, uint32_t count, std::chrono::steady_clock::duration atMost);
  /// Notifies the plug-in that the user has chosen a row; not during a call of a plug-in.
  void choose(uint32_t row);

  static constexpr size_t mostTexts = 4096; ///< that are kept, besides those of the last fetch()

private:
  host::Application &app_;
  const Documents &documents_;
  Tiles &tiles_;
  uint64_t number_ = 0; ///< of the list that the texts belong to
  std::map<uint32_t, host::ListText> texts_;
};

} // namespace viewer
