// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The lists that plug-ins show beside the page of a document. Their rows are asked for when they are needed.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "host/view/registration.h"
#include "tavrel/TavrelView.h"

namespace host {

struct PluginList {
  std::string title;
  uint32_t rows = 0;
  std::optional<uint32_t> current;
  uint64_t number = 0; ///< of no other list: another one may have other rows
  Registration row, chosen;
};

/// What a row shows.
struct ListText {
  int32_t page = -1; ///< the page that it belongs to; -1: none
  std::string text;
  size_t markStart = 0, markLength = 0; ///< the bytes of it to be emphasised, complete characters; length 0: none
};

/// The lists of one document.
class Lists {
public:
  void set(tavrel::ExtensionID extension, PluginList list);
  /// Throws errBadArgument for a row that the plug-in's list does not have.
  void setRow(tavrel::ExtensionID extension, std::optional<uint32_t> row);
  /// Returns how many lists the plug-in had.
  size_t retire(tavrel::ExtensionID extension) noexcept { return lists_.erase(extension); }

  /// The list that is shown, or null.
  const PluginList *shown() const { return lists_.empty() ? nullptr : &lists_.begin()->second; }
  /// Has the plug-in say what a row of a document's list shows.
  static ListText text(const PluginList &list, tavrel::Doc document, uint32_t row);
  /// Notifies the plug-in that a row has been chosen.
  static void choose(const PluginList &list, tavrel::Doc document, uint32_t row);

private:
  std::map<tavrel::ExtensionID, PluginList> lists_; ///< none without rows
};

} // namespace host
