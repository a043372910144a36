// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The default resources as the toolkit reads them, without a display.
#pragma once

#include <X11/Xresource.h>

#include <string>
#include <vector>

#include "viewer/window/options.h"

namespace test {

/// A default resource, looked up by its name as Xt does it. The classes are arbitrary.
inline std::string resource(const std::string &name) {
  XrmInitialize();
  XrmDatabase database = XrmGetStringDatabase(viewer::defaultResources());
  const std::string classes = "Tavrel.A.B.C.D";
  char *type = nullptr;
  XrmValue value{};
  std::string result;
  if (XrmGetResource(database, name.c_str(), classes.c_str(), &type, &value) != 0) result = value.addr;
  XrmDestroyDatabase(database);
  return result;
}

/// The lines of a text, each of which ends with a line feed.
inline std::vector<std::string> lines(const std::string &text) {
  std::vector<std::string> result(1);
  for (const char c : text)
    if (c == '\n')
      result.emplace_back();
    else
      result.back() += c;
  result.pop_back();
  return result;
}

} // namespace test
