// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// Reads a file completely, up to a limit. One file at a time is kept, in a static variable: if a host call raises, the
// caller cannot free it, and the next file replaces it.
#pragma once

#include <string_view>

namespace brz {

/// Reads a file of at most `limit` bytes and releases the previous one. Returns 0, or an error as in errno: EISDIR for
/// a directory, ENOTSUP for a device or a pipe, EFBIG above the limit. The content is borrowed until the next call of
/// either function.
int readFile(const char *file, size_t limit, std::string_view *content);

/// Releases the file.
void releaseFile();

} // namespace brz
