// A file read whole. One at a time is kept, in a static: a host call that raises skips whoever would free it, and then
// the next file does.
#pragma once

#include <string_view>

namespace brz {

/// Reads a file and lets the one before go. 0, or what went wrong, as errno says it: EISDIR for a folder, ENOTSUP for a
/// device or a pipe, EFBIG above 256 MiB. The content is borrowed until the next call of either function.
int readFile(const char *file, std::string_view *content);

/// Lets it go.
void releaseFile();

} // namespace brz
