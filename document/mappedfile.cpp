// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "document/mappedfile.h"

#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "host/document/documenterror.h"

namespace document {

MappedFile::MappedFile(int descriptor, const std::filesystem::path &name) {
  struct stat status {};
  void *mapped = MAP_FAILED;
  if (fstat(descriptor, &status) == 0)
    mapped = mmap(nullptr, static_cast<size_t>(status.st_size), PROT_READ, MAP_PRIVATE, descriptor, 0);
  if (mapped == MAP_FAILED)
    throw host::DocumentError(host::DocumentError::unreadable,
                              host::nameInMessage(name) + ": " + std::generic_category().message(errno));
  bytes_ = {static_cast<const char *>(mapped), static_cast<size_t>(status.st_size)};
}

MappedFile::~MappedFile() { munmap(const_cast<char *>(bytes_.data()), bytes_.size()); }

} // namespace document
