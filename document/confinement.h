// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What keeps the code that parses an untrusted file from everything else: after confine() the process can compute,
// speak through descriptors that it has, and read fonts. The layers are independent, because a system may lack any of
// them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace document {

struct Limits {
  size_t memory = size_t{1} << 30; ///< in bytes, besides the mapping of a file; 0: none
};

/// Which layers are in force.
struct Layers {
  bool privileges = false; ///< none can be gained, and no other process can look into this one
  bool resources = false;  ///< limits of memory, descriptors, and the size of files
  bool files = false;      ///< none but fonts and what the PDF library reads, and no writing (Landlock)
  bool calls = false;      ///< no programs, processes, sockets, signals to others (a filter of system calls)
};

/// Takes away what is not needed, for good. To be called while there is one thread, before anything of a document is
/// read.
Layers confine(const Limits &limits);

/// The directories and files that can be read afterwards.
std::vector<std::string> readablePaths();

} // namespace document
