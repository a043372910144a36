// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// Checks highlight files: their size, and their first bytes. Uses neither the host nor other plug-ins; the commands of
// tools/ are built with the same source.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace brz {

/// How large a highlight file may be, in megabytes of 2^20 bytes; the environment may name another limit.
inline constexpr uint32_t usualLimit = 64, highestLimit = 4095;
inline constexpr char limitVariable[] = "TAVREL_HITS_LIMIT";
inline constexpr size_t bytesPerMegabyte = size_t{1} << 20;

/// The limit that a text gives, in megabytes; the usual limit for null and for anything but a number from 1 to the
/// highest limit.
uint32_t limitOf(const char *text);

/// The reason why a file is not a highlight file ("this is a PDF, not a highlight file"), or null if it may be one. A
/// file that contains "<highlights" may be one.
const char *otherKind(std::string_view content);

/// Whether the end is missing of a list of highlights or of the body. The reader of such a file may mark nothing.
bool isTruncated(std::string_view content);

/// Whether a file with this beginning is a highlight file: markup with the tags of a body and a list of highlights.
bool looksLikeHighlights(std::string_view beginning);

} // namespace brz
