// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// From a real PDF and a phrase to marked pages, with the commands of a user. The words' positions come from another
// program: a mark covers the word of every hit, and nothing else on the page has changed.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "document/here.h"
#include "tests/end_to_end/oracle.h"

namespace {

namespace fs = std::filesystem;

struct MarksCase {
  const char *name;
  const char *document; ///< in the folder of test documents
  const char *word;
  const char *units;
  const char *password;
  const char *color; ///< RRGGBB, or empty for the default
  uint32_t kept;     ///< the channels that this colour leaves unchanged
  int dpi = 100;
};

void PrintTo(const MarksCase &marks, std::ostream *out) { *out << marks.name; }

class Marks : public testing::TestWithParam<MarksCase> {
protected:
  void SetUp() override {
    folder = fs::path(testing::TempDir()) / ("tavrel-marks-" + std::string(GetParam().name));
    fs::remove_all(folder);
    fs::create_directories(folder);
  }
  void TearDown() override { fs::remove_all(folder); }

  std::string document() const { return std::string(TEST_DOCUMENTS) + "/" + GetParam().document; }
  std::string passwordOption() const {
    return *GetParam().password != 0 ? std::string(" --password ") + GetParam().password : "";
  }
  std::string pageFile(int page) const {
    char name[40];
    snprintf(name, sizeof name, "page-%04d.png", page + 1);
    return folder / "out" / name;
  }

  fs::path folder;
};

/// The pixels that a box covers, `grow` pixels larger on each side (smaller where negative).
struct PixelBox {
  int left, top, right, bottom;
  bool contains(int x, int y) const { return x >= left && x < right && y >= top && y < bottom; }
};

PixelBox pixelsOf(const OracleWord &word, double dpi, double grow) {
  const double scale = dpi / 72;
  return {static_cast<int>(std::ceil(word.left * scale - grow)), static_cast<int>(std::ceil(word.top * scale - grow)),
          static_cast<int>(std::floor(word.right * scale + grow)),
          static_cast<int>(std::floor(word.bottom * scale + grow))};
}

/// Marked pixels that should not be, and pixels that should be marked and are not.
struct Differences {
  int outside = 0, unmarked = 0;
};

Differences compare(const Pixels &marked, const host::Image &plain, const std::vector<OracleWord> &hits,
                    const MarksCase &wanted) {
  const bool wholeWords = wanted.units == std::string("words");
  std::vector<PixelBox> nearBoxes, insideBoxes;
  for (const OracleWord &hit : hits) {
    nearBoxes.push_back(pixelsOf(hit, wanted.dpi, 2));
    // Marks of characters leave out the punctuation that is in the word's box.
    if (wholeWords || bareWord(hit.text).size() == hit.text.size())
      insideBoxes.push_back(pixelsOf(hit, wanted.dpi, -1));
  }
  const auto anyContains = [](const std::vector<PixelBox> &boxes, int x, int y) {
    return std::any_of(boxes.begin(), boxes.end(), [&](const PixelBox &box) { return box.contains(x, y); });
  };
  Differences found;
  for (int y = 0; y < marked.height; ++y)
    for (int x = 0; x < marked.width; ++x) {
      const uint32_t now = marked.at(x, y), before = plain.row(y)[x] & 0xFFFFFF;
      if (now != (before & wanted.kept) && anyContains(insideBoxes, x, y)) ++found.unmarked;
      if (now != before && !anyContains(nearBoxes, x, y)) ++found.outside;
    }
  return found;
}

TEST_P(Marks, CoverEveryHitAndNothingElse) {
  const MarksCase &wanted = GetParam();
  const std::string hits = folder / "hits.xml", out = folder / "out";
  const std::string color = *wanted.color != 0 ? std::string(" --color ") + wanted.color : "";
  const CommandResult search = run(std::string(TAVREL) + " hits '" + document() + "' '" + wanted.word + "' --units " +
                                   wanted.units + color + passwordOption() + " -o " + hits);
  ASSERT_EQ(search.status, 0) << search.output;
  const CommandResult render = run(std::string(TAVREL) + " render '" + document() + "' " + hits + " --dpi " +
                                   std::to_string(wanted.dpi) + " --out " + out + passwordOption());
  ASSERT_EQ(render.status, 0) << render.output;

  const auto reference = document::openedHere(document(), wanted.password);
  const std::vector<std::vector<OracleWord>> words = oracleWords(document(), wanted.password);
  ASSERT_EQ(words.size(), static_cast<size_t>(reference->pageCount()));
  int pagesWithHits = 0;
  for (int page = 0; page < reference->pageCount(); ++page) {
    std::vector<OracleWord> expected;
    for (const OracleWord &word : words[static_cast<size_t>(page)])
      if (bareWord(word.text) == wanted.word) expected.push_back(word);
    if (expected.empty()) {
      EXPECT_FALSE(fs::exists(pageFile(page))) << "a page without hits was rendered";
      continue;
    }
    ++pagesWithHits;
    const Pixels marked = readPng(pageFile(page));
    const host::Image plain = reference->render(page, wanted.dpi);
    ASSERT_EQ(marked.width, plain.width) << pageFile(page) << "\n" << render.output;
    ASSERT_EQ(marked.height, plain.height);
    const Differences found = compare(marked, plain, expected, wanted);
    EXPECT_EQ(found.unmarked, 0) << "on page " << page + 1 << ": pixels of hits without a mark";
    EXPECT_EQ(found.outside, 0) << "on page " << page + 1 << ": changed pixels outside of the hits";
  }
  EXPECT_GT(pagesWithHits, 0);
}

constexpr uint32_t red = 0xFF0000, green = 0x00FF00, yellow = 0xFFFF00;

std::string nameOfCase(const testing::TestParamInfo<MarksCase> &tested) { return tested.param.name; }

INSTANTIATE_TEST_SUITE_P(
    Documents, Marks,
    testing::Values(MarksCase{"TwoColumnsInWords", "two-columns.pdf", "searching", "words", "", "", red},
                    MarksCase{"TwoColumnsInCharacters", "two-columns.pdf", "highlights", "characters", "", "", red},
                    MarksCase{"LigaturesInWords", "two-columns.pdf", "efficient", "words", "", "", red},
                    MarksCase{"LigaturesInCharacters", "two-columns.pdf", "waffle", "characters", "", "", red},
                    MarksCase{"PageRotatedBy90", "rotated-90.pdf", "searching", "words", "", "", red},
                    MarksCase{"PageRotatedBy180", "rotated-180.pdf", "searching", "characters", "", "", red},
                    MarksCase{"PageRotatedBy270", "rotated-270.pdf", "searching", "words", "", "", red},
                    MarksCase{"CroppedPage", "cropped.pdf", "efficient", "words", "", "", red},
                    MarksCase{"CroppedAndRotatedPage", "cropped-rotated.pdf", "efficient", "words", "", "", red},
                    MarksCase{"ChineseAndJapanese", "cjk.pdf", "検索", "characters", "", "", red},
                    MarksCase{"BeyondTheBasicPlaneInCharacters", "astral.pdf", "behind", "characters", "", "", red},
                    MarksCase{"BeyondTheBasicPlaneInWords", "astral.pdf", "again", "words", "", "", red},
                    MarksCase{"EncryptedWithUserPassword", "encrypted.pdf", "searching", "words", "secret", "", red},
                    // Small, because all pages are compared.
                    MarksCase{"ThreeHundredPages", "three-hundred.pdf", "needle", "characters", "", "", red, 50},
                    MarksCase{"Green", "two-columns.pdf", "engine", "words", "", "00FF00", green},
                    MarksCase{"Yellow", "two-columns.pdf", "engine", "words", "", "FFFF00", yellow}),
    nameOfCase);

} // namespace
