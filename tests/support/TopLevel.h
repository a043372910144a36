// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A host application's top-level widget, realised on a display, as the parent of the plug-in's shell.
//
// Includes no X header: those declare `Atom` and `Widget`, too, which conflict with the host interface's.
#pragma once

#include <functional>
#include <string>

struct _WidgetRec;
struct _XtAppStruct;

/// An application with one realised, unmapped shell, from the constructor to the destructor.
class TopLevel {
public:
  /// `display` is the name of an X display, `name` the shell's.
  explicit TopLevel(const std::string &display, const std::string &name = "tavrel");
  ~TopLevel();
  TopLevel(const TopLevel &) = delete;
  TopLevel &operator=(const TopLevel &) = delete;

  /// Null when the display could not be opened.
  _WidgetRec *widget() const { return widget_; }

private:
  _XtAppStruct *application_;
  _WidgetRec *widget_ = nullptr;
};

/// Calls `notify`, which must outlive the widget, when the widget is destroyed.
void onDestruction(_WidgetRec *widget, const std::function<void()> &notify);
