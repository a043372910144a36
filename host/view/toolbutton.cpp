// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/toolbutton.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <sstream>
#include <string_view>

namespace host {
namespace {

// "Ctrl Shift<Key>F3": modifiers, an event, the name of a key.
bool isKey(const std::string &text) {
  constexpr std::string_view event = "<Key>", modifiers[] = {"Ctrl", "Shift", "Alt", "Meta"};
  constexpr size_t longest = 64;
  const size_t end = text.find(event);
  if (end == std::string::npos || text.size() > longest) return false;
  std::istringstream before(text.substr(0, end));
  const std::string key = text.substr(end + event.size());
  return std::all_of(std::istream_iterator<std::string>(before), {},
                     [&](const std::string &word) {
                       return std::find(std::begin(modifiers), std::end(modifiers), word) != std::end(modifiers);
                     }) &&
         !key.empty() &&
         std::all_of(key.begin(), key.end(), [](unsigned char c) { return std::isalnum(c) != 0 || c == '_'; });
}

} // namespace

std::span<const OwnButton> ownButtons() {
  static constexpr OwnButton all[] = {
      {"Open", "Opens a document"},
      {"PreviousPage", "Shows the page before"},
      {"NextPage", "Shows the next page"},
      {"ZoomOut", "Shows the page smaller"},
      {"ZoomIn", "Shows the page larger"},
      {"FitWidth", "Shows the page as wide as the window"},
      {"FitPage", "Shows the complete page"},
      {"FindDialog", "Finds a text"},
      {"FindAgainDialog", "Finds the text again"},
  };
  return all;
}

void ToolButton::setKey(const std::string &text) {
  if (!text.empty() && !isKey(text)) throw HostError(tavrel::errBadArgument, "no key: " + text.substr(0, 100));
  key = text;
}

bool mayBePressed(const ToolButton &button, tavrel::ToolButton handle) {
  if (button.ownTest) return button.ownTest();
  if (button.test.callback == nullptr) return true;
  return callPlugin({button.test.owner, "the enabled test of a button"},
                    tavrel::functionOf<tavrel::ButtonTestProc>(button.test.callback), handle,
                    button.test.clientData) != 0;
}

void callAction(const ToolButton &button, tavrel::ToolButton handle) {
  if (button.ownAction) return button.ownAction();
  if (button.action.callback == nullptr) return;
  callPlugin({button.action.owner, "the action of a button"},
             tavrel::functionOf<tavrel::ButtonActionProc>(button.action.callback), handle, button.action.clientData);
}

} // namespace host
