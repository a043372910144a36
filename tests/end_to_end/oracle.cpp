// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The oracle of the end-to-end tests, on the command-line tools of the PDF library and on libpng's simple interface.
#include "tests/end_to_end/oracle.h"

#include <png.h>
#include <sys/wait.h>

#include <cctype>
#include <cstdio>
#include <cstring>
#include <regex>

CommandResult run(const std::string &command) {
  CommandResult result = {"", -1};
  FILE *pipe = popen(("{ " + command + "; } 2>&1").c_str(), "r");
  if (pipe == nullptr) return result;
  char chunk[4096];
  for (size_t n = fread(chunk, 1, sizeof chunk, pipe); n > 0; n = fread(chunk, 1, sizeof chunk, pipe))
    result.output.append(chunk, n);
  const int status = pclose(pipe);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

namespace {

std::string unescaped(std::string text) {
  static constexpr const char *entities[][2] = {
      {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&apos;", "'"}, {"&amp;", "&"}};
  for (const auto &entity : entities)
    for (size_t at = text.find(entity[0]); at != std::string::npos; at = text.find(entity[0], at + 1))
      text.replace(at, strlen(entity[0]), entity[1]);
  return text;
}

} // namespace

std::vector<std::vector<OracleWord>> oracleWords(const std::string &document, const std::string &password) {
  const std::string upw = password.empty() ? "" : " -upw " + password;
  const CommandResult listed = run("pdftotext -bbox -cropbox" + upw + " '" + document + "' -");
  static const std::regex pageOrWord(
      R"re(<page |<word xMin="([-\d.]+)" yMin="([-\d.]+)" xMax="([-\d.]+)" yMax="([-\d.]+)">([^<]*)</word>)re");
  std::vector<std::vector<OracleWord>> pages;
  for (auto it = std::sregex_iterator(listed.output.begin(), listed.output.end(), pageOrWord);
       it != std::sregex_iterator(); ++it)
    if (!(*it)[1].matched)
      pages.emplace_back();
    else if (!pages.empty())
      pages.back().push_back(
          {unescaped((*it)[5]), std::stod((*it)[1]), std::stod((*it)[2]), std::stod((*it)[3]), std::stod((*it)[4])});
  return pages;
}

std::string bareWord(const std::string &text) {
  size_t first = 0, last = text.size();
  while (first < last && ispunct(static_cast<unsigned char>(text[first])))
    ++first;
  while (last > first && ispunct(static_cast<unsigned char>(text[last - 1])))
    --last;
  std::string bare = text.substr(first, last - first);
  for (char &c : bare)
    c = static_cast<char>(tolower(static_cast<unsigned char>(c)));
  return bare;
}

Pixels readPng(const std::string &file) {
  Pixels pixels;
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  if (!png_image_begin_read_from_file(&image, file.c_str())) return pixels;
  image.format = PNG_FORMAT_RGB;
  std::vector<uint8_t> bytes(PNG_IMAGE_SIZE(image));
  if (!png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr)) return pixels;
  pixels.width = static_cast<int>(image.width);
  pixels.height = static_cast<int>(image.height);
  for (size_t i = 0; i + 2 < bytes.size(); i += 3)
    pixels.rgb.push_back(static_cast<uint32_t>(bytes[i] << 16 | bytes[i + 1] << 8 | bytes[i + 2]));
  return pixels;
}
