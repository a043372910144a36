// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The built-in resources and their caches, shared by the sources of this directory and their tests.
#pragma once

#include "tavrel/types.h"

/// A text by its resource key.
struct StringEntry {
  const char *key;
  const char *value;
};

/// X11 bitmap data by its resource name and class.
struct BitmapEntry {
  const char *name;
  const char *className;
  const unsigned char *bits; ///< rows from the top, least significant bit leftmost
  uint32_t width, height;    ///< in pixels
};

inline constexpr uint16_t stringCount = 21, buttonStringCount = 4, bitmapCount = 2;

extern const StringEntry stringData[stringCount];
extern const StringEntry buttonStringData[buttonStringCount];
extern const BitmapEntry bitmapData[bitmapCount];

// Filled at the first use of an entry and never cleared. The strings and bitmaps belong to the host or to the tables.
extern const char *stringCache[stringCount];
extern const char *buttonStringCache[buttonStringCount];
extern tavrel::Bitmap bitmapCache[bitmapCount];

/// The plug-in's shell, null until mdInitUtils.
extern tavrel::Widget rootWidget;
