// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/menuentry.h"

#include <Xm/PushB.h>

#include "viewer/window/actions.h"
#include "viewer/window/motif.h"

namespace viewer {

::Widget addEntry(::Widget menu, const std::string &name, const std::string &label) {
  ::Widget entry = XtCreateManagedWidget(name.c_str(), xmPushButtonWidgetClass, menu, nullptr, 0);
  setLabel(entry, label);
  return entry;
}

std::string showAccelerator(::Widget entry) {
  char *key = nullptr;
  XtVaGetValues(entry, XmNaccelerator, &key, nullptr);
  if (key == nullptr) return {};
  std::string name = keyName(key);
  const MotifString text(name);
  XtVaSetValues(entry, XmNacceleratorText, static_cast<XmString>(text), nullptr);
  XtFree(key); // a copy
  return name;
}

} // namespace viewer
