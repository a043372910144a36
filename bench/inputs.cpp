// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Generates the files that are measured, with a fixed seed.
#include "bench/inputs.h"

#include <algorithm>
#include <numeric>
#include <random>

namespace bench {
namespace {

// Not a standard distribution: those give different numbers with different libraries.
class Dice {
public:
  uint32_t below(uint32_t bound) { return static_cast<uint32_t>(engine_() % bound); }
  bool oneIn(uint32_t count) { return below(count) == 0; }

private:
  std::mt19937 engine_{20020502};
};

std::string word(Dice &dice) {
  std::string text;
  const uint32_t length = 1 + dice.below(9);
  for (uint32_t i = 0; i < length; ++i)
    text += static_cast<char>('a' + dice.below(26));
  return text;
}

// Ascending positions on a page.
std::vector<Hit> page(Dice &dice, int number, int count) {
  std::vector<Hit> hits;
  uint32_t pos = 0;
  for (int i = 0; i < count; ++i) {
    pos += 1 + dice.below(12);
    hits.push_back({number, static_cast<uint16_t>(pos), static_cast<uint16_t>(1 + dice.below(12))});
  }
  return hits;
}

} // namespace

std::string highlightFile(const std::vector<Hit> &hits, Layout layout, Spelling spelling) {
  const std::string end = layout == Layout::lines ? "\n" : "";
  std::string file = "<?xml version=\"1.0\"?>" + end + "<XML>" + end +
                     "<Body Units=\"characters\" color=\"#FFFF00\" mode=\"active\" version=\"2\">" + end +
                     "<highlights>" + end;
  bool brief = false;
  for (const Hit &hit : hits) {
    brief = spelling == Spelling::alternating && !brief;
    file += (brief ? "<loc pg=\"" : "<location page=\"") + std::to_string(hit.page) + "\" pos=\"" +
            std::to_string(hit.pos) + "\" len=\"" + std::to_string(hit.len) + "\"/>" + end;
  }
  return file + "</highlights>" + end + "</Body>" + end + "</XML>" + end;
}

std::vector<Hit> inPageOrder(int pages, int perPage) {
  Dice dice;
  std::vector<Hit> hits;
  for (int number = 0; number < pages; ++number) {
    const std::vector<Hit> more = page(dice, number, perPage);
    hits.insert(hits.end(), more.begin(), more.end());
  }
  return hits;
}

std::vector<Hit> interleaved(int pages, int perPage) {
  const std::vector<Hit> ordered = inPageOrder(pages, perPage);
  std::vector<Hit> hits;
  for (int i = 0; i < perPage; ++i)
    for (int number = 0; number < pages; ++number)
      hits.push_back(ordered[static_cast<size_t>(number) * static_cast<size_t>(perPage) + static_cast<size_t>(i)]);
  return hits;
}

std::vector<Hit> onOnePage(int count, bool shuffled) {
  Dice dice;
  std::vector<Hit> hits;
  for (int i = 0; i < count; ++i)
    hits.push_back({3, static_cast<uint16_t>(i), static_cast<uint16_t>(1 + dice.below(12))});
  if (shuffled)
    for (size_t i = hits.size(); i > 1; --i)
      std::swap(hits[i - 1], hits[dice.below(static_cast<uint32_t>(i))]);
  return hits;
}

std::string article(size_t bytes, Layout layout) {
  Dice dice;
  const std::string end = layout == Layout::lines ? "\n" : "";
  std::string text = "<?xml version=\"1.0\"?>" + end + "<article>" + end;
  while (text.size() < bytes) {
    text += "<para id=\"" + std::to_string(dice.below(1000000)) + "\" role=\"" + word(dice) + "\">";
    for (uint32_t words = 5 + dice.below(60); words > 0; --words)
      text += (dice.oneIn(12) ? "<em>" + word(dice) + "</em>" : word(dice)) + (dice.oneIn(9) ? ", " : " ");
    text += "Ends!</para>" + end;
  }
  return text + "</article>" + end;
}

std::string hostile(size_t bytes, Layout layout) {
  Dice dice;
  const std::string end = layout == Layout::lines ? "\n" : "";
  std::string text = "<?xml" + end;
  while (text.size() < bytes) {
    const uint32_t run = 240 + dice.below(20);
    switch (dice.below(8)) {
    case 0: // opens and does not close before the longest token does
      text += " 'it is " + std::string(run, dice.oneIn(2) ? ' ' : 'x');
      break;
    case 1: // closes where it may not
      text += " (f(x)g(y)h'z' " + word(dice) + ")" + word(dice) + ") ";
      break;
    case 2:
      text += " '''''''" + word(dice) + "' ";
      break;
    case 3:
      text += std::string(run, static_cast<char>('a' + dice.below(26)));
      break;
    case 4:
      text += std::string(run, "\",;=~"[dice.below(5)]);
      break;
    case 5:
      text += "!" + std::string(run, ".? "[dice.below(3)]);
      break;
    case 6:
      text += std::string(run, ' ') + end;
      break;
    default:
      text += "<loc pg='" + std::to_string(dice.below(100)) + "' pos=(" + std::to_string(dice.below(100)) + ")/>" + end;
    }
  }
  return text;
}

} // namespace bench
