// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// Parses the parameters after '#' in a document's address ("page=3&xml=hits.xml").
//
// Makes no host calls and allocates nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace brz {

/// The parameters: a page, counted from 1, and a highlight file.
inline constexpr char pageParameter[] = "page", hitsParameter[] = "xml";

/// The value of a parameter, not decoded; of several with that name, the last one. Names are compared in ASCII, without
/// case.
std::optional<std::string_view> valueOf(std::string_view parameters, std::string_view name);

/// The number of a page, from 1, or nothing if the value is not a page number. A number that is too large is clamped.
std::optional<int32_t> pageNumberOf(std::string_view value);

/// Whether the value is the address of a remote file: "http:", "https:".
bool isRemote(std::string_view value);

/// Writes the file name of a value, with a terminator: removes "file://" and "file://localhost" and decodes percent
/// encoding. False if it does not fit into `size` bytes.
bool decodeFile(std::string_view value, char *file, size_t size);

/// Whether a file begins with "<?xml", after an optional byte order mark and white space.
bool hasXmlDeclaration(std::string_view content);

/// The name after the last slash; the complete text if nothing follows the slash.
const char *baseName(const char *file);

/// Replaces every byte that is not part of a printable UTF-8 character by a question mark.
void makePrintable(char *text);

} // namespace brz
