// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// The types that cross the interface between the host viewer and its plug-ins: handles, atoms, fixed point,
// rectangles, colours, text ranges. Pointers and handles are pointer-sized; everything else has the width that its
// type names. Nothing here depends on X or on a PDF library.
#pragma once

#include <cstddef>
#include <cstdint>

struct _WidgetRec; // the X toolkit's name for what a `Widget` points to

namespace tavrel {

/// A 16-bit yes or no: 1 or 0.
using Bool16 = uint16_t;

/// A name known to the host: the same name always has the same atom, and 0 is never one.
using Atom = uint16_t;

/// The number of a plug-in; the set-up record contains it.
using ExtensionID = uint32_t;

/// Any entry point, stored without its type. hft.h has the only cast between it and a function.
using Entry = void (*)();

/// A function that the host may call in a plug-in. The handle is itself a callable entry point.
using Callback = Entry;

/// A host function table: an array of entry points, an operation being a fixed index.
using HFT = Entry *;

// Handles name objects of the host. A handle is a number in a pointer type, given out once: after its object has
// been destroyed, the handle is an error (errBadHandle) and never names another object.
using HFTServer = struct HFTServerRec *;         ///< provides a table by name
using Doc = struct DocRec *;                     ///< a viewer document: an open document and its window
using ModelDoc = struct ModelDocRec *;           ///< the document model of a viewer document
using Page = struct PageRec *;                   ///< one page of a model document, to be closed after use
using TextSelection = struct TextSelectionRec *; ///< words or characters of one page (DocModel.h says how long)
using WordFinder = struct WordFinderRec *;       ///< the words of a document's pages
using Word = struct WordRec *;                   ///< a word; lives as long as its page is acquired
using PageView = struct PageViewRec *;           ///< the part of a viewer document's window that shows a page
using ToolBar = struct ToolBarRec *;             ///< the application's tool bar
using ToolButton = struct ToolButtonRec *;       ///< a button, on the tool bar or off it

// Not handles of the host: the window system's own.
using Widget = _WidgetRec *; ///< an X toolkit widget
using Bitmap = uintptr_t;    ///< an X pixmap of depth 1, or 0

/// Signed 16.16 fixed point: 0x00010000 is 1.0.
using Fixed = int32_t;
inline constexpr Fixed fixedOne = 0x00010000;

/// A rectangle in 16.16. In page space (points, y upwards) and wherever the host normalises one, left <= right and
/// bottom <= top.
struct FixedRect {
  Fixed left, top, right, bottom;
};

/// x' = a x + c y + h, y' = b x + d y + v, all in 16.16.
struct FixedMatrix {
  Fixed a, b, c, d, h, v;
};

/// A rectangle in device units (pixels of the zoomed page, origin at its upper left, y downwards).
struct DeviceRect {
  int16_t left, top, right, bottom;
};

/// A run of characters or of words on a page: where it starts and how many it has, both in the same unit.
struct TextRange {
  uint16_t pos;
  uint16_t len;
};

/// A colour: the colour space (1 is RGB, which uses three components) and its components in 16.16. A component of
/// 1.0 is full; if any is above 1.0, all of them are on the scale 0 to 255.
struct ColorValue {
  uint8_t space;
  Fixed component[4];
};
inline constexpr uint8_t colorSpaceRGB = 1;

static_assert(sizeof(FixedRect) == 16 && sizeof(FixedMatrix) == 24 && sizeof(DeviceRect) == 8);
static_assert(sizeof(TextRange) == 4, "text ranges go to the host as an array");
static_assert(sizeof(ColorValue) == 20 && offsetof(ColorValue, component) == 4);

} // namespace tavrel
