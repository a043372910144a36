// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Documents: opening them or saying why not, the words of their pages and where they lie, images of pages.
#include "host/document/document.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <functional>
#include <limits>
#include <set>

#include "document/here.h"
#include "support/pdf.h"

namespace host {
namespace {

using test::PdfPage;
using test::ScratchFolder;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr double tolerance = 0.01;

std::vector<std::u32string> textsOf(const PageText &page) {
  std::vector<std::u32string> result;
  for (const WordText &word : page.words)
    result.push_back(word.text);
  return result;
}

// The failure's line; fails the test if the file opens.
std::string refusal(const std::filesystem::path &file, DocumentError::Reason reason = DocumentError::unreadable,
                    const std::string &password = "") {
  try {
    document::openedHere(file, password);
  } catch (const DocumentError &error) {
    EXPECT_EQ(error.reason, reason);
    EXPECT_EQ(error.code, tavrel::errDocument);
    return error.what();
  }
  ADD_FAILURE() << file << " was opened";
  return "";
}

class DocumentTest : public testing::Test {
protected:
  std::unique_ptr<Document> open(const std::vector<PdfPage> &pages, const test::ReadAs &readAs = {}) {
    return document::openedHere(folder.pdf(pages, readAs), "");
  }

  std::filesystem::path encrypted() {
    const std::filesystem::path plain = folder.pdf({{.texts = {{.x = 10, .y = 10, .text = "secret"}}}});
    std::filesystem::path result = folder.path() / "encrypted.pdf";
    const std::string command =
        std::string(QPDF) + " --encrypt user owner 256 -- " + plain.string() + " " + result.string();
    EXPECT_EQ(std::system(command.c_str()), 0); // NOLINT(cert-env33-c): a test's own command
    return result;
  }

  void expectBox(const Box &box, double left, double bottom, double right, double top) {
    EXPECT_THAT(box.left, DoubleNear(left, tolerance));
    EXPECT_THAT(box.bottom, DoubleNear(bottom, tolerance));
    EXPECT_THAT(box.right, DoubleNear(right, tolerance));
    EXPECT_THAT(box.top, DoubleNear(top, tolerance));
  }

  ScratchFolder folder;
};

// ---- opening ----

TEST_F(DocumentTest, MissingFileIsNamed) {
  EXPECT_EQ(refusal("/nowhere/missing.pdf"), "/nowhere/missing.pdf: No such file or directory");
}

TEST_F(DocumentTest, FolderIsRefused) { EXPECT_THAT(refusal(folder.path()), HasSubstr("is a directory")); }

TEST_F(DocumentTest, DeviceIsRefused) { EXPECT_EQ(refusal("/dev/null"), "/dev/null: this is not a regular file"); }

TEST_F(DocumentTest, EmptyFileIsRefused) { EXPECT_THAT(refusal(folder.write("e.pdf", "")), HasSubstr("is empty")); }

TEST_F(DocumentTest, OtherFileIsNotAPdf) {
  const auto file = folder.write("letter.pdf", "Dear reader,\n");
  EXPECT_EQ(refusal(file), file.string() + ": this is not a PDF");
}

TEST_F(DocumentTest, PdfWithoutItsFirstLineIsOpened) {
  const std::string complete = test::pdfOf({{.texts = {{.x = 10, .y = 10, .text = "kept"}}}});
  const auto document = document::openedHere(folder.write("late.pdf", complete.substr(complete.find('\n') + 1)), "");
  EXPECT_THAT(textsOf(document->pageText(0)), ElementsAre(U"kept"));
}

TEST_F(DocumentTest, MarkupIsNotAPdf) {
  const auto file = folder.write("page.xml", "<?xml version=\"1.0\"?>\n<XML>\ntrailer\n</XML>\n");
  EXPECT_EQ(refusal(file), file.string() + ": this is not a PDF");
}

TEST_F(DocumentTest, PdfTruncatedBeforeItsFirstPageIsDamaged) {
  const std::string complete = test::pdfOf({PdfPage{}});
  EXPECT_THAT(refusal(folder.write("truncated.pdf", complete.substr(0, 60))), HasSubstr("is damaged"));
}

TEST_F(DocumentTest, PdfWithoutItsLastLinesOpensWithWhatIsThere) {
  const std::string complete = test::pdfOf({{.texts = {{.x = 10, .y = 10, .text = "kept"}}}});
  const auto document =
      document::openedHere(folder.write("truncated.pdf", complete.substr(0, complete.find("startxref"))), "");
  EXPECT_THAT(textsOf(document->pageText(0)), ElementsAre(U"kept"));
}

TEST_F(DocumentTest, PdfWithoutPagesIsRefused) {
  EXPECT_THAT(refusal(folder.write("none.pdf", test::pdfOf({}))), HasSubstr("is damaged"));
}

TEST_F(DocumentTest, APageThatNoResolutionDrawsIsDamagedAndNoOther) {
  const auto document = open({PdfPage{}, {.width = 300'000, .height = 300'000}});
  EXPECT_EQ(document->render(0, 72).width, 400);
  EXPECT_THAT([&] { document->render(1, 8); },
              testing::ThrowsMessage<DocumentError>(HasSubstr("page 2 is damaged: its page box is too large")));
}

// The page box of a PDF page, "left bottom right top"; its cropping makes it one without area.
class EmptyBox : public DocumentTest, public testing::WithParamInterface<const char *> {};

TEST_P(EmptyBox, MakesAPageDamagedAndNoOther) {
  const auto document = open({PdfPage{}, {.cropBox = GetParam()}});
  EXPECT_EQ(document->render(0, 72).width, 400);
  const std::string line = (folder.path() / "test.pdf").string() + ": page 2 is damaged: its page box is empty";
  for (const auto &use :
       std::vector<std::function<void()>>{[&] { document->render(1, 72); }, [&] { document->pageText(1); }}) {
    try {
      use();
      ADD_FAILURE() << "there is no such page";
    } catch (const DocumentError &error) {
      EXPECT_EQ(error.what(), line);
    }
  }
  EXPECT_EQ(document->pageSize(1).width, 612) << "as large as a letter, so that a reader can turn to it";
}

INSTANTIATE_TEST_SUITE_P(Boxes, EmptyBox, testing::Values("10 10 10 10", "10 20 300 20", "500 700 600 800"));

TEST_F(DocumentTest, NameWithLineBreakStaysOneLine) {
  EXPECT_THAT(refusal(folder.write("a\nb.pdf", "no")), testing::Not(HasSubstr("\n")));
}

TEST_F(DocumentTest, LibraryStaysSilentAboutDamage) {
  const std::string complete = test::pdfOf({{.texts = {{.x = 10, .y = 10, .text = "kept"}}}});
  const auto file = folder.write("truncated.pdf", complete.substr(0, complete.find("startxref")));
  testing::internal::CaptureStderr();
  document::openedHere(file, "")->pageText(0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DocumentTest, EncryptedWithoutPasswordIsRefused) {
  EXPECT_THAT(refusal(encrypted(), DocumentError::wrongPassword), HasSubstr("is encrypted: a password is needed"));
}

TEST_F(DocumentTest, EncryptedWithWrongPasswordIsRefused) {
  EXPECT_THAT(refusal(encrypted(), DocumentError::wrongPassword, "guess"), HasSubstr("the password is wrong"));
}

TEST_F(DocumentTest, EncryptedOpensWithUsersPassword) {
  EXPECT_THAT(textsOf(document::openedHere(encrypted(), "user")->pageText(0)), ElementsAre(U"secret"));
}

TEST_F(DocumentTest, EncryptedOpensWithOwnersPassword) {
  EXPECT_THAT(textsOf(document::openedHere(encrypted(), "owner")->pageText(0)), ElementsAre(U"secret"));
}

TEST_F(DocumentTest, IsAmongTheModelDocsUntilItCloses) {
  auto document = open({PdfPage{}});
  const tavrel::ModelDoc handle = modelDocs().handle(document.get());
  EXPECT_EQ(&modelDocs().find(handle), document.get());
  document.reset();
  EXPECT_THROW(modelDocs().find(handle), HostError); // NOLINT(clang-analyzer-cplusplus.NewDelete): looked up only
}

TEST_F(DocumentTest, PageBeyondTheEndsIsRefused) {
  const auto document = open({PdfPage{}, PdfPage{}});
  EXPECT_EQ(document->pageCount(), 2);
  for (const int32_t page : {-1, 2, INT32_MAX})
    for (const auto &use : std::vector<std::function<void()>>{
             [&] { document->pageText(page); }, [&] { document->forgetText(page); }, [&] { document->pageSize(page); }})
      try {
        use();
        ADD_FAILURE() << "page " << page;
      } catch (const HostError &error) {
        EXPECT_EQ(error.code, tavrel::errBadPage);
      }
}

// ---- words ----

TEST_F(DocumentTest, WordsAreCountedInCodePointsAndJoinedByASpace) {
  const auto document =
      open({{.texts = {{.x = 50, .y = 500, .text = "one two"}, {.x = 50, .y = 480, .text = "three"}}}});
  const PageText &page = document->pageText(0);
  EXPECT_THAT(textsOf(page), ElementsAre(U"one", U"two", U"three"));
  EXPECT_EQ(page.words[1].offset, 4U);
  EXPECT_EQ(page.words[2].offset, 8U);
  EXPECT_EQ(page.text(), U"one two three");
}

TEST_F(DocumentTest, PageWithoutTextHasNoWords) {
  const auto document = open({PdfPage{}});
  EXPECT_TRUE(document->pageText(0).words.empty());
  EXPECT_TRUE(document->contentOrder(0).empty());
  EXPECT_EQ(document->pageText(0).text(), U"");
}

TEST_F(DocumentTest, CharacterBeyondTheBasicPlaneIsOneCodePoint) {
  const auto document = open({{.texts = {{.x = 50, .y = 500, .text = "x\U0001D49Cy end"}}}});
  const PageText &page = document->pageText(0);
  EXPECT_THAT(textsOf(page), ElementsAre(U"x\U0001D49Cy", U"end"));
  EXPECT_EQ(page.words[1].offset, 4U);
  ASSERT_EQ(page.words[0].characters.size(), 3U);
  EXPECT_THAT(page.words[0].characters[2].left, DoubleNear(62, tolerance));
}

TEST_F(DocumentTest, LigatureThatReadsAsTwoLettersCountsAsTwo) {
  const auto document = open({{.texts = {{.x = 50, .y = 500, .text = "\uFB01nd"}}}}, {{U'\uFB01', U"fi"}});
  EXPECT_THAT(textsOf(document->pageText(0)), ElementsAre(U"find"));
  EXPECT_EQ(document->pageText(0).words[0].characters.size(), 4U);
}

TEST_F(DocumentTest, LigatureThatReadsAsItselfCountsAsOne) {
  const auto document = open({{.texts = {{.x = 50, .y = 500, .text = "\uFB01nd"}}}});
  EXPECT_THAT(textsOf(document->pageText(0)), ElementsAre(U"\uFB01nd"));
}

TEST_F(DocumentTest, HyphenatedWordIsTwoWords) {
  const auto document =
      open({{.texts = {{.x = 50, .y = 500, .text = "a high-"}, {.x = 50, .y = 488, .text = "light of"}}}});
  EXPECT_THAT(textsOf(document->pageText(0)), ElementsAre(U"a", U"high-", U"light", U"of"));
}

TEST_F(DocumentTest, ReadingOrderAndContentOrderDiffer) {
  const auto document =
      open({{.texts = {{.x = 50, .y = 20, .text = "foot note"}, {.x = 50, .y = 500, .text = "head line"}}}});
  EXPECT_THAT(textsOf(document->pageText(0)), ElementsAre(U"head", U"line", U"foot", U"note"));
  EXPECT_THAT(document->contentOrder(0), ElementsAre(2, 3, 0, 1));
}

TEST_F(DocumentTest, TextIsComputedOnceAndKept) {
  const auto document = open({{.texts = {{.x = 50, .y = 500, .text = "kept"}}}});
  EXPECT_EQ(&document->pageText(0), &document->pageText(0));
  EXPECT_EQ(document->pageText(0).words.data(), document->pageText(0).words.data());
}

TEST_F(DocumentTest, ForgottenTextIsComputedAgain) {
  const auto document = open({{.texts = {{.x = 50, .y = 500, .text = "come back"}}}});
  const std::u32string before = document->pageText(0).text();
  document->forgetText(0);
  EXPECT_EQ(document->pageText(0).text(), before);
}

// A file of one page without words, which counts how often they are taken from it, and cannot be drawn.
class CountingFile final : public document::PdfFile {
public:
  explicit CountingFile(int &texts) : texts_(texts) {}

  const std::filesystem::path &file() const override { return name_; }
  int32_t pageCount() const override { return 1; }
  PageSize pageSize(int32_t /*page*/) override { return {}; }
  PageText text(int32_t /*page*/) override {
    ++texts_;
    return {};
  }
  std::vector<std::u32string> plainWords(int32_t /*page*/) override { return {}; }
  std::vector<uint32_t> contentOrder(int32_t /*page*/, const PageText & /*text*/) override { return {}; }
  Image render(int32_t /*page*/, double /*dpi*/) override { throw std::runtime_error("unforeseen"); }
  void render(const ImageRequest & /*request*/, std::span<uint32_t> /*pixels*/) override {}

private:
  const std::filesystem::path name_ = "counting.pdf";
  int &texts_;
};

TEST_F(DocumentTest, OnlyForgottenTextIsTakenFromTheFileAgain) {
  int texts = 0;
  const auto document = document::documentOf(std::make_unique<CountingFile>(texts));
  for (int i = 0; i < 2; ++i)
    document->pageText(0);
  EXPECT_EQ(texts, 1);
  document->forgetText(0);
  document->pageText(0);
  EXPECT_EQ(texts, 2);
}

TEST_F(DocumentTest, AnUnforeseenErrorNamesTheFile) {
  int texts = 0;
  const auto document = document::documentOf(std::make_unique<CountingFile>(texts));
  EXPECT_THAT([&] { document->render(0, 72); }, testing::ThrowsMessage<HostError>("counting.pdf: unforeseen"));
}

// ---- positions ----

// Of a character at 10 points, from its base line: the font's own ascent and descent are what a box is high.
constexpr double width = 6, below = 1.57, above = 6.29;

struct Turned {
  int rotate;
  PageSize size;
  double left, bottom, right, top;
  int quarterTurns;
};

void PrintTo(const Turned &page, std::ostream *out) { *out << page.rotate; }

class TurnedPage : public DocumentTest, public testing::WithParamInterface<Turned> {};

TEST_P(TurnedPage, BoxesAreInTheSpaceOfThePageAsShown) {
  const Turned &expected = GetParam();
  const auto document = open({{.texts = {{.x = 100, .y = 500, .text = "ab"}}, .rotate = expected.rotate}});
  EXPECT_DOUBLE_EQ(document->pageSize(0).width, expected.size.width);
  EXPECT_DOUBLE_EQ(document->pageSize(0).height, expected.size.height);
  const WordText &word = document->pageText(0).words.at(0);
  expectBox(word.bounds, expected.left, expected.bottom, expected.right, expected.top);
  EXPECT_EQ(word.quarterTurns, expected.quarterTurns);
}

// The page is 400 by 600 points before it is turned.
INSTANTIATE_TEST_SUITE_P(Clockwise, TurnedPage,
                         testing::Values(Turned{0, {400, 600}, 100, 500 - below, 100 + 2 * width, 500 + above, 0},
                                         Turned{90, {600, 400}, 500 - below, 300 - 2 * width, 500 + above, 300, 1},
                                         Turned{180, {400, 600}, 300 - 2 * width, 100 - above, 300, 100 + below, 2},
                                         Turned{270, {600, 400}, 100 - above, 100, 100 + below, 100 + 2 * width, 3}),
                         [](const testing::TestParamInfo<Turned> &instance) {
                           return "By" + std::to_string(instance.param.rotate);
                         });

TEST_F(DocumentTest, CharactersOfALineThatRunsUpwardsGoUp) {
  const auto document = open({{.texts = {{.x = 100, .y = 300, .text = "up", .upwards = true}}}});
  const WordText &word = document->pageText(0).words.at(0);
  EXPECT_THAT(word.characters[0].bottom, DoubleNear(300, tolerance));
  EXPECT_THAT(word.characters[1].bottom, DoubleNear(300 + width, tolerance));
}

TEST_F(DocumentTest, CropBoxIsThePageAndItsLowerLeftTheOrigin) {
  const auto document = open({{.texts = {{.x = 100, .y = 500, .text = "ab"}}, .cropBox = "90 80 390 590"}});
  EXPECT_DOUBLE_EQ(document->pageSize(0).width, 300);
  EXPECT_DOUBLE_EQ(document->pageSize(0).height, 510);
  expectBox(document->pageText(0).words.at(0).bounds, 10, 420 - below, 10 + 2 * width, 420 + above);
}

TEST_F(DocumentTest, CropBoxOfATurnedPage) {
  const auto document =
      open({{.texts = {{.x = 100, .y = 500, .text = "ab"}}, .rotate = 90, .cropBox = "90 80 390 590"}});
  EXPECT_DOUBLE_EQ(document->pageSize(0).width, 510);
  EXPECT_DOUBLE_EQ(document->pageSize(0).height, 300);
  expectBox(document->pageText(0).words.at(0).bounds, 420 - below, 290 - 2 * width, 420 + above, 290);
}

TEST_F(DocumentTest, TextOutsideTheCropBoxIsNotThere) {
  const auto document = open({{.texts = {{.x = 5, .y = 5, .text = "hidden"}, {.x = 100, .y = 500, .text = "shown"}},
                               .cropBox = "90 80 390 590"}});
  EXPECT_THAT(textsOf(document->pageText(0)), ElementsAre(U"shown"));
  EXPECT_THAT(document->contentOrder(0), ElementsAre(0));
}

TEST_F(DocumentTest, EachCharacterHasItsPosition) {
  const auto document = open({{.texts = {{.x = 100, .y = 500, .text = "abc"}}}});
  const WordText &word = document->pageText(0).words.at(0);
  for (size_t i = 0; i < 3; ++i)
    expectBox(word.characters[i], 100 + static_cast<double>(i) * width, 500 - below,
              100 + static_cast<double>(i + 1) * width, 500 + above);
}

// ---- images ----

TEST_F(DocumentTest, ImageIsThePageRoundedUpToWholePixels) {
  const auto document = open({{.width = 100.5, .height = 50}});
  const Image image = document->render(0, 72);
  EXPECT_EQ(image.width, 101);
  EXPECT_EQ(image.height, 50);
  EXPECT_EQ(image.pixels.size(), 101U * 50U);
}

TEST_F(DocumentTest, ImageOfAWholeNumberOfPixelsIsNotRoundedFurther) {
  const auto document = open({{.width = 612, .height = 792}});
  for (const double dpi : {90.0, 100.0, 150.0, 300.0}) {
    EXPECT_EQ(document->render(0, dpi).width, static_cast<int>(8.5 * dpi)) << dpi;
    EXPECT_EQ(document->render(0, dpi).height, static_cast<int>(11 * dpi)) << dpi;
  }
}

TEST_F(DocumentTest, ImageOfATurnedPageLies) {
  const Image image = open({{.width = 40, .height = 60, .rotate = 270}})->render(0, 144);
  EXPECT_EQ(image.width, 120);
  EXPECT_EQ(image.height, 80);
}

TEST_F(DocumentTest, ImageIsOpaqueOnWhite) {
  const Image image = open({{.width = 100, .height = 100, .drawing = "1 0 0 rg 0 0 50 50 re f"}})->render(0, 72);
  EXPECT_EQ(*image.row(0), 0xFFFFFFFF);
  EXPECT_EQ(image.row(0)[99], 0xFFFFFFFF);
  EXPECT_EQ(image.row(75)[25], 0xFFFF0000) << "red, in the lower left quarter";
  EXPECT_EQ(image.row(75)[75], 0xFFFFFFFF);
}

TEST_F(DocumentTest, ImageOfACropBoxShowsWhatIsInIt) {
  const Image image =
      open({{.width = 100, .height = 100, .cropBox = "50 0 100 50", .drawing = "0 0 1 rg 50 0 50 50 re f"}})
          ->render(0, 72);
  EXPECT_EQ(image.width, 50);
  EXPECT_EQ(image.row(25)[25], 0xFF0000FF);
}

TEST_F(DocumentTest, LettersAreSmooth) {
  const Image image =
      open({{.texts = {{.x = 10, .y = 10, .text = "SO", .size = 40}}, .width = 100, .height = 60}})->render(0, 72);
  const std::set<uint32_t> shades(image.pixels.begin(), image.pixels.end());
  EXPECT_GT(shades.size(), 8U);
}

TEST_F(DocumentTest, ImageOfAnAbsurdSizeIsRefused) {
  const auto document = open({{.width = 10'000, .height = 10'000}});
  for (const double dpi : {0.0, -72.0, 145.0, 1e9, std::numeric_limits<double>::quiet_NaN()})
    try {
      document->render(0, dpi);
      ADD_FAILURE() << dpi;
    } catch (const HostError &error) {
      EXPECT_EQ(error.code, tavrel::errBadArgument) << dpi;
    }
}

} // namespace
} // namespace host
