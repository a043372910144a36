// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// The "Desktop" table, version 0x00040000: the window system. Plug-ins look their texts and images up here, so that a
// user can override them in the X resource database (`Highlight.helpNext: ...`). Tags: see Kernel.h.
#pragma once

#include "tavrel/hft.h"

extern tavrel::HFT gDesktopHFT;

// clang-format off
#define DESKTOP_OPERATIONS(OPERATION)                                                                                  \
  /* The application's top-level widget, or null. [no-raise] */                                                        \
  OPERATION(0, GetTopLevelWidget, Widget())                                                                            \
  /* Registers a resource class with resource lines that apply where the user sets nothing; a null ends the list.      \
     [raises] */                                                                                                       \
  OPERATION(1, RegisterResourceClass, void(const char *className, const char *const *fallbackLines))                   \
  /* The resource of that key, or the given default. It is looked up in one registered class: the one whose name the   \
     widget or its nearest parent has, or that is the application class of a shell without parent among them; without  \
     such a class, in all of them. [raises] [borrowed until the host ends] */                                          \
  OPERATION(2, GetResourceString, const char *(Widget widget, const char *key, const char *builtIn))                   \
  /* The bitmap file that the resource names, looked up likewise, or the given X11 bitmap data as a pixmap of depth 1, \
     or 0. [raises] [borrowed until the host ends] */                                                                  \
  OPERATION(3, GetResourceBitmap, Bitmap(Widget widget, const char *name, const char *className,                       \
                                         const unsigned char *bits, uint32_t width, uint32_t height))
// clang-format on

namespace Desktop {
using namespace tavrel;
#define DESKTOP_DECLARE(...) TAVREL_OPERATION(gDesktopHFT, __VA_ARGS__)
DESKTOP_OPERATIONS(DESKTOP_DECLARE)
#undef DESKTOP_DECLARE
inline constexpr ListedOperation operations[] = {DESKTOP_OPERATIONS(TAVREL_LISTED)};
} // namespace Desktop
