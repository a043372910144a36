// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The status line: the viewer's message on the left, the plug-ins' texts on the right.
#pragma once

#include <Xm/Xm.h>

#include <string>

namespace viewer {

class Toolkit;

class StatusBar {
public:
  StatusBar(const Toolkit &toolkit, ::Widget parent);
  StatusBar(const StatusBar &) = delete;
  StatusBar &operator=(const StatusBar &) = delete;

  ::Widget widget() const { return bar_; }
  /// A long text of the plug-ins is truncated.
  void show(const std::string &message, const std::string &plugins);

private:
  ::Widget bar_, message_, plugins_;
  std::string messageText_, pluginText_;
};

} // namespace viewer
