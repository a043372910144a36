// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Finds the version note among the notes that the system's loader has mapped with a library. The loader of plug-ins
// calls it once for each library.
#include "host/kernel/versionnote.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <cstring>

#include "tavrel/plugin.h"

namespace host {
namespace {

struct Search {
  ElfW(Addr) base;
  std::string version;
};

size_t padded(size_t size) { return (size + 3) / 4 * 4; }

// The notes of one segment follow one another, each of them a header, the owner's name, the content.
std::string versionIn(const char *notes, size_t size) {
  while (size >= sizeof(ElfW(Nhdr))) {
    ElfW(Nhdr) header;
    std::memcpy(&header, notes, sizeof header);
    const size_t ownerAt = sizeof header, textAt = ownerAt + padded(header.n_namesz);
    const size_t end = textAt + padded(header.n_descsz);
    if (end > size) break;
    const tavrel::VersionNote own;
    if (header.n_type == own.type && header.n_namesz == own.ownerSize &&
        std::memcmp(notes + ownerAt, own.owner, own.ownerSize) == 0)
      return {notes + textAt, strnlen(notes + textAt, header.n_descsz)};
    notes += end;
    size -= end;
  }
  return {};
}

int lookAt(dl_phdr_info *library, size_t /*size*/, void *memory) {
  auto &search = *static_cast<Search *>(memory);
  if (library->dlpi_addr != search.base) return 0;
  for (int i = 0; i < library->dlpi_phnum && search.version.empty(); ++i) {
    const ElfW(Phdr) &segment = library->dlpi_phdr[i];
    if (segment.p_type == PT_NOTE)
      search.version = versionIn(reinterpret_cast<const char *>(library->dlpi_addr + segment.p_vaddr), segment.p_memsz);
  }
  return 1;
}

} // namespace

std::string versionOf(void *library) {
  link_map *map = nullptr;
  if (dlinfo(library, RTLD_DI_LINKMAP, &map) != 0) return {};
  Search search{map->l_addr, {}};
  dl_iterate_phdr(lookAt, &search);
  return search.version;
}

} // namespace host
