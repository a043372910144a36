// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The connection to the window system of a program without a window.
#pragma once

#include "tavrel/types.h"

namespace host {

/// A top-level widget of its own application context, neither realised nor mapped. Throws HostError when the display
/// cannot be opened. From then on errors of the X server are reported on standard error.
class TopLevel {
public:
  TopLevel();
  ~TopLevel();
  TopLevel(const TopLevel &) = delete;
  TopLevel &operator=(const TopLevel &) = delete;
  tavrel::Widget widget() const { return widget_; }

private:
  tavrel::Widget widget_;
};

/// Has errors of the X server reported as lines on standard error; a lost connection ends the program.
void reportWindowErrors();

} // namespace host
