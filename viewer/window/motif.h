// Small helps for Motif: strings that free themselves, and callbacks that are functions of C++.
#pragma once

#include <Xm/Xm.h>

#include <functional>
#include <string>

namespace viewer {

/// A text as Motif has it, from UTF-8.
class MotifString {
public:
  explicit MotifString(const std::string &utf8) : string_(XmStringCreateLocalized(const_cast<char *>(utf8.c_str()))) {}
  ~MotifString() { XmStringFree(string_); }
  MotifString(const MotifString &) = delete;
  MotifString &operator=(const MotifString &) = delete;
  operator XmString() const { return string_; } // NOLINT: that is what it is for

private:
  XmString string_;
};

/// What a callback is told about the event that caused it; null where none did.
using Reaction = std::function<void(const XEvent *event)>;

/// Calls it and has what it throws, memory exhausted say, end in a line on standard error: nothing may fly through the
/// toolkit, which is written in C.
void guarded(const std::function<void()> &deed);

/// Calls the reaction at every such callback of the widget, for as long as the widget lives.
void whenever(Widget widget, const char *callback, Reaction reaction);

void setLabel(Widget label, const std::string &utf8);
void setSensitive(Widget widget, bool sensitive);
/// The text of a text field, UTF-8.
std::string textOf(Widget field);
/// The origin of a widget on its screen.
struct Place {
  int x, y, width, height;
};
Place placeOf(Widget widget);

} // namespace viewer
