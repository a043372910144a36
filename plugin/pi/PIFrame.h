// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Protected regions: host calls that may raise, inside a frame of the plug-in. The rules are in tavrel/frame.h.
#pragma once

#include <type_traits>

#include "tavrel/frame.h"

/// The restore procedure of every frame of the plug-in: jumps back to it.
void RestorePlugInFrame(tavrel::ExceptionFrame *frame);

/// Opens a frame, runs body(argument) in it and closes the frame, whether or not the body raises. True when the body
/// returned; false when a host call raised. Then Kernel::GetExceptionCode returns the error.
bool PIProtectCall(void (*body)(void *), void *argument);

/// The same for a lambda that captures by reference. Neither the lambda nor any variable in it may need a destructor.
template <typename Body> bool PIProtect(Body body) {
  static_assert(std::is_trivially_destructible_v<Body>);
  return PIProtectCall([](void *argument) { (*static_cast<Body *>(argument))(); }, &body);
}
