// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The platform layer: texts, labels and bitmaps, which users can override; alerts; the shell widget; and an assertion
// report.
#pragma once

#include <cstdarg>

#include "tavrel/types.h"

// Identifiers of the built-in strings that the plug-in uses itself.
inline constexpr uint16_t stringHelpNext = 3; ///< the Next button's help; its key is "helpPrev"
inline constexpr uint16_t stringHelpPrev = 4; ///< the Prev button's help; its key is "helpNext"
inline constexpr uint16_t stringYes = 5;
inline constexpr uint16_t stringNo = 6;
inline constexpr uint16_t stringWrongVersion = 7;

// Identifiers of the built-in bitmaps.
inline constexpr uint16_t bitmapNext = 0;
inline constexpr uint16_t bitmapPrev = 1;

// Strings and labels. A string's pointer is valid as long as the plug-in is loaded, and the caller does not free it.

/// The string of an identifier, or "Bad String ID".
const char *mdGetStringPtr(uint16_t id);

/// Copies the string, truncated to `size` bytes with its NUL, but not within a character of the locale. A size of 0
/// copies the complete string. Returns the buffer.
char *mdGetString(uint16_t id, char *buffer, uint16_t size);

/// mdGetString without menu mnemonics ('&'). Returns the buffer.
char *mdGetButtonString(uint16_t id, char *buffer, uint16_t size);

/// The label of a button: 0 OK, 1 Cancel, 2 Yes, 3 No.
const char *GetButtonString(uint16_t id);

// Bitmaps.

/// An X pixmap of depth 1, or 0. The caller does not free it.
tavrel::Bitmap mdGetBitmap(uint16_t id);

/// Does nothing: bitmaps stay cached. Returns its argument.
tavrel::Bitmap mdReleaseBitmap(tavrel::Bitmap bitmap);

/// The height of a bitmap in pixels, 0 for none. Bitmaps are square.
uint32_t mdGetBitmapSize(tavrel::Bitmap bitmap);

/// A signature, a version and two bitmaps: five 32-bit words on every machine.
struct IconBundle {
  uint32_t signature[2]; ///< "TVICONBU", one character per byte, the first the most significant
  uint32_t version;
  uint32_t bitmap[2];
};
static_assert(sizeof(IconBundle) == 20);

/// A new bundle, to be freed with mdReleaseIconBundle; null when memory is exhausted. It is lost when the lookup of a
/// bitmap raises.
IconBundle *mdGetIconBundle(uint16_t id1, uint16_t id2);
void mdReleaseIconBundle(IconBundle *bundle);

// Alerts: modal, answered through the host. `kind` 0 error, 1 note, 2 question, 3 note; `buttons` as below.

enum mdAlertButtons : int32_t { mdOK = 0, mdOKCancel = 1, mdYesNo = 2, mdYesNoCancel = 3 };
enum mdAlertResult : int32_t {
  mdResultUnknown = 0,
  mdResultOK = 1,
  mdResultCancel = 2,
  mdResultNo = 3,
  mdResultYes = 4
};

/// Shows the string of that identifier, as a printf format for the further arguments. Texts are truncated to 2049
/// bytes.
int32_t mdAlert(int32_t kind, int32_t buttons, uint32_t stringId, ...);
/// The same; the owner is not used.
int32_t mdAlertEx(void *owner, int32_t kind, int32_t buttons, uint32_t stringId, ...);
/// The same with the format itself.
int32_t mdAlertStr(void *owner, int32_t kind, int32_t buttons, const char *format, ...);
int32_t mdAlertDoIt(void *owner, int32_t kind, int32_t buttons, const char *format, va_list arguments);
/// The same with the finished text.
int32_t mdAlertText(void *owner, int32_t kind, int32_t buttons, const char *text);

/// Writes "Assert EXPRESSION in file FILE, line LINE." to standard error and returns.
void mdAssert(const char *expression, const char *file, uint16_t line);

// The shell: the widget against which the resources are looked up.

/// Makes the shell, one pixel in the middle of the screen, never mapped; null when the host has no top-level widget.
/// It is a pop-up child of that widget, or an independent shell where TAVREL_PLUGIN_PARENTLESS_ROOT is set.
tavrel::Widget mdInitUtils();

/// Calls mdInitUtils and stores the shell in the global data. 0 without a shell.
tavrel::Bool16 mdInit();

/// Destroys the shell that the global data holds, if there is one.
void mdTerm();

// Bytes.

/// Swaps the bytes of each pair; an odd last byte is not copied. Returns the source after the last pair.
const char *mdSwab(const char *source, char *destination, int32_t count);

/// Compares without regard to case: -1, 0 or 1. Bytes from 0x80 on sort before all letters.
int32_t mdStricmp(const char *a, const char *b);

/// Does nothing. 1.
tavrel::Bool16 mdCommonInit();
