// A file read completely, up to a limit. One at a time is kept, in a static: a host call that raises skips the caller
// that would free it, and then the next file does.
#pragma once

#include <string_view>

namespace brz {

/// Reads a file of at most `limit` bytes and releases the one before. Returns 0, or an error as in errno: EISDIR for a
/// directory, ENOTSUP for a device or a pipe, EFBIG above the limit. The content is borrowed until the next call of
/// either function.
int readFile(const char *file, size_t limit, std::string_view *content);

/// Releases it.
void releaseFile();

} // namespace brz
