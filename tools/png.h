// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Images as PNG files.
#pragma once

#include <cstdio>
#include <optional>
#include <string>

#include "host/document/image.h"

namespace tools {

/// Writes the image in 8-bit RGB, with that many dots per inch. False if the PNG library reports an error; the caller
/// checks the stream for errors.
bool writePng(FILE *stream, const host::Image &image, double dpi);

/// The bytes of such a file, or nothing if the PNG library reports an error.
std::optional<std::string> pngOf(const host::Image &image, double dpi);

} // namespace tools
