// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Helpers for Motif.
#include "viewer/window/motif.h"

#include <Xm/TextF.h>

#include <cstdio>
#include <exception>

#include "host/view/toolbar.h"

namespace viewer {
namespace {

void react(Widget /*widget*/, XtPointer reaction, XtPointer data) {
  const auto *call = static_cast<const XmAnyCallbackStruct *>(data);
  // A copy: the reaction may destroy its widget.
  const Reaction kept = *static_cast<Reaction *>(reaction);
  guarded([&] { kept(call == nullptr ? nullptr : call->event); });
}

void forget(Widget /*widget*/, XtPointer reaction, XtPointer /*data*/) { delete static_cast<Reaction *>(reaction); }

} // namespace

void guarded(const std::function<void()> &function) {
  try {
    function();
  } catch (const std::exception &error) {
    std::fprintf(stderr, "tavrel: %s\n", error.what());
  }
}

void whenever(Widget widget, const char *callback, Reaction reaction) {
  auto *kept = new Reaction(std::move(reaction));
  XtAddCallback(widget, const_cast<char *>(callback), react, kept);
  XtAddCallback(widget, const_cast<char *>(XmNdestroyCallback), forget, kept);
}

void setLabel(Widget label, const std::string &utf8) {
  const MotifString text(utf8);
  XtVaSetValues(label, XmNlabelString, static_cast<XmString>(text), nullptr);
}

void setSensitive(Widget widget, bool sensitive) {
  if ((XtIsSensitive(widget) != 0) != sensitive) XtSetSensitive(widget, sensitive ? True : False);
}

std::string textOf(Widget field) {
  char *text = XmTextFieldGetString(field);
  std::string copy = text == nullptr ? "" : text;
  XtFree(text);
  return copy;
}

uint32_t modifiersOf(const XEvent *event) {
  if (event == nullptr || (event->type != ButtonPress && event->type != ButtonRelease)) return 0;
  constexpr struct {
    unsigned state;
    uint32_t key;
  } keys[] = {
      {ShiftMask, tavrel::modifierShift}, {ControlMask, tavrel::modifierControl}, {Mod1Mask, tavrel::modifierAlt}};
  uint32_t held = 0;
  for (const auto &[state, key] : keys)
    if ((event->xbutton.state & state) != 0) held |= key;
  return held;
}

Place placeOf(Widget widget) {
  Position x = 0, y = 0;
  Dimension width = 0, height = 0;
  XtTranslateCoords(widget, 0, 0, &x, &y);
  XtVaGetValues(widget, XmNwidth, &width, XmNheight, &height, nullptr);
  return {x, y, width, height};
}

} // namespace viewer
