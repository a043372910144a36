// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Helpers for Motif: strings that free themselves, and callbacks that are C++ functions.
#pragma once

#include <Xm/Xm.h>

#include <cstdint>
#include <functional>
#include <string>

#include "viewer/model/place.h"

namespace viewer {

/// A Motif string, made from UTF-8.
class MotifString {
public:
  explicit MotifString(const std::string &utf8) : string_(XmStringCreateLocalized(const_cast<char *>(utf8.c_str()))) {}
  ~MotifString() { XmStringFree(string_); }
  MotifString(const MotifString &) = delete;
  MotifString &operator=(const MotifString &) = delete;
  operator XmString() const { return string_; } // NOLINT: conversion is its purpose

private:
  XmString string_;
};

/// A callback. Its argument is the event that caused it, or null.
using Reaction = std::function<void(const XEvent *event)>;

/// Calls the function and prints what it throws as a line on standard error: no exception may propagate through the
/// toolkit, which is written in C.
void guarded(const std::function<void()> &function);

/// Calls the reaction at every such callback of the widget, until the widget is destroyed.
void whenever(Widget widget, const char *callback, Reaction reaction);

void setLabel(Widget label, const std::string &utf8);
void setSensitive(Widget widget, bool sensitive);
/// The text of a text field, UTF-8.
std::string textOf(Widget field);
/// The modifier keys (tavrel::ModifierKey) that are held at the event of a mouse button; 0 for other events and null.
uint32_t modifiersOf(const XEvent *event);
/// The position of a widget on its screen, and its size.
Place placeOf(Widget widget);

} // namespace viewer
