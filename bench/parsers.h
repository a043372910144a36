// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Reads a highlight file with three XML libraries, each as its manual describes it. Attributes are read directly,
// without checks.
#pragma once

#include <string>

#include "bench/inputs.h"

namespace bench {

/// Receives the hits. A plain function and a pointer: the same small cost for all libraries.
struct Sink {
  void (*add)(void *where, const Hit &hit);
  void *where;
};

using Parser = bool (*)(const std::string &file, const Sink &sink);

/// False when the library refuses the file. Hits read before that have been added.
bool readWithExpat(const std::string &file, const Sink &sink);
bool readWithLibxml2(const std::string &file, const Sink &sink);
bool readWithPugixml(const std::string &file, const Sink &sink);

} // namespace bench
