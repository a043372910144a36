// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// Host operations that may fail, in an exception frame of their own.
#pragma once

#include <memory>

/// Calls body(argument); false if a host operation in it raised. The body has no object with a destructor.
bool attempt(void (*body)(void *), void *argument);

/// The same for a lambda without objects that have destructors.
template <typename Body> bool attempt(Body body) {
  return attempt([](void *memory) { (*static_cast<Body *>(memory))(); }, std::addressof(body));
}
