// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The utility library: allocation, bounded copies, and strings of two kinds.
//
// A byte string ends in one zero byte. A UCS string starts with the mark 0xFE 0xFF, goes on in 16-bit big-endian
// units and ends in a zero unit; the mark is part of it. Sizes and lengths are in bytes. No pointer may be null unless
// its function's comment says so.
#pragma once

#include <cstdarg>

#include "tavrel/types.h"

// Memory (miMemory.cpp). The first four take from the host and are freed there; the TSSure ones raise error 2 when
// memory is exhausted and return null only if the raise comes back.

void *TScalloc(uint32_t count, uint32_t size);
void *TSSureMalloc(uint32_t size);
void *TSSureCalloc(uint32_t count, uint32_t size);
/// A null block is a new one, zero-filled.
void *TSSureRealloc(void *block, uint32_t size);
/// Frees a block from malloc, unless it is null.
void TSIfNotNullFree(void *block);
/// A copy made with malloc; null when memory is exhausted.
void *miCopyMem(const void *source, uint32_t size);
char *miCopyStrImpl(const char *string); ///< likewise; null for null

void *miMemsetSAFE(void *block, int byte, uint32_t size);
void *miMemcpySAFE(void *destination, const void *source, uint32_t size);
void *miMemmoveSAFE(void *destination, const void *source, uint32_t size);

// Strings (miUtils.cpp).

char *miStrcpy_localSAFE(char *destination, const char *source);
char *miStrcat_localSAFE(char *destination, const char *source);
int32_t miSprintfSAFE(char *destination, const char *format, ...);
int32_t miVsprintfSAFE(char *destination, const char *format, va_list arguments);
/// Always terminated within `size`; returns the length of the text without truncation.
int32_t miSnprintfSAFE(char *destination, uint32_t size, const char *format, ...);
int32_t miVsnprintfSAFE(char *destination, uint32_t size, const char *format, va_list arguments);
char *miStrchr(const char *string, int c);
char *miStrrchr(const char *string, int c);
char *miStrstr(const char *string, const char *part);
/// A number beyond 32 bits is clamped, so that the result is the same on every machine.
int32_t miAtoi(const char *string);
int32_t miAtol(const char *string);

/// Whether a string carries the mark.
bool miIsUCS(const char *string);
/// Without the terminator; the mark counts.
uint32_t miStrlen(const char *string);

/// -1, 0, 1 for two UCS strings, whose units compare as numbers; else the result of strcmp, strcasecmp, strncmp. In the
/// first two `b` may be null, and then `a` is the greater.
int32_t miStrcmp(const char *a, const char *b);
int32_t miStricmp(const char *a, const char *b);
int32_t miStrncmp(const char *a, const char *b, uint32_t n);
/// Compares UCS strings from the mark on, at most n bytes; -1, 0, 1.
int32_t miUCSStrncmp(const char *a, const char *b, uint32_t n);
/// Either may be null; two nulls are equal.
tavrel::Bool16 miStrEq(const char *a, const char *b);

/// Returns the destination for a byte string, the position after the copied terminator for a UCS string.
char *miStrcpySAFE(char *destination, const char *source);
/// The destination decides which kind of string both are.
char *miStrcatSAFE(char *destination, const char *source);
/// 1 when the complete string fits into `size` bytes; else 0, and the string is truncated and terminated. A size too
/// small for the terminator writes nothing.
tavrel::Bool16 miStrncpySAFE(char *destination, const char *source, uint32_t size);
/// 1 when the string is shorter than n; else 0, and n bytes are copied without a terminator. A shorter string is copied
/// with its complete terminator: that of a UCS string may end one byte beyond an odd n.
tavrel::Bool16 miStrncpy_StandardSAFE(char *destination, const char *source, uint32_t n);
/// 1 when both strings fit into `size` bytes; else 0, and the result is truncated and terminated. The truncation counts
/// bytes, also in a UCS string, which may then be unusable.
tavrel::Bool16 miStrncatSAFE(char *destination, const char *source, uint32_t size);

/// Whether a part of `length` bytes occurs at position `at` of a string that ends at `end`. An empty part never occurs.
bool miOccursAt(const char *at, const char *end, const char *part, uint32_t length);

/// Builds into `destination`, which must not overlap, the source with every `find` replaced (by nothing for null).
char *miReplaceStrSAFE(char *destination, const char *source, const char *find, const char *replacement);
/// The same with lengths in bytes; a UCS source is searched by units. The result ends in two zero bytes.
char *miReplaceStrExSAFE(char *destination, const char *source, const char *find, uint32_t findLength,
                         const char *replacement, uint32_t replacementLength);
