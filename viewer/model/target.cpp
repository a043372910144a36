// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Parses the document arguments of the command line.
#include "viewer/model/target.h"

#include <strings.h>

#include <cstring>

#include <charconv>
#include <string_view>

#include "host/document/documenterror.h"

namespace viewer {
namespace {

constexpr std::string_view scheme = "file:";

[[noreturn]] void refuse(const std::string &address, const std::string &reason) {
  throw host::DocumentError(host::DocumentError::unreadable, host::nameInMessage(address) + ": " + reason);
}

// A file name cannot contain a null byte.
std::string withoutEscapes(std::string_view path, const std::string &address) {
  std::string bytes;
  for (size_t i = 0; i < path.size(); ++i) {
    if (path[i] != '%') {
      bytes += path[i];
      continue;
    }
    const std::string_view digits = path.substr(i + 1, 2);
    unsigned byte = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    if (digits.size() < 2 || end != digits.data() + 2 || error != std::errc() || byte == 0)
      refuse(address, "\"%" + host::nameInMessage(std::string(digits)) + "\" is no byte of a file name");
    bytes += static_cast<char>(byte);
    i += 2;
  }
  return bytes;
}

Target targetOfAddress(const std::string &address) {
  const size_t hash = address.find('#');
  std::string_view path = std::string_view(address).substr(0, hash).substr(scheme.size());
  if (path.starts_with("//")) {
    path.remove_prefix(2);
    const std::string machine(path.substr(0, path.find('/')));
    if (!machine.empty() && strcasecmp(machine.c_str(), "localhost") != 0)
      refuse(address, "is on another machine, " + host::nameInMessage(machine));
    path.remove_prefix(machine.size());
  }
  if (!path.starts_with('/')) refuse(address, "is no address of a file, such as file:///home/me/paper.pdf");
  return {withoutEscapes(path, address), hash == std::string::npos ? "" : address.substr(hash + 1)};
}

} // namespace

bool isAddress(const std::string &argument) { return strncasecmp(argument.c_str(), scheme.data(), scheme.size()) == 0; }

Target targetOf(const std::string &argument) {
  std::error_code unknown;
  if (std::filesystem::exists(argument, unknown)) return {argument, {}};
  if (isAddress(argument)) return targetOfAddress(argument);
  // The longest name of an existing file; otherwise up to the first '#'.
  size_t end = argument.find('#');
  for (size_t hash = end; hash != std::string::npos; hash = argument.find('#', hash + 1))
    if (std::filesystem::exists(argument.substr(0, hash), unknown)) end = hash;
  if (end == std::string::npos) return {argument, {}};
  return {argument.substr(0, end), argument.substr(end + 1)};
}

// The parameter's name is that of the plug-in which reads highlight files, and part of addresses that people write.
bool hasHighlightFile(const Target &target) {
  const std::string parameters = "&" + target.parameters;
  return strcasestr(parameters.c_str(), "&xml=") != nullptr;
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
