// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The tool bar's model. The application owns one; a window shows it, the TavrelView table changes it.
#include "host/view/toolbar.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <sstream>
#include <string_view>
#include <utility>

namespace host {
namespace {

struct OwnButton {
  const char *name;
  const char *tip;
};

// Plug-ins put their buttons beside these: the names are part of the interface.
constexpr OwnButton ownButtons[] = {
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

ToolBar::ToolBar(Atoms &atoms) {
  for (const OwnButton &own : ownButtons) {
    ToolButton &button = create(atoms.atom(own.name), 0);
    button.tip = own.tip;
    order_.push_back(&button);
  }
}

ToolButton *ToolBar::find(tavrel::Atom name) const {
  const auto found = std::find_if(order_.begin(), order_.end(), [=](auto *button) { return button->name == name; });
  return found == order_.end() ? nullptr : *found;
}

ToolButton &ToolBar::create(tavrel::Atom name, tavrel::Bitmap icon, tavrel::ExtensionID owner) {
  const auto taken =
      std::find_if(buttons_.begin(), buttons_.end(), [=](const auto &button) { return button->name == name; });
  if (taken != buttons_.end()) return **taken;
  ToolButton &button = *buttons_.emplace_back(std::make_unique<ToolButton>());
  button.name = name;
  button.icon = icon;
  button.owner = owner;
  handles_.add(&button);
  return button;
}

void ToolBar::attach(ToolButton &button, Registration ToolButton::*member, const Registration &registration) {
  button.*member = registration;
  // A plug-in may have the button made by another one, through an operation of a table. A button of the application
  // stays its own button whatever is attached to it.
  if (button.owner != hostExtension) button.owner = registration.owner;
}

void ToolBar::attachAction(ToolButton &button, const Registration &action) {
  attach(button, &ToolButton::action, action);
}

void ToolBar::attachTest(ToolButton &button, const Registration &test) { attach(button, &ToolButton::test, test); }

void ToolBar::setAttribute(ToolButton &button, int32_t attribute) {
  button.attributes.insert(attribute);
  notify(); // the button may become visible
}

void ToolBar::setLabel(ToolButton &button, const std::string &label) {
  button.label = label;
  notify();
}

void ToolBar::setKey(ToolButton &button, const std::string &key) {
  if (!key.empty() && !isKey(key)) throw HostError(tavrel::errBadArgument, "no key: " + key.substr(0, 100));
  button.key = key;
  notify();
}

void ToolBar::retire(tavrel::ExtensionID extension) {
  retired_.reserve(retired_.size() + buttons_.size());
  for (const auto &button : buttons_)
    for (Registration *attached : {&button->action, &button->test})
      if (attached->owner == extension) *attached = {};
  const auto first = std::stable_partition(buttons_.begin(), buttons_.end(),
                                           [=](const auto &button) { return button->owner != extension; });
  if (first == buttons_.end()) return;
  std::for_each(first, buttons_.end(), [this](const auto &button) {
    handles_.remove(button.get());
    std::erase(order_, button.get());
  });
  retired_.insert(retired_.end(), std::make_move_iterator(first), std::make_move_iterator(buttons_.end()));
  buttons_.erase(first, buttons_.end());
  notify();
}

void ToolBar::insert(ToolButton &button, bool before, ToolButton *reference) {
  if (&button == reference) return;
  if (reference != nullptr && std::find(order_.begin(), order_.end(), reference) == order_.end())
    throw HostError(tavrel::errBadArgument, "the reference button is not on the tool bar");
  std::erase(order_, &button); // a button that moves has space, even on a full tool bar
  if (!hasSpace(1, 0)) throw HostError(tavrel::errBadArgument, "the tool bar is full");
  auto position = order_.end();
  if (reference != nullptr) position = std::find(order_.begin(), order_.end(), reference) + (before ? 0 : 1);
  order_.insert(position, &button);
  notify();
}

void ToolBar::detach(ToolButton &button) {
  if (std::erase(order_, &button) > 0) notify();
}

std::vector<ToolButton *> ToolBar::visible() const {
  std::vector<ToolButton *> buttons;
  std::copy_if(order_.begin(), order_.end(), std::back_inserter(buttons), [this](const ToolButton *button) {
    return !embedded || button->owner == hostExtension || button->attributes.contains(tavrel::buttonAlsoInBrowser);
  });
  return buttons;
}

bool ToolBar::hasSpace(int32_t buttons, int32_t separators) const {
  const int64_t wanted = int64_t{buttons} + separators;
  return wanted <= static_cast<int64_t>(capacity - order_.size());
}

bool ToolBar::test(ToolButton &button) const {
  if (button.ownTest) return button.ownTest();
  if (button.test.callback == nullptr) return true;
  return callPlugin({button.test.owner, "the enabled test of a button"},
                    tavrel::functionOf<tavrel::ButtonTestProc>(button.test.callback), handles_.handle(&button),
                    button.test.clientData) != 0;
}

void ToolBar::press(ToolButton &button) const {
  if (button.ownAction) return button.ownAction();
  if (button.action.callback == nullptr) return;
  callPlugin({button.action.owner, "the action of a button"},
             tavrel::functionOf<tavrel::ButtonActionProc>(button.action.callback), handles_.handle(&button),
             button.action.clientData);
}

void ToolBar::updateStates() {
  // A test that calls this function again would not terminate.
  if (updating_) return;
  {
    struct Updating {
      bool &flag;
      ~Updating() { flag = false; }
    } const updating{updating_ = true};
    const std::vector<ToolButton *> asked = order_;
    for (ToolButton *button : asked)
      button->enabled = test(*button);
  }
  notify();
}

void ToolBar::notify() const {
  if (listener) listener();
}

} // namespace host
