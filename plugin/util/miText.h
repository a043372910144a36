// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Text helpers of the utility library: white space, paths, fields, time, rounding. Strings are of the two kinds of
// miUtils.h and are changed in place; no pointer may be null unless its function's comment says so.
#pragma once

#include "tavrel/types.h"

// White space (miText.cpp, miTextUCS.cpp).

/// Exactly space, tab, line feed, vertical tab, form feed and carriage return.
tavrel::Bool16 miIsspace(uint8_t byte);
/// Tests the low four bits of a unit below 0x100; other units are no white space.
tavrel::Bool16 miUCSIsSpace(uint16_t unit);
/// Removes white space from both ends. 1 when something is left.
tavrel::Bool16 miStrip(char *string);
/// Removes all white space. 1 when something is left; 0 for null.
tavrel::Bool16 miStripAll(char *string);
/// As miStrip. The text that is moved to the front ends at two zero bytes at any offset, also where they are halves of
/// two units; the bytes after these are not moved.
tavrel::Bool16 miUCSStrip(char *string);
tavrel::Bool16 miUCSStripAll(char *string);

/// Replaces a byte everywhere. Returns the string's end.
char *miTranslate(char *string, char from, char to);

/// How often the part occurs: without overlaps, counted from the left.
uint32_t miCountStr(const char *string, const char *part);

/// Removes every "/../" with the segment before it, then every "/./", from a path. Returns the path; one that begins
/// with "/../" is left as it is.
char *miSubstituteDots(char *path);

/// Copies the text between two marks, each of which may be null, at most `max` bytes of it, into `out` of max + 1
/// bytes. Returns the position to continue at, which may lie beyond the text's end where the copy was truncated; null
/// for a null source and where `start` does not occur.
const char *miSnarf(const char *source, const char *start, const char *end, char *out, uint32_t max);

/// The next comma-separated field of a line from an index on, which moves past the field and its comma. Quotes are
/// removed and backslashes resolved; with `keepEscapes`, a backslash is resolved only before a comma. The caller frees
/// the field with TavrelSupport::Free. The field is lost when the last reallocation raises.
char *miSnarfEntry(const char *line, uint32_t *position, tavrel::Bool16 keepEscapes);

/// The local time in a format of strftime, or in that of ctime for null, without a line feed. Overwritten by the next
/// call.
const char *miStrftime(const char *format);

// To integers; the argument must be within 32 bits.
int32_t miFloor(double value);
int32_t miCeil(double value);
/// Halves are rounded towards zero.
int32_t miRoundToInt(double value);
