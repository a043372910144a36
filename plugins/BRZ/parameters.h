// What stands behind '#' in a document's address ("page=3&xml=hits.xml"), and what its values mean.
//
// No host call is made here, and nothing lies on the heap.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace brz {

/// The value of a parameter as it stands there, of several of that name the last one's. Names compare in ASCII, without
/// case.
std::optional<std::string_view> valueOf(std::string_view parameters, std::string_view name);

/// The number of a page, from 1, or nothing where the value is none. What is too large becomes the largest.
std::optional<int32_t> pageNumberOf(std::string_view value);

/// Whether the value leads to another machine: "http:", "https:".
bool isRemote(std::string_view value);

/// The file that a value names, with a terminator: "file://", "file://localhost" and percent encoding are undone. False
/// where it does not fit into `size` bytes.
bool decodeFile(std::string_view value, char *file, size_t size);

/// Whether a file says of itself that it is XML: "<?xml", behind a byte order mark and blanks.
bool callsItselfXml(std::string_view content);

/// The name behind the last slash; all of it where nothing stands there.
const char *baseName(const char *file);

/// Puts a question mark for every byte that belongs to no printable character of UTF-8.
void makePrintable(char *text);

} // namespace brz
