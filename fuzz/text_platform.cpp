// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Texts and labels in a single-byte and in a multi-byte locale, pairs of bytes, comparison (plugin/md/mdUtils.h).
#include <clocale>
#include <cstring>

#include "fuzz/require.h"
#include "fuzz/text.h"
#include "plugin/md/mdResources.h"
#include "plugin/md/mdUtils.h"

namespace {

/// The text that one of the two functions returns in a locale.
std::string given(char *(*get)(uint16_t, char *, uint16_t), const std::string &text, uint16_t size,
                  const char *locale) {
  require(setlocale(LC_CTYPE, locale) != nullptr, "the locale is there");
  const Block value = terminated(text), buffer = dottedBlock(size != 0 ? size : text.size() + 1);
  stringCache[0] = value.get();
  require(get(0, buffer.get(), size) == buffer.get(), "the buffer is returned");
  stringCache[0] = nullptr;
  require(size == 0 || memchr(buffer.get(), 0, size) != nullptr, "the text is terminated");
  return buffer.get();
}

} // namespace

void checkString(const Arguments &in) {
  if (isUCS(in.a)) return;
  const std::string expected = in.n != 0 ? in.a.substr(0, in.n - 1U) : in.a;
  require(given(mdGetString, in.a, in.n, "C") == expected, "what fits");
  const std::string characters = given(mdGetString, in.a, in.n, "C.UTF-8");
  require(expected.starts_with(characters), "no more than fits");
  require(expected.size() < in.a.size() || characters == expected, "all of it where it fits");
  require(characters.size() == in.a.size() || (in.a[characters.size()] & 0xC0) != 0x80 || characters.empty() ||
              mblen(in.a.c_str() + characters.size(), 5) == -1,
          "no character is truncated");
}

void checkButtonString(const Arguments &in) {
  if (isUCS(in.a)) return;
  for (const char *locale : {"C", "C.UTF-8"}) {
    const std::string label = given(mdGetButtonString, in.a, in.n, locale);
    require(label.size() <= in.a.size(), "a label is no longer than its text");
    if (in.a.find('&') == std::string::npos && *locale == 'C' && locale[1] == '\0')
      require(label == given(mdGetString, in.a, in.n, locale), "nothing but mnemonics is removed");
  }
}

void checkSwab(const Arguments &in) {
  const uint32_t size = length(in.a), pairs = size & ~1U;
  const Block source = terminated(in.a), swapped = dottedBlock(pairs), again = dottedBlock(pairs);
  require(mdSwab(source.get(), swapped.get(), static_cast<int32_t>(size)) == source.get() + pairs, "after the pairs");
  mdSwab(swapped.get(), again.get(), static_cast<int32_t>(pairs));
  require(memcmp(source.get(), again.get(), pairs) == 0, "swapped twice is the same");
  for (uint32_t i = 0; i < pairs; ++i)
    require(swapped[i] == source[i ^ 1], "each pair is swapped");
}

void checkPlatformComparison(const Arguments &in) {
  if (isUCS(in.a) || isUCS(in.b)) return;
  const Block a = terminated(in.a), b = terminated(in.b);
  const int32_t order = mdStricmp(a.get(), b.get());
  require(order >= -1 && order <= 1, "no more than 1");
  require(order == -mdStricmp(b.get(), a.get()), "the order turns with the arguments");
  require((order == 0) == (strcasecmp(a.get(), b.get()) == 0), "0 for what differs in case alone");
}
