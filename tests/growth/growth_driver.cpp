// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The program whose instructions growth.py counts: growth_driver FAMILY UNITS makes a text of so many repeated units,
// reads it as a highlight file and splits it into words, and prints how much was found. Only the two functions whose
// names begin with "measure" are counted, so neither making the text nor starting the program is.
//
// In families where a search ahead can fail to find an end, half of the units are of that kind: there a search that
// runs to the end of the text costs most.
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "plugin/glt/glt.h"
#include "plugin/input/gltAux.h"
#include "plugin/input/gltLex.h"
#include "tests/support/SilentHost.h"

namespace {

/// The index of a unit, and the number of units.
struct UnitIndex {
  size_t index, units;

  bool late() const { return index >= units / 2; }
};

using Unit = std::string (*)(UnitIndex at);

std::string hit(size_t page, size_t pos) {
  return "<loc pg=\"" + std::to_string(page) + "\" pos=\"" + std::to_string(pos) + "\" len=\"6\"/>";
}

/// A fixed number, so that the number of pages grows; and not a small one, so that there are few pages.
constexpr size_t hitsOnPage = 200;

/// The hits of a search, page by page.
std::string orderedHit(size_t index) { return hit(index / hitsOnPage, index % hitsOnPage * 13); }

template <size_t N> std::string oneOf(const std::string (&choices)[N], UnitIndex at) { return choices[at.index % N]; }

// ---------------------------------------------------------------------------------------------------------- the units

std::string tags(UnitIndex at) {
  if (at.index % 2 == 0) return orderedHit(at.index) + "\n";
  return "<location page=\"" + std::to_string(at.index / hitsOnPage) + "\" position=\"" +
         std::to_string(at.index % hitsOnPage * 13) + "\" length=\"6\"/>\n";
}

std::string noTags(UnitIndex at) {
  static const std::string sentences[] = {"A search engine says where on a page the words stand; ",
                                          "the reader wants them marked, and marked at once. ", "Page 12 has none! ",
                                          "Is \"none\" a number? ", "It's 0, or nearly so.\n"};
  return oneOf(sentences, at);
}

/// A quoted word ends at its closing character where no word character follows it.
std::string quotes(UnitIndex at) {
  if (at.late()) return "(it is not closed, here or further on, "; // no ) up to the end
  static const std::string shapes[] = {"'early' ",
                                       "(so) ",
                                       "'late, " + std::string(200, 'x') + ", but it does' ",
                                       "(f(x)g(y)h" + std::string(150, ' ') + ") ",
                                       "'never, " + std::string(240, '=') + " ",
                                       "'''''''' ",
                                       "(((((( ",
                                       "'a'b'c'd'e'f' "};
  return oneOf(shapes, at);
}

std::string runs(UnitIndex at) {
  static const std::string shapes[] = {std::string(250, 'a') + " ", std::string(251, '<'), std::string(600, 'b') + "\n",
                                       std::string(250, '='),       std::string(251, '"'), std::string(600, '~') + " ",
                                       "!" + std::string(249, '.'), std::string(600, '?'), "!" + std::string(300, ' ')};
  return oneOf(shapes, at);
}

std::string spaces(UnitIndex at) {
  return orderedHit(at.index) + std::string(240 + at.index % 20, at.index % 2 == 0 ? ' ' : '\t') +
         std::string(300, ' ');
}

std::string lineFeeds(UnitIndex at) {
  std::string unit = orderedHit(at.index);
  for (size_t line = 0; line < 60; ++line)
    unit += "\n" + std::string(line % 12, ' ');
  return unit;
}

std::string nulsLate(UnitIndex at) { return tags(at) + (at.index == at.units - 20 ? std::string(3, '\0') : ""); }

/// A few hits on each page.
std::string manyPages(UnitIndex at) {
  std::string unit;
  for (size_t i = 0; i < 20; ++i)
    unit += hit(at.index, i * 13) + "\n";
  return unit;
}

/// A hit a page, in no order: all searches for a page fail.
std::string pageAHit(UnitIndex at) { return hit(100000 + at.index * 7919 % 65537, 1) + "\n"; }

/// One hit of each page in turn.
std::string manyHits(UnitIndex at) {
  const size_t pages = at.units / hitsOnPage;
  return hit(at.index % pages, at.index / pages * 13) + "\n";
}

std::string joinedTags(UnitIndex at) { return orderedHit(at.index); }

std::string attributesWithoutValues(UnitIndex /*at*/) {
  return "<loc pg pos len>\n<location page position length />\n<loc pg= pos= len= >\n";
}

/// The reader does not know comments: tags in them are read.
std::string comments(UnitIndex at) {
  if (at.late()) return "<!-- never closed, <b>this</b>; see " + orderedHit(at.index) + " ";
  return "<!-- two words, <b>bold</b> " + orderedHit(at.index) + " --><!----><!-- - -- -> -->\n";
}

std::string hitsOnOnePage(UnitIndex at) { return hit(3, at.index) + "\n"; }

// ----------------------------------------------------------------------------------------------------------- the text

/// The text around the units.
enum class Around { highlightFile, nothing };

struct Family {
  const char *name;
  Unit unit;
  Around around;
};

constexpr Family families[] = {
    {"tags", tags, Around::highlightFile},
    {"no tags", noTags, Around::nothing},
    {"quotes", quotes, Around::highlightFile},
    {"runs", runs, Around::highlightFile},
    {"spaces", spaces, Around::highlightFile},
    {"line feeds", lineFeeds, Around::highlightFile},
    {"NULs late", nulsLate, Around::highlightFile},
    {"many pages", manyPages, Around::highlightFile},
    {"a page a hit", pageAHit, Around::highlightFile},
    {"many hits", manyHits, Around::highlightFile},
    {"joined tags", joinedTags, Around::highlightFile},
    {"attributes without values", attributesWithoutValues, Around::highlightFile},
    {"comments", comments, Around::highlightFile},
    {"one page, quadratic", hitsOnOnePage, Around::highlightFile},
};

std::string textOf(const Family &family, size_t units) {
  std::string text = "<?xml version=\"1.0\"?>\n"; // the reader rejects other beginnings at the first word
  if (family.around == Around::highlightFile)
    text += "<XML>\n<Body Units=\"characters\" color=\"#FF0000\" mode=\"active\" version=\"2\">\n<highlights>\n";
  for (size_t index = 0; index < units; ++index)
    text += family.unit({index, units});
  if (family.around == Around::nothing) return text;
  // An unfinished word ends among the line feeds, and the last hit shows that the text was read to its end.
  return text + std::string(size_t{2} * HWLEX_LIMIT, '\n') + hit(1'000'000, 1) + "\n</highlights>\n</Body>\n</XML>\n";
}

} // namespace

// A file's complete lifecycle: it is read, its list is registered, and the document is closed. The result is the number
// of hits.
extern "C" [[gnu::noinline]] uint32_t measureReading(const char *text, uint32_t length) {
  const tavrel::Doc document = silentDocument(1);
  if (registerGLT(document, text, length) == 0) return 0;
  HLL *list = GLT_GetHLL(document);
  const uint32_t hits = HLL_GetWordCount(list);
  GLT_UnregisterHLL(document, list);
  return hits;
}

// The result is the number of tokens up to the first NUL.
extern "C" [[gnu::noinline]] uint32_t measureLexer(char *cursor) {
  HWLEX_STATE state;
  HWLEX_reset(&state);
  uint32_t tokens = 0;
  for (char *token = nullptr; *cursor != 0; ++tokens)
    HWLEX_match(&state, &token, &cursor);
  return tokens;
}

int main(int count, char **arguments) {
  const std::string_view wanted = count == 3 ? arguments[1] : "";
  for (const Family &family : families) {
    if (wanted != family.name) continue;
    const std::string text = textOf(family, strtoul(arguments[2], nullptr, 10));
    std::vector<char> copy(text.c_str(), text.c_str() + text.size() + 1);
    installSilentHost();
    const uint32_t hits = measureReading(text.data(), static_cast<uint32_t>(text.size()));
    const uint32_t tokens = measureLexer(copy.data());
    printf("%zu %u %u\n", text.size(), hits, tokens); // growth.py's order
    return 0;
  }
  fputs("growth_driver FAMILY UNITS\n", stderr);
  return 2;
}
