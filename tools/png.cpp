// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Writes PNG files fast. A page of text is mostly white and repeats its letters: without filters, the quickest level
// compresses it as well as the slowest level with all filters, in a third of the time. writeRows() has the setjmp that
// the PNG library requires, and so no object with a destructor.
#include "tools/png.h"

#include <png.h>

#include <cmath>
#include <csetjmp>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

namespace tools {
namespace {

void asBytes(const uint32_t *pixels, size_t count, png_byte *bytes) {
  for (size_t i = 0; i < count; ++i, bytes += 3) {
    bytes[0] = static_cast<png_byte>(pixels[i] >> 16U);
    bytes[1] = static_cast<png_byte>(pixels[i] >> 8U);
    bytes[2] = static_cast<png_byte>(pixels[i]);
  }
}

bool writeRows(png_structp png, png_infop info, FILE *stream, const host::Image &image, double dpi, png_byte *row) {
  if (setjmp(png_jmpbuf(png)) != 0) return false;
  constexpr double metersPerInch = 0.0254;
  const auto width = static_cast<png_uint_32>(image.width), height = static_cast<png_uint_32>(image.height);
  const auto perMeter = static_cast<png_uint_32>(std::lround(dpi / metersPerInch));
  png_init_io(png, stream);
  png_set_compression_level(png, 1);
  png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
  png_set_IHDR(png, info, width, height, 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_BASE,
               PNG_FILTER_TYPE_BASE);
  png_set_pHYs(png, info, perMeter, perMeter, PNG_RESOLUTION_METER);
  png_write_info(png, info);
  for (int y = 0; y < image.height; ++y) {
    asBytes(image.row(y), width, row);
    png_write_row(png, row);
  }
  png_write_end(png, nullptr);
  return true;
}

} // namespace

bool writePng(FILE *stream, const host::Image &image, double dpi) {
  std::vector<png_byte> row(static_cast<size_t>(image.width) * 3);
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  if (png == nullptr) return false;
  png_infop info = png_create_info_struct(png);
  const bool written = info != nullptr && writeRows(png, info, stream, image, dpi, row.data());
  png_destroy_write_struct(&png, &info);
  return written;
}

std::optional<std::string> pngOf(const host::Image &image, double dpi) {
  char *bytes = nullptr;
  size_t size = 0;
  FILE *const stream = open_memstream(&bytes, &size);
  if (stream == nullptr) throw std::bad_alloc();
  const bool written = writePng(stream, image, dpi);
  const bool complete = std::fclose(stream) == 0 && written;
  const std::unique_ptr<char, decltype(&std::free)> owner(bytes, std::free);
  if (!complete) return std::nullopt;
  return std::string(bytes, size);
}

} // namespace tools
