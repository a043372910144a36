// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The window system as plug-ins see it: the application's top-level widget, and texts and images that a user can
// override in the X resource database.
#pragma once

#include <memory>

#include "host/kernel/current.h"
#include "tavrel/types.h"

namespace host {

class WindowSystem : public Current<WindowSystem> {
public:
  /// The widget outlives it; null where there is no window system, and then there are only built-in values.
  explicit WindowSystem(tavrel::Widget topLevel);
  ~WindowSystem();

  tavrel::Widget topLevel() const;
  /// Registers a class; its lines apply where the user sets nothing. `lines` is null or ends with a null.
  void registerClass(const char *className, const char *const *lines);
  /// The text of a key, or `builtIn` itself. It is looked up in the class of the widget or of its nearest parent that
  /// has one: its name, or the class that a plug-in gave its application shell. Where none of these is a registered
  /// class, in all classes in order of registration. A text lives as long as the window system.
  const char *text(tavrel::Widget widget, const char *key, const char *builtIn);
  /// The bitmap from the file that the resource names, looked up like a text, or from the bits, or 0. Equal requests of
  /// a class get the same bitmap, which lives as long as the window system.
  tavrel::Bitmap bitmap(tavrel::Widget widget, const char *name, const char *className, const unsigned char *bits,
                        uint32_t width, uint32_t height);

private:
  struct State;
  std::unique_ptr<State> state_;
};

} // namespace host
