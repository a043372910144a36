// The tool bar's model. The application owns one; a window shows it, the TavrelView table changes it.
#include "host/view/toolbar.h"

#include <algorithm>
#include <iterator>
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
    {"FitPage", "Shows the page as a whole"},
    {"FindDialog", "Finds a text"},
    {"FindAgainDialog", "Finds the text again"},
};

} // namespace

ToolBar::ToolBar(Atoms &atoms) {
  for (const OwnButton &own : ownButtons) {
    ToolButton &button = create(atoms.atom(own.name), 0);
    button.tip = own.tip;
    button.ofApplication = true;
    order_.push_back(&button);
  }
}

ToolButton *ToolBar::find(tavrel::Atom name) const {
  const auto found = std::find_if(order_.begin(), order_.end(), [=](auto *button) { return button->name == name; });
  return found == order_.end() ? nullptr : *found;
}

ToolButton &ToolBar::create(tavrel::Atom name, tavrel::Bitmap icon) {
  const auto taken =
      std::find_if(buttons_.begin(), buttons_.end(), [=](const auto &button) { return button->name == name; });
  if (taken != buttons_.end()) return **taken;
  ToolButton &button = *buttons_.emplace_back(std::make_unique<ToolButton>());
  button.name = name;
  button.icon = icon;
  handles_.add(&button);
  return button;
}

void ToolBar::insert(ToolButton &button, bool before, ToolButton *reference) {
  if (&button == reference) return;
  if (reference != nullptr && std::find(order_.begin(), order_.end(), reference) == order_.end())
    throw HostError(tavrel::errBadArgument, "the button to stand beside is not on the tool bar");
  const bool moves = std::erase(order_, &button) > 0;
  if (!moves && !hasSpace(1, 0)) throw HostError(tavrel::errBadArgument, "the tool bar is full");
  auto place = order_.end();
  if (reference != nullptr) place = std::find(order_.begin(), order_.end(), reference) + (before ? 0 : 1);
  order_.insert(place, &button);
  tell();
}

void ToolBar::detach(ToolButton &button) {
  if (std::erase(order_, &button) > 0) tell();
}

std::vector<ToolButton *> ToolBar::visible() const {
  std::vector<ToolButton *> buttons;
  std::copy_if(order_.begin(), order_.end(), std::back_inserter(buttons), [this](const ToolButton *button) {
    return !embedded || button->ofApplication || button->attributes.contains(tavrel::buttonAlsoInBrowser);
  });
  return buttons;
}

bool ToolBar::hasSpace(int32_t buttons, int32_t separators) const {
  const int64_t wanted = int64_t{buttons} + separators;
  return wanted <= static_cast<int64_t>(room - order_.size());
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
  // A test that asks for all tests again would never come to an end.
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
  tell();
}

void ToolBar::tell() const {
  if (listener) listener();
}

} // namespace host
