// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Parses the document arguments of the command line.
#include "viewer/model/target.h"

namespace viewer {

Target targetOf(const std::string &argument) {
  std::error_code unknown;
  if (std::filesystem::exists(argument, unknown)) return {argument, {}};
  // The longest name of an existing file; otherwise up to the first '#'.
  size_t end = argument.find('#');
  for (size_t hash = end; hash != std::string::npos; hash = argument.find('#', hash + 1))
    if (std::filesystem::exists(argument.substr(0, hash), unknown)) end = hash;
  if (end == std::string::npos) return {argument, {}};
  return {argument.substr(0, end), argument.substr(end + 1)};
}

void addParameter(Target &target, const std::string &name, const std::string &value) {
  constexpr const char *plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/";
  constexpr const char *digits = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : value) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::string_view(plain).find(c) != std::string_view::npos)
      encoded += c;
    else
      encoded += {'%', digits[byte / 16], digits[byte % 16]};
  }
  target.parameters += (target.parameters.empty() ? "" : "&") + name + "=" + encoded;
}

} // namespace viewer
