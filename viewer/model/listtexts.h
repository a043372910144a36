// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The list of a plug-in beside the page of the document in front, with the texts of its rows. A plug-in may have to
// read a page for a row, and a list may have any number of them: only the rows that are visible are asked for, a few at
// a time. Nobody waits for a page: a row whose page is not there yet is asked for again when it is.
#pragma once

#include <chrono>
#include <map>
#include <set>

#include "viewer/model/tiles.h"

namespace viewer {

class ListTexts {
public:
  ListTexts(host::Application &app, const Documents &documents, Tiles &tiles, Changes &changes)
      : app_(app), documents_(documents), tiles_(tiles), changes_(changes) {}

  /// Null if there is none.
  const host::PluginList *list() const;
  /// What a row shows; null if that is not known yet.
  const host::ListText *text(uint32_t row) const;
  /// Asks for the texts of these rows as long as that takes no longer; false if it has to be called again for some.
  /// Those whose pages are not there yet come later; rows that are not among these are waited for no more. Nothing is
  /// asked during a call of a plug-in.
  bool fetch(uint32_t first, uint32_t count, std::chrono::steady_clock::duration atMost);
  /// To be called when documents' services have answered: notes a change if fetch() can go on.
  void collect();
  /// Notifies the plug-in that the user has chosen a row; not during a call of a plug-in.
  void choose(uint32_t row);

  static constexpr size_t mostTexts = 4096; ///< that are kept, besides those of the last fetch()
  static constexpr size_t mostWaiting = 8;  ///< rows: each has a page's words asked for

private:
  using Pages = std::set<int32_t>;
  void follow(const host::PluginList &shown);
  void read(const host::PluginList &shown, uint32_t row);
  bool isAwaited(const Pages &pages) const;
  template <typename Condition> void stopWaiting(const Condition &condition);

  host::Application &app_;
  const Documents &documents_;
  Tiles &tiles_;
  Changes &changes_;
  uint64_t number_ = 0;   ///< of the list that the texts belong to
  uint64_t document_ = 0; ///< its number
  std::map<uint32_t, host::ListText> texts_;
  std::map<uint32_t, Pages> waiting_; ///< rows, and the pages asked for that were not there for them
};

} // namespace viewer
