// What may be read as a highlight file: how much of it, and what is none. Knows neither the host nor other plug-ins;
// the command that hands on highlight files itself is built with the same source.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace brz {

/// How large a highlight file may be, in megabytes of 2^20 bytes; the environment may name another limit.
inline constexpr uint32_t usualLimit = 64, highestLimit = 4095;
inline constexpr char limitVariable[] = "TAVREL_HITS_LIMIT";
inline constexpr size_t bytesPerMegabyte = size_t{1} << 20;

/// The limit that a text names, in megabytes; the usual one for null and for what is no number from 1 to the highest.
uint32_t limitOf(const char *text);

/// What a file is instead of a highlight file ("is a PDF, not a highlight file"), or null where it may be one. Whatever
/// contains "<highlights" may.
const char *otherKind(std::string_view content);

/// Whether text that begins like this is a highlight file: markup with a body and a list of highlights in it.
bool looksLikeHighlights(std::string_view beginning);

} // namespace brz
