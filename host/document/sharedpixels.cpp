// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/sharedpixels.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>
#include <new>

#include "host/kernel/error.h"

namespace host {

SharedPixels::SharedPixels(size_t pixels)
    : memory_(memfd_create("page", MFD_CLOEXEC | MFD_ALLOW_SEALING)), count_(pixels) {
  const auto bytes = static_cast<off_t>(pixels * sizeof(uint32_t));
  if (!memory_ && (errno == EMFILE || errno == ENFILE)) throw HostError(tavrel::errGeneric, noDescriptors);
  if (!memory_ || ftruncate(descriptor(), bytes) != 0 ||
      fcntl(descriptor(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0)
    throw std::bad_alloc();
  map(PROT_READ, 0);
}

SharedPixels::SharedPixels(Descriptor made, size_t pixels) : memory_(std::move(made)), count_(pixels) {
  struct stat status {};
  if (fstat(descriptor(), &status) != 0 || status.st_size != static_cast<off_t>(pixels * sizeof(uint32_t)))
    throw std::bad_alloc();
  map(PROT_READ | PROT_WRITE, MAP_POPULATE); // all of it will be written
}

void SharedPixels::map(int protection, int flags) {
  address_ = mmap(nullptr, count_ * sizeof(uint32_t), protection, MAP_SHARED | flags, descriptor(), 0);
  if (address_ == MAP_FAILED) throw std::bad_alloc();
}

SharedPixels::~SharedPixels() { munmap(address_, count_ * sizeof(uint32_t)); }

} // namespace host
