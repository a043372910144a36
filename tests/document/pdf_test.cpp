// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The limits of a PDF file: of its size, of where its mark may be, of its pages' boxes and of their images.
#include "document/pdf.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <fstream>
#include <functional>

#include "host/document/openfile.h"
#include "support/pdf.h"

namespace document {
namespace {

using host::Box;
using host::HostError;
using host::Image;
using host::nameInMessage;
using host::PageSize;
using host::PageText;
using host::WordText;

using test::PdfPage;
using test::ScratchFolder;
using testing::EndsWith;

// The code of the failure and its line; errNone where there is none.
struct Failure {
  int32_t code = tavrel::errNone;
  std::string line = {};
};

Failure failureOf(const std::function<void()> &call) {
  try {
    call();
  } catch (const HostError &error) {
    return {error.code, error.what()};
  }
  return {};
}

class PdfFileTest : public testing::Test {
protected:
  std::unique_ptr<PdfFile> open(const std::vector<PdfPage> &pages) { return PdfFile::open(folder.pdf(pages), ""); }
  std::string refusal(const std::filesystem::path &file) {
    return failureOf([&] { PdfFile::open(file, ""); }).line;
  }

  ScratchFolder folder;
};

// ---- opening ----

// While it lives, no further file can be opened.
class NoDescriptors {
public:
  NoDescriptors() {
    EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &before_), 0);
    const rlimit none{0, before_.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  }
  ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }
  NoDescriptors(const NoDescriptors &) = delete;
  NoDescriptors &operator=(const NoDescriptors &) = delete;

private:
  rlimit before_{};
};

TEST_F(PdfFileTest, AFileForWhichNoDescriptorIsLeftIsNamed) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer's check of types needs a descriptor";
#endif
  const auto file = folder.pdf({PdfPage{}});
  const NoDescriptors none;
  EXPECT_THAT(refusal(file), EndsWith("test.pdf: there are no more file descriptors"));
}

TEST_F(PdfFileTest, MarkIsLookedForInTheFirst1024Bytes) {
  const std::string mark = "%PDF-";
  const auto late = [&](size_t end) { return folder.write("late.pdf", std::string(end - mark.size(), '\n') + mark); };
  EXPECT_THAT(refusal(late(1024)), EndsWith(": the file is damaged"));
  EXPECT_THAT(refusal(late(1025)), EndsWith(": this is not a PDF"));
}

TEST_F(PdfFileTest, NamesInMessagesHaveNoControlCharacters) {
  EXPECT_EQ(nameInMessage("a\x01"
                          "b\x1F"
                          "c\x7F"
                          "d"),
            "a?b?c?d");
  EXPECT_EQ(nameInMessage("a b~\u00E4\u20AC"), "a b~\u00E4\u20AC");
  EXPECT_EQ(nameInMessage("caf\xE9.pdf"), "caf?.pdf") << "in another encoding";
  EXPECT_EQ(nameInMessage("a\u0085b\u2028c"), "a?b?c");
}

// The third word's characters mean nothing in Unicode; in vertical writing, boxes need the page's fonts.
TEST_F(PdfFileTest, PlainWordsAreThoseOfTheText) {
  const PdfPage page{.texts = {{.x = 50, .y = 500, .text = "first word"},
                               {.x = 50, .y = 400, .text = "###"},
                               {.x = 50, .y = 300, .text = "\uFB01rst"}}};
  for (const test::PdfFont::Kind kind : {test::PdfFont::typewriter, test::PdfFont::vertical}) {
    const auto file = PdfFile::open(folder.pdf({page}, {{U'#', U""}, {U'\uFB01', U"fi"}}, {.kind = kind}), "");
    std::vector<std::u32string> words;
    for (const WordText &word : file->text(0).words)
      words.push_back(word.text);
    EXPECT_EQ(words.size(), 3U);
    EXPECT_EQ(file->plainWords(0), words);
  }
}

// It is drawn in strips.
TEST_F(PdfFileTest, ALargeImageHasNoSeams) {
  constexpr double dpi = 720; // ten pixels a point
  PdfPage page;
  page.drawing = "100 50 200 500 re f\n";
  const Image image = open({page})->render(0, dpi);
  ASSERT_EQ(image.width, 4000);
  ASSERT_EQ(image.height, 6000);
  for (int y = 0; y < image.height; ++y) {
    const bool isInside = y >= 500 && y < 5500;
    ASSERT_EQ(image.row(y)[2000], isInside ? 0xFF000000 : 0xFFFFFFFF) << y;
    ASSERT_EQ(image.row(y)[500], 0xFFFFFFFF) << y;
  }
}

// A file of this many bytes with one page. What it is filled with takes no space on the disk.
std::filesystem::path largeFile(const ScratchFolder &folder, uintmax_t bytes) {
  const std::string complete = test::pdfOf({PdfPage{}});
  const std::string lastLines = complete.substr(complete.find("startxref"));
  std::filesystem::path file = folder.write("large.pdf", complete);
  std::filesystem::resize_file(file, bytes - lastLines.size());
  std::ofstream(file, std::ios::binary | std::ios::app) << lastLines;
  return file;
}

TEST_F(PdfFileTest, AFileOfMoreThanTwoGigabytesIsRefused) {
  EXPECT_EQ(PdfFile::open(largeFile(folder, host::OpenFile::largest), "")->pageSize(0).width, 400);
  const auto larger = largeFile(folder, uintmax_t{host::OpenFile::largest} + 1);
  EXPECT_EQ(refusal(larger), larger.string() + ": the file is larger than 2 GB");
}

TEST_F(PdfFileTest, APipeIsRefusedWithoutWaitingForItsWriter) {
  const auto pipe = folder.path() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(refusal(pipe), pipe.string() + ": this is not a regular file");
}

// ---- sizes of pages ----

struct SizedPage {
  const char *name;
  PageSize box, size; // as the file states it, and as a reader sees it
  const char *damage; // why its words cannot be read, or null
};

void PrintTo(const SizedPage &page, std::ostream *out) { *out << page.name; }

class PageSizes : public PdfFileTest, public testing::WithParamInterface<SizedPage> {};

TEST_P(PageSizes, AreUsableOrThoseOfALetter) {
  const auto &[name, box, size, damage] = GetParam();
  const auto file = open({{.width = box.width, .height = box.height}});
  EXPECT_EQ(file->pageSize(0).width, size.width);
  EXPECT_EQ(file->pageSize(0).height, size.height);
  const Failure failure = failureOf([&] { file->text(0); });
  EXPECT_EQ(failure.code, damage != nullptr ? tavrel::errDocument : tavrel::errNone);
  EXPECT_THAT(failure.line, EndsWith(damage != nullptr ? damage : ""));
}

constexpr PageSize letter{612, 792};
constexpr const char *isEmpty = "test.pdf: page 1 is damaged: its page box is empty";
constexpr const char *isTooLarge = "test.pdf: page 1 is damaged: its page box is too large";

INSTANTIATE_TEST_SUITE_P(Limits, PageSizes,
                         testing::Values(SizedPage{"Least", {1, 1}, {1, 1}, nullptr},
                                         SizedPage{"TooNarrow", {0.99, 50}, letter, nullptr},
                                         SizedPage{"TooLow", {50, 0.99}, letter, nullptr},
                                         SizedPage{"NoWidth", {0, 50}, letter, isEmpty},
                                         SizedPage{"NoHeight", {50, 0}, letter, isEmpty},
                                         SizedPage{"Widest", {200'000, 50}, {200'000, 50}, nullptr},
                                         SizedPage{"Highest", {50, 200'000}, {50, 200'000}, nullptr},
                                         SizedPage{"TooWide", {200'001, 50}, letter, isTooLarge},
                                         SizedPage{"TooHigh", {50, 200'001}, letter, isTooLarge}),
                         [](const auto &page) { return page.param.name; });

// ---- images ----

struct DrawnPage {
  const char *name;
  PageSize size; // in points
  double dpi;
  int width, height; // of the image, in pixels; 0 by 0 where there is none
};

void PrintTo(const DrawnPage &page, std::ostream *out) { *out << page.name; }

class ImageSizes : public PdfFileTest, public testing::WithParamInterface<DrawnPage> {};

TEST_P(ImageSizes, HaveAtLeastOnePixelAndNoSideTooLong) {
  const DrawnPage &page = GetParam();
  const auto file = open({{.width = page.size.width, .height = page.size.height}});
  Image image;
  const Failure failure = failureOf([&] { image = file->render(0, page.dpi); });
  EXPECT_EQ(failure.code, page.width == 0 ? tavrel::errBadArgument : tavrel::errNone) << failure.line;
  EXPECT_EQ(image.width, page.width);
  EXPECT_EQ(image.height, page.height);
}

INSTANTIATE_TEST_SUITE_P(
    Limits, ImageSizes,
    testing::Values(DrawnPage{"OnePixel", {0.5, 0.5}, 72, 1, 1}, DrawnPage{"NoColumn", {0.001, 400}, 0.01, 0, 0},
                    DrawnPage{"NoRow", {400, 0.001}, 0.01, 0, 0}, DrawnPage{"Widest", {10'000, 0.5}, 144, 20'000, 1},
                    DrawnPage{"Highest", {0.5, 10'000}, 144, 1, 20'000},
                    DrawnPage{"TooWide", {10'000.5, 0.5}, 144, 0, 0}, DrawnPage{"TooHigh", {0.5, 10'000.5}, 144, 0, 0}),
    [](const auto &page) { return page.param.name; });

TEST_F(PdfFileTest, AnImageWithoutAUsableSizeSaysWhichPageAndResolution) {
  const auto file = open({{.width = 10'000.5, .height = 1}});
  EXPECT_THAT(failureOf([&] { file->render(0, 144.5); }).line,
              testing::HasSubstr("page 1 at 144.5 dots per inch makes no image of a usable size"));
}

TEST_F(PdfFileTest, PagesBeforeTheFirstAndAfterTheLastAreNotThere) {
  const auto file = open({{}, {}});
  for (const int32_t page : {-1, 2})
    EXPECT_EQ(failureOf([&] { file->text(page); }).code, tavrel::errBadPage) << page;
}

TEST_F(PdfFileTest, ImageStartsAtTheUpperLeftOfTheCropBox) {
  const Image image =
      open({{.width = 100, .height = 100, .cropBox = "20 10 80 90", .drawing = "1 0 0 rg 0 0 50 50 re f"}})
          ->render(0, 72);
  ASSERT_EQ(image.width, 60);
  ASSERT_EQ(image.height, 80);
  constexpr uint32_t red = 0xFFFF0000, white = 0xFFFFFFFF;
  EXPECT_EQ(image.row(40)[29], red) << "the upper right pixel of the rectangle";
  EXPECT_EQ(image.row(40)[30], white);
  EXPECT_EQ(image.row(39)[29], white);
  EXPECT_EQ(image.row(79)[0], red) << "the lower left pixel of the image";
}

// ---- words ----

TEST_F(PdfFileTest, CharactersOfTinyTextHaveTheirBoxes) {
  const auto page = open({{.texts = {{.x = 50, .y = 500, .text = "ab", .size = 1}}}})->text(0);
  ASSERT_EQ(page.words.size(), 1U);
  EXPECT_NEAR(page.words[0].characters.at(1).left, 50.6, 0.01);
  EXPECT_NEAR(page.words[0].characters.at(1).top, 500.629, 0.01);
}

TEST_F(PdfFileTest, ACharacterWithoutWidthHasNoBox) {
  std::string bytes = test::pdfOf({{.texts = {{.x = 50, .y = 500, .text = "axb"}}}});
  const std::string widths = "/Widths [", each = "600 ";
  bytes.replace(bytes.find(widths) + widths.size() + each.size() * 'x', 3, "000");
  const PageText page = PdfFile::open(folder.write("narrow.pdf", bytes), "")->text(0);
  ASSERT_EQ(page.words.size(), 1U);
  ASSERT_EQ(page.words[0].text, U"axb");
  EXPECT_EQ(page.words[0].characters.at(1), Box{});
  EXPECT_NEAR(page.words[0].characters.at(2).right, 62, 0.01);
}

TEST_F(PdfFileTest, CharactersWithoutAMeaningAreNoWord) {
  for (const std::u32string &none : {std::u32string(), std::u32string(1, U'\0'), std::u32string(2, U'\0')}) {
    const auto file = PdfFile::open(folder.pdf({{.texts = {{.x = 50, .y = 500, .text = "x y"}}}}, {{U'x', none}}), "");
    const PageText page = file->text(0);
    ASSERT_EQ(page.words.size(), 1U);
    EXPECT_EQ(page.words[0].text, U"y");
    EXPECT_EQ(page.words[0].offset, 0U);
  }
}

} // namespace
} // namespace document
