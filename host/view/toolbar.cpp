// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The tool bar's model. The application owns one; a window shows it, the TavrelView table changes it.
#include "host/view/toolbar.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace host {

ToolBar::ToolBar(Atoms &atoms) {
  for (const OwnButton &own : ownButtons()) {
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
  changed();
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
  changed();
}

void ToolBar::detach(ToolButton &button) {
  if (std::erase(order_, &button) > 0) changed();
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
  changed();
}

void ToolBar::changed() const {
  if (listener) listener();
}

} // namespace host
