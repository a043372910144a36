// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The viewer's state as a plain structure, for other programs. All positions are in pixels of the screen.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "viewer/model/model.h"
#include "viewer/model/place.h"

namespace viewer {

struct ButtonState {
  std::string name; ///< or its label, in a dialog
  std::string tip;
  bool enabled = false;
  Place place{};
};

struct FieldState {
  std::string name, text;
  Place place{};
};

struct ListState {
  std::string name;
  std::vector<std::string> items;
  int selected = -1; ///< position from 0; -1: none
  Place place{};     ///< of what is visible
};

struct DialogState {
  std::string name;
  std::vector<std::string> texts;
  std::vector<ButtonState> buttons;
  std::vector<FieldState> fields;
  Place place{};
  std::vector<ListState> lists = {};
};

/// The list beside the page.
struct PanelState {
  bool shown = false;
  std::string title;
  uint32_t first = 0; ///< the upper one of the visible rows
  int64_t current = -1;
  std::vector<std::string> texts; ///< of the visible rows
  int rowHeight = 0;
  Place place{};     ///< of the rows
  size_t paints = 0; ///< how often they have been painted
};

/// What the window shows besides the model.
struct WindowState {
  std::vector<int32_t> ticks; ///< beside the scroll bar, as page numbers from 0
  Place area{}, page{};       ///< of the page area, and of the complete page in it
  std::string note;
  size_t marksShown = 0;            ///< how many drawings with marks have been shown
  double longestIteration = 0;      ///< of the event loop, in milliseconds
  std::vector<ButtonState> buttons; ///< on the tool bar
  PanelState panel;
  FieldState pageField;
  std::vector<DialogState> dialogs;
};

/// The state as one line of JSON, without a line feed. Bytes that are no UTF-8 are U+FFFD.
std::string stateOf(const Model &model, const std::string &pluginText, const WindowState &window);

} // namespace viewer
