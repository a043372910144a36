// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Settings that the texts and labels depend on, for tests: the C library's locale, a stand-in for the shell.
#pragma once

#include <clocale>

#include "plugin/md/mdResources.h"
#include "tests/host/RecordingHost.h"

/// Sets a locale while it exists; then the locale of every program's start.
class ScopedLocale {
public:
  explicit ScopedLocale(const char *name) : set_(setlocale(LC_ALL, name) != nullptr) {}
  ~ScopedLocale() { setlocale(LC_ALL, "C"); }
  ScopedLocale(const ScopedLocale &) = delete;
  ScopedLocale &operator=(const ScopedLocale &) = delete;
  bool set() const { return set_; }

private:
  bool set_;
};

inline constexpr const char *singleByte = "C", *multiByte = "C.UTF-8";

/// Lookups are made from now on. The widget is only passed on, so any address is sufficient.
inline void pretendShell(RecordingHost &host) {
  rootWidget = host.named(reinterpret_cast<tavrel::Widget>(uintptr_t{0x8000}), "shell");
}
