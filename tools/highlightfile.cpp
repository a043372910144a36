// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Reads highlight files. Only plug-ins interpret them. The size limit and the check for other kinds of files are in
// plugins/BRZ/content.cpp, which is used here too.
#include "tools/highlightfile.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <system_error>

#include "plugins/BRZ/content.h"
#include "tools/failure.h"

namespace tools {
namespace {

namespace fs = std::filesystem;

struct Close {
  void operator()(FILE *stream) const {
    if (stream != stdin) std::fclose(stream);
  }
};
using Stream = std::unique_ptr<FILE, Close>;

Stream opened(const std::string &hits) { return Stream(hits == "-" ? stdin : std::fopen(hits.c_str(), "rbe")); }

// At most one byte more than the limit.
std::string readUpTo(FILE *stream, size_t limit) {
  std::string bytes;
  char part[1 << 16];
  while (bytes.size() <= limit) {
    const size_t count = std::fread(part, 1, std::min(sizeof part, limit + 1 - bytes.size()), stream);
    if (count == 0) break;
    bytes.append(part, count);
  }
  return bytes;
}

// The number in a name such as /dev/fd/63, with which a shell passes the output of a program; -1 for other names.
int descriptorOf(const std::string &name) {
  int number = -1;
  for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
    if (!name.starts_with(folder)) continue;
    const char *end = name.data() + name.size();
    if (const auto [rest, error] = std::from_chars(name.data() + folder.size(), end, number);
        error != std::errc() || rest != end)
      number = -1;
  }
  return number;
}

// Takes over the descriptor, if there is one, so that the user's name for the file is that of the copy.
std::string inMemory(const std::string &hits, const std::string &bytes, int descriptor) {
  const auto check = [&](bool done) {
    if (!done) throw CommandFailure(exitHighlightFile, nameOfHits(hits) + ": " + std::strerror(errno));
  };
  const int copy = memfd_create("highlights", MFD_CLOEXEC);
  check(copy >= 0);
  for (size_t written = 0; written < bytes.size();) {
    const ssize_t part = write(copy, bytes.data() + written, bytes.size() - written);
    check(part > 0 || errno == EINTR);
    written += static_cast<size_t>(std::max<ssize_t>(part, 0));
  }
  if (descriptor < 0) return "/dev/fd/" + std::to_string(copy);
  check(dup2(copy, descriptor) >= 0);
  close(copy);
  return descriptor == STDIN_FILENO ? "/dev/stdin" : "/dev/fd/" + std::to_string(descriptor);
}

} // namespace

std::string nameOfHits(const std::string &hits) { return hits == "-" ? "standard input" : hits; }

std::string readHits(const std::string &hits, unsigned megabytes) {
  const auto fail = [&](const std::string &reason) {
    throw CommandFailure(exitHighlightFile, nameOfHits(hits) + ": " + reason);
  };
  errno = 0;
  const Stream stream = opened(hits);
  if (!stream) fail(std::strerror(errno));
  const size_t limit = megabytes * brz::bytesPerMegabyte;
  std::string bytes;
  try {
    bytes = readUpTo(stream.get(), limit);
  } catch (const std::bad_alloc &) {
    fail("memory is exhausted");
  }
  if (std::ferror(stream.get()) != 0) fail(std::strerror(errno));
  if (bytes.size() > limit)
    fail("it is larger than " + std::to_string(megabytes) + " MB (--hits-limit raises the limit)");
  if (const char *kind = brz::otherKind(bytes)) fail(kind);
  return bytes;
}

std::string rereadable(const std::string &hits, unsigned megabytes) {
  struct stat status {};
  const bool isStandardInput = hits == "-" || hits == "/dev/stdin";
  if (!isStandardInput && (stat(hits.c_str(), &status) != 0 || S_ISREG(status.st_mode) || S_ISDIR(status.st_mode)))
    return hits;
  return inMemory(hits, readHits(isStandardInput ? "-" : hits, megabytes), isStandardInput ? 0 : descriptorOf(hits));
}

bool isHighlightFile(const fs::path &file) {
  constexpr size_t beginning = 4096;
  std::error_code unknown;
  if (!fs::is_regular_file(file, unknown)) return false;
  const Stream stream = opened(file.string());
  return stream && brz::looksLikeHighlights(readUpTo(stream.get(), beginning));
}

fs::path documentOfHits(const fs::path &hits) {
  const std::string name = hits.filename().string();
  for (const std::string ending : {".hits.xml", ".xml", ".tavrelglt"}) {
    if (!name.ends_with(ending)) continue;
    const std::string stem = name.substr(0, name.size() - ending.size());
    fs::path file = hits.parent_path() / (stem.ends_with(".pdf") ? stem : stem + ".pdf");
    std::error_code unknown;
    if (fs::is_regular_file(file, unknown)) return file;
  }
  return {};
}

} // namespace tools
