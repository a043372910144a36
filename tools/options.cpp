// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Shared options. An invalid value is thrown as an error of the command line, in one line.
#include "tools/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "host/document/process.h"
#include "plugins/BRZ/content.h"

namespace tools {
namespace {

std::string textOf(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.15g", value);
  return text;
}

// The parser's check of a range is not used: it accepts NaN, because every comparison with NaN is false.
CLI::Validator checked(double low, double high, bool whole) {
  const std::string range = textOf(low) + " to " + textOf(high);
  const char *kind = whole ? "a whole number" : "a number";
  return {[=](std::string &text) -> std::string {
            double value = 0;
            const char *end = text.data() + text.size();
            const auto [rest, error] = std::from_chars(text.data(), end, value);
            const bool taken = error == std::errc() && rest == end && std::isfinite(value) &&
                               !(whole && text.find_first_not_of("0123456789") != std::string::npos);
            if (taken && value >= low && value <= high) return {};
            return "\"" + text + "\" is not " + kind + " from " + range;
          },
          range};
}

// The first line, without its end.
std::string readPassword(const std::string &file) {
  constexpr size_t longest = 4096;
  struct Close {
    void operator()(FILE *stream) const {
      if (stream != stdin) std::fclose(stream);
    }
  };
  const auto fail = [](const std::string &reason) { throw CLI::ValidationError("--password-file", reason); };
  const std::string name = file == "-" ? "standard input" : file;
  errno = 0;
  const std::unique_ptr<FILE, Close> stream(file == "-" ? stdin : std::fopen(file.c_str(), "rbe"));
  if (!stream) fail(name + ": " + std::strerror(errno));
  std::string password;
  int byte = 0;
  while ((byte = std::fgetc(stream.get())) != EOF && byte != '\n') {
    if (password.size() == longest) fail(name + ": its first line is too long for a password");
    password += static_cast<char>(byte);
  }
  if (std::ferror(stream.get()) != 0) fail(name + ": " + std::strerror(errno));
  if (password.ends_with('\r')) password.pop_back();
  if (password.empty()) fail(name + ": there is no password in its first line");
  return password;
}

} // namespace

CLI::Validator number(double low, double high) { return checked(low, high, false); }

CLI::Validator oneOf(const std::vector<std::string> &values) {
  std::string list, alternatives;
  for (const std::string &value : values) {
    list += (list.empty() ? "" : ",") + value;
    alternatives += (alternatives.empty() ? "" : " or ") + value;
  }
  return {[=](std::string &text) -> std::string {
            if (std::find(values.begin(), values.end(), text) != values.end()) return {};
            return "\"" + text + "\" is not " + alternatives;
          },
          "{" + list + "}"};
}

CLI::Validator wholeNumber(double low, double high) { return checked(low, high, true); }

void addPasswordOptions(CLI::App &command, std::string &password) {
  CLI::Option *given = command.add_option("--password", password,
                                          "The document's password; other users can read it in the list of processes");
  command
      .add_option_function<std::string>(
          "--password-file", [&password](const std::string &file) { password = readPassword(file); },
          "A file with the password in its first line; - is standard input")
      ->excludes(given);
}

// The library's own reading of the variable would refuse a wrong value in every command, also in those without a limit.
void addHitsLimitOption(CLI::App &command, unsigned &megabytes) {
  megabytes = brz::limitOf(std::getenv(brz::limitVariable));
  command.add_option("--hits-limit", megabytes, "How large a highlight file may be, in megabytes")
      ->type_name("NUMBER")
      ->check(wholeNumber(1, brz::highestLimit))
      ->capture_default_str();
}

void addProcessOptions(CLI::App &command, host::ProcessOptions &options) {
  options.program = host::documentProgram();
  constexpr double mostMegabytes = sizeof(size_t) > 4 ? 1 << 20 : 4095, longest = 3600;
  command
      .add_option_function<unsigned>(
          "--document-memory", [&options](unsigned megabytes) { options.memory = size_t{megabytes} << 20; },
          "How much memory each process that reads a document may take, in megabytes")
      ->type_name("NUMBER")
      ->check(wholeNumber(64, mostMegabytes))
      ->default_str(std::to_string(options.memory >> 20));
  command
      .add_option_function<unsigned>(
          "--page-time", [&options](unsigned seconds) { options.pageTime = std::chrono::seconds(seconds); },
          "How many seconds of a processor a page may take")
      ->type_name("NUMBER")
      ->check(wholeNumber(1, longest))
      ->default_str(std::to_string(std::chrono::duration_cast<std::chrono::seconds>(options.pageTime).count()));
}

} // namespace tools
