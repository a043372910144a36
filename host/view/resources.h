// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The resource classes that plug-ins have registered, and what the X resource database has for them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tavrel/types.h"

namespace host {

class Resources {
public:
  /// The widget outlives it; null where there is no window system, and then users set nothing.
  explicit Resources(tavrel::Widget topLevel);
  Resources(const Resources &) = delete;
  Resources &operator=(const Resources &) = delete;
  ~Resources();

  /// Registers a class; its lines apply where the user sets nothing. `lines` is null or ends with a null. Throws
  /// errBadArgument for a class without a name.
  void registerClass(const char *className, const char *const *lines);
  /// The name of the class of the widget or of its nearest parent that has one: by its name or, because a shell without
  /// a parent has the name of the program, by the class that its plug-in gave it. Empty where none has one.
  std::string classOf(tavrel::Widget widget) const;
  /// The value of a name in the widget's class; without one, in all classes in order of registration.
  std::optional<std::string> find(tavrel::Widget widget, const char *name, const char *classOfName) const;

private:
  struct Class;
  const Class *classNamed(const char *name) const;
  const Class *nearest(tavrel::Widget widget) const;

  tavrel::Widget topLevel_;
  std::vector<Class> classes_;
};

} // namespace host
