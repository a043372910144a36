// Three XML libraries reading a highlight file, each as its manual would have it done, and no more carefully than that:
// attributes are taken where they stand, nothing is checked.
#pragma once

#include <string>

#include "bench/inputs.h"

namespace bench {

/// Where the hits go. A plain function and a pointer: the same small cost for everybody.
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
