// The command line's words for a document, and the Open dialog's.
#include "viewer/model/target.h"

namespace viewer {

Target targetOf(const std::string &argument) {
  const size_t hash = argument.find('#');
  std::error_code unknown;
  if (hash == std::string::npos || std::filesystem::exists(argument, unknown)) return {argument, {}};
  return {argument.substr(0, hash), argument.substr(hash + 1)};
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
