// Images as PNG files.
#pragma once

#include <cstdio>
#include <optional>
#include <string>

#include "host/document/image.h"

namespace tools {

/// Writes the image, of that many dots per inch, in 8-bit RGB. False when the PNG library gives up; errors of the
/// stream are the caller's to look for.
bool writePng(FILE *stream, const host::Image &image, double dpi);

/// The bytes of such a file, or nothing when the PNG library gives up.
std::optional<std::string> pngOf(const host::Image &image, double dpi);

} // namespace tools
