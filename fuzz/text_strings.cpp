// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Strings of both kinds (plugin/util/miUtils.h): lengths, comparisons, copies, replacement.
#include "fuzz/require.h"
#include "fuzz/text.h"
#include "plugin/util/miUtils.h"

namespace {

int sign(int value) { return (value > 0) - (value < 0); }

bool bothUCS(const Arguments &in) { return isUCS(in.a) && isUCS(in.b); }

/// A string that is taken for bytes: up to its first zero byte.
std::string asBytes(const std::string &text) { return text.c_str(); }

std::string replaced(const std::string &source, const std::string &find, const std::string &by, size_t step) {
  std::string result;
  for (size_t at = 0; at < source.size();) {
    const bool found = !find.empty() && source.compare(at, find.size(), find) == 0;
    result += found ? by : source.substr(at, step);
    at += found ? find.size() : step;
  }
  return result;
}

} // namespace

void checkLength(const Arguments &in) {
  const Block a = terminated(in.a);
  require(miIsUCS(a.get()) == isUCS(in.a), "the mark decides the kind");
  require(miStrlen(a.get()) == in.a.size(), "the length");
}

void checkComparison(const Arguments &in) {
  const Block a = terminated(in.a), b = terminated(in.b);
  const int expected = bothUCS(in) ? in.a.compare(in.b) : asBytes(in.a).compare(asBytes(in.b));
  const int order = miStrcmp(a.get(), b.get());
  require(sign(order) == sign(expected), "the order is that of unsigned bytes, or of units");
  require(sign(order) == -sign(miStrcmp(b.get(), a.get())), "the order turns with the arguments");
  require(sign(miStricmp(a.get(), b.get())) == -sign(miStricmp(b.get(), a.get())), "so it does without case");
  require(order != 0 || miStricmp(a.get(), b.get()) == 0, "what is equal is equal without case");
  require(miStrEq(a.get(), b.get()) == (order == 0), "equality is order 0");
  require(!bothUCS(in) || (order >= -1 && order <= 1), "units give no more than 1");
}

void checkBoundedComparison(const Arguments &in) {
  const Block a = terminated(in.a), b = terminated(in.b);
  const auto first = [&](const std::string &text) {
    const std::string bytes = (bothUCS(in) ? text : asBytes(text)) + std::string(2, '\0');
    return bytes.substr(0, in.n);
  };
  const int expected = first(in.a).compare(first(in.b));
  require(sign(miStrncmp(a.get(), b.get(), in.n)) == sign(expected), "the order of the first bytes");
  if (bothUCS(in)) require(miUCSStrncmp(a.get(), b.get(), in.n) == sign(expected), "the order of the first units");
}

void checkCopy(const Arguments &in) {
  const Block source = terminated(in.a), copy = dottedBlock(in.a.size() + terminatorLength(in.a));
  const char *next = miStrcpySAFE(copy.get(), source.get());
  require(next == copy.get() + (isUCS(in.a) ? in.a.size() + 2 : 0), "the result of a copy");
  require(holds(copy, in.a, terminatorLength(in.a)), "a copy");
  char *separate = miCopyStrImpl(source.get());
  require(miStrEq(separate, source.get()) == 1, "a separate copy");
  TSIfNotNullFree(separate);
}

void checkBoundedCopy(const Arguments &in) {
  const Block source = terminated(in.a), copy = dottedBlock(in.n);
  const uint32_t size = isUCS(in.a) ? in.n & ~1U : in.n;
  const bool fits = in.a.size() + terminatorLength(in.a) <= size;
  require(miStrncpySAFE(copy.get(), source.get(), in.n) == fits, "whether it fits");
  if (size < terminatorLength(in.a)) return;
  require(holds(copy, in.a.substr(0, size - terminatorLength(in.a)), terminatorLength(in.a)), "what fits, terminated");
}

void checkStandardCopy(const Arguments &in) {
  // For a UCS string the size is even: with an odd one the terminator of a shorter string does not fit.
  const uint32_t size = isUCS(in.a) ? in.n & ~1U : in.n;
  const Block source = terminated(in.a), copy = dottedBlock(size);
  const bool shorter = in.a.size() < size;
  require(miStrncpy_StandardSAFE(copy.get(), source.get(), size) == shorter, "whether it is shorter");
  if (shorter)
    require(holds(copy, in.a, terminatorLength(in.a)), "a shorter string is copied with its terminator");
  else
    require(in.a.substr(0, size) == std::string(copy.get(), size), "as many bytes as asked for");
}

void checkConcatenation(const Arguments &in) {
  if (isUCS(in.a) && !isUCS(in.b)) return; // the destination says that both are UCS strings
  const std::string expected = in.a + (isUCS(in.a) ? in.b.substr(2) : asBytes(in.b));
  const Block source = terminated(in.b), destination = terminated(in.a, expected.size() + terminatorLength(in.a));
  require(miStrcatSAFE(destination.get(), source.get()) == destination.get(), "the destination is returned");
  require(holds(destination, expected, terminatorLength(in.a)), "both strings");
}

void checkBoundedConcatenation(const Arguments &in) {
  if (isUCS(in.a) && !isUCS(in.b)) return;
  const std::string expected = in.a + (isUCS(in.a) ? in.b.substr(2) : asBytes(in.b));
  const Block source = terminated(in.b), destination = terminated(in.a, in.n);
  const bool fits = miStrncatSAFE(destination.get(), source.get(), in.n) != 0;
  if (!isUCS(in.b)) require(fits == (expected.size() < in.n), "whether it fits");
  if (in.n == 0)
    require(!fits && holds(destination, in.a, terminatorLength(in.a)), "no size, no change");
  else if (fits || !isUCS(in.a))
    require(holds(destination, fits ? expected : expected.substr(0, in.n - 1U), terminatorLength(in.a)),
            "what fits, terminated");
  else // a UCS string that does not fit, or just fits, is truncated as bytes
    require(miStrlen(destination.get()) < in.n, "what is left is terminated");
}

void checkReplacement(const Arguments &in) {
  if (isUCS(in.a)) return; // is searched by bytes
  const bool nothing = in.m % 2 != 0;
  const std::string expected = replaced(in.a, in.b, nothing ? "" : in.c, 1);
  const Block source = terminated(in.a), find = terminated(in.b), replacement = terminated(in.c),
              result = dottedBlock(expected.size() + 1);
  miReplaceStrSAFE(result.get(), source.get(), find.get(), nothing ? nullptr : replacement.get());
  require(holds(result, expected, 1), "every occurrence is replaced");
}

void checkReplacementByUnits(const Arguments &in) {
  const bool ucs = isUCS(in.a), nothing = in.m % 2 != 0;
  // In a UCS string complete units are searched for, with a mark before them or without.
  const size_t mark = isUCS(in.b) && in.m % 4 < 2 ? 2 : 0, end = ucs ? in.b.size() & ~size_t{1} : in.b.size();
  const std::string looked = in.b.substr(mark, end - mark);
  const std::string expected = replaced(in.a, looked, nothing ? "" : in.c, ucs ? 2 : 1);
  const Block source = terminated(in.a), replacement = terminated(in.c), result = dottedBlock(expected.size() + 2);
  const Block find = dottedBlock(looked.size() + 2);
  (looked + std::string(2, '\0')).copy(find.get(), looked.size() + 2);
  miReplaceStrExSAFE(result.get(), source.get(), find.get(), length(looked), nothing ? nullptr : replacement.get(),
                     length(in.c));
  require(holds(result, expected, 2), "every occurrence");
}
