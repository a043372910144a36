// Text helpers of the utility library: white space, paths, fields, time, rounding. Strings are of the two kinds of
// miUtils.h and are changed in place; no pointer may be null but where it says so.
#pragma once

#include "tavrel/types.h"

// White space (miText.cpp, miTextUCS.cpp).

/// Exactly space, tab, line feed, vertical tab, form feed and carriage return.
tavrel::Bool16 miIsspace(uint8_t byte);
/// Looks at the low four bits of a one-byte unit.
tavrel::Bool16 miUCSIsSpace(uint16_t unit);
/// Takes white space off both ends. 1 when something is left.
tavrel::Bool16 miStrip(char *string);
/// Takes all white space out. 1 when something is left; 0 for null.
tavrel::Bool16 miStripAll(char *string);
/// As miStrip. What is moved to the front ends at two zero bytes at any offset, also where they are halves of two
/// units; what follows these stays where it is.
tavrel::Bool16 miUCSStrip(char *string);
tavrel::Bool16 miUCSStripAll(char *string);

/// Replaces a byte everywhere. Returns the string's end.
char *miTranslate(char *string, char from, char to);

/// How often the part occurs, without overlaps, from the left.
uint32_t miCountStr(const char *string, const char *part);

/// Takes "/../" with the step before it, then "/./", out of a path. Returns the path; one that begins with "/../" is
/// left as it is.
char *miSubstituteDots(char *path);

/// Copies the text between two marks, each of which may be null, at most `max` bytes of it, into `out` of max + 1
/// bytes. Returns where to go on, which may lie beyond the text's end where the copy was cut; null for a null source
/// and where `start` does not occur.
const char *miSnarf(const char *source, const char *start, const char *end, char *out, uint32_t max);

/// The next comma-separated field of a line from an index on, which moves behind it. Quotes are taken off and
/// backslashes resolved; with `keepEscapes`, only before a comma. The caller frees it with TavrelSupport::Free. It is
/// lost when the last resizing raises.
char *miSnarfEntry(const char *line, uint32_t *position, tavrel::Bool16 keepEscapes);

/// The local time by a format of strftime, or as ctime has it for null, without a line feed. Overwritten by the next
/// call.
const char *miStrftime(const char *format);

// To whole numbers; the argument must be within 32 bits.
int32_t miFloor(double value);
int32_t miCeil(double value);
/// Halves go towards zero.
int32_t miRoundToInt(double value);
