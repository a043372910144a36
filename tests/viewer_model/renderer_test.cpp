// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The rendering thread: files, pages, and requests that are obsolete.
#include "viewer/model/renderer.h"

#include <gmock/gmock.h>

#include <fstream>

#include "TestDocuments.h"
#include "Waker.h"

namespace viewer {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct RendererTest : testing::Test {
  RendererTest() {
    renderer.emplace([this] {
      const auto action = onThread; // a copy: the action may replace itself
      if (action) action();
      waker.wake();
    });
  }
  bool until(const std::function<bool()> &done) {
    return waker.until([&] {
      Renderer::Results results = renderer->collect();
      std::move(results.opened.begin(), results.opened.end(), std::back_inserter(opened));
      std::move(results.rendered.begin(), results.rendered.end(), std::back_inserter(rendered));
      changed.insert(changed.end(), results.changed.begin(), results.changed.end());
      return done();
    });
  }
  void open(uint64_t document, const std::filesystem::path &file, const std::string &password = {}) {
    const size_t before = opened.size();
    renderer->open(document, file, password);
    ASSERT_TRUE(until([&] { return opened.size() > before; }));
  }
  bool renders(size_t pages) {
    return until([&] { return rendered.size() >= pages; });
  }
  std::vector<int32_t> pages() const {
    std::vector<int32_t> result;
    for (const RenderedPage &page : rendered)
      result.push_back(page.key.page);
    return result;
  }

  test::ScratchFolder folder;
  test::Waker waker;
  std::function<void()> onThread; ///< called before the waker; the thread does nothing else meanwhile
  std::vector<OpenedFile> opened;
  std::vector<RenderedPage> rendered;
  std::vector<uint64_t> changed;
  std::optional<Renderer> renderer;
};

TEST_F(RendererTest, OpensAFile) {
  open(7, folder.pdf(test::numberedPages(3)));
  EXPECT_EQ(opened[0].document, 7U);
  ASSERT_NE(opened[0].pdf, nullptr) << opened[0].error;
  EXPECT_EQ(opened[0].pdf->pageCount(), 3);
}

TEST_F(RendererTest, AMissingFileIsNamed) {
  open(1, "/nowhere/missing.pdf");
  EXPECT_EQ(opened[0].pdf, nullptr);
  EXPECT_EQ(opened[0].error, "/nowhere/missing.pdf: No such file or directory");
  EXPECT_FALSE(opened[0].needsPassword);
}

TEST_F(RendererTest, AnEncryptedFileNeedsAPassword) {
  open(1, test::locked(folder.pdf(test::numberedPages(1))));
  EXPECT_TRUE(opened[0].needsPassword);
  EXPECT_THAT(opened[0].error, HasSubstr("is encrypted: a password is needed"));
}

TEST_F(RendererTest, AnotherPasswordIsNeededAfterAWrongOne) {
  open(1, test::locked(folder.pdf(test::numberedPages(1))), "wrong");
  EXPECT_TRUE(opened[0].needsPassword);
}

TEST_F(RendererTest, ThePasswordOpensItsPages) {
  open(1, test::locked(folder.pdf(test::numberedPages(1))), "user");
  renderer->want({{1, 0, 72}});
  ASSERT_TRUE(renders(1));
  EXPECT_EQ(rendered[0].image.width, 400) << rendered[0].error;
}

TEST_F(RendererTest, RendersAtTheRequestedSize) {
  open(1, folder.pdf(test::numberedPages(2)));
  renderer->want({{1, 1, 36}});
  ASSERT_TRUE(renders(1));
  EXPECT_EQ(rendered[0].key, (PageKey{1, 1, 36}));
  EXPECT_EQ(rendered[0].image.width, 200);
  EXPECT_EQ(rendered[0].image.height, 300);
}

TEST_F(RendererTest, RendersTheMostUrgentFirst) {
  open(1, folder.pdf(test::numberedPages(3)));
  renderer->want({{1, 2, 72}, {1, 0, 72}, {1, 1, 72}});
  ASSERT_TRUE(renders(3));
  EXPECT_THAT(pages(), ElementsAre(2, 0, 1));
}

TEST_F(RendererTest, AReplacedRequestIsNotRendered) {
  open(1, folder.pdf(test::numberedPages(4)));
  onThread = [this] {
    onThread = {};
    renderer->want({{1, 3, 72}});
  };
  renderer->want({{1, 0, 72}, {1, 1, 72}, {1, 2, 72}});
  ASSERT_TRUE(renders(2));
  EXPECT_THAT(pages(), ElementsAre(0, 3));
}

TEST_F(RendererTest, APageRequestedDuringItsRenderingIsRenderedOnce) {
  open(1, folder.pdf({test::slowPage(), test::pageWith("next")}));
  const std::vector<PageKey> request{{1, 0, 72}, {1, 1, 72}};
  renderer->want(request);
  // The window repeats its request at every event. Only the first page takes long.
  ASSERT_TRUE(until([&] {
    renderer->want(request);
    waker.wake();
    return !rendered.empty();
  }));
  ASSERT_TRUE(until([&] { return rendered.back().key.page == 1; }));
  EXPECT_EQ(std::ranges::count(pages(), 0), 1);
}

TEST_F(RendererTest, AClosedDocumentIsNotRendered) {
  open(1, folder.pdf(test::numberedPages(3)));
  open(2, folder.pdf(test::numberedPages(3)));
  onThread = [this] {
    onThread = {};
    renderer->close(1);
  };
  renderer->want({{1, 0, 72}, {1, 1, 72}, {2, 2, 72}});
  ASSERT_TRUE(renders(2));
  EXPECT_THAT(pages(), ElementsAre(0, 2));
}

TEST_F(RendererTest, RequestsOfAClosedDocumentAreSkipped) {
  open(1, folder.pdf(test::numberedPages(1)));
  open(2, folder.pdf(test::numberedPages(2)));
  renderer->close(1);
  renderer->want({{1, 0, 72}, {9, 0, 72}, {2, 1, 72}});
  ASSERT_TRUE(renders(1));
  EXPECT_THAT(pages(), ElementsAre(1));
}

TEST_F(RendererTest, AClosedDocumentsFileIsClosed) {
  const auto first = folder.write("a.pdf", test::pdfOf(test::numberedPages(1)));
  open(1, first);
  open(2, folder.pdf(test::numberedPages(1)));
  opened[0].pdf.reset();
  renderer->close(1);
  renderer->want({{2, 0, 72}});
  ASSERT_TRUE(renders(1));
  EXPECT_FALSE(test::hasOpen(first));
}

TEST_F(RendererTest, ADocumentThatIsClosedBeforeItIsOpenIsNotRendered) {
  const auto file = folder.pdf(test::numberedPages(3));
  onThread = [this, file] {
    onThread = {};
    renderer->open(2, file, {});
    renderer->close(2);
  };
  open(1, file);
  renderer->want({{2, 0, 72}, {1, 1, 72}});
  ASSERT_TRUE(until([&] { return !rendered.empty() && rendered.back().key.document == 1; }));
  EXPECT_THAT(pages(), ElementsAre(1));
}

TEST_F(RendererTest, APageThatCannotBeRenderedHasAnError) {
  open(1, folder.write("damaged.pdf", test::withDamagedPages(test::numberedPages(1), 1)));
  renderer->want({{1, 1, 72}, {1, 0, 72}});
  ASSERT_TRUE(renders(2));
  EXPECT_THAT(rendered[0].error, HasSubstr("page 2 is damaged"));
  EXPECT_THAT(rendered[1].error, IsEmpty());
}

TEST_F(RendererTest, AnImageBeyondAllBoundsIsAnError) {
  open(1, folder.pdf(test::numberedPages(1)));
  renderer->want({{1, 0, 1e6}});
  ASSERT_TRUE(renders(1));
  EXPECT_THAT(rendered[0].error, HasSubstr("no image of a usable size"));
}

TEST_F(RendererTest, AnUnchangedFileIsNotReported) {
  open(1, folder.pdf(test::numberedPages(1)));
  renderer->want({{1, 0, 72}});
  ASSERT_TRUE(renders(1));
  EXPECT_THAT(changed, IsEmpty());
}

// Changes of a file while it is open. Each is reported once, and each page has a result.
struct Change {
  const char *name;
  void (*happens)(const std::filesystem::path &file);
};

struct ChangedFile : RendererTest, testing::WithParamInterface<Change> {};

TEST_P(ChangedFile, IsReportedOnceAndItsPagesHaveResults) {
  const auto file = folder.pdf(test::numberedPages(3));
  open(1, file);
  GetParam().happens(file);
  renderer->want({{1, 0, 72}, {1, 1, 72}, {1, 2, 72}});
  ASSERT_TRUE(renders(3));
  EXPECT_THAT(changed, ElementsAre(1));
  for (const RenderedPage &page : rendered)
    EXPECT_NE(page.image.pixels.empty(), page.error.empty()) << page.key.page;
}

INSTANTIATE_TEST_SUITE_P(
    Renderer, ChangedFile,
    testing::Values(
        Change{"IsRemoved", [](const std::filesystem::path &file) { std::filesystem::remove(file); }},
        Change{"IsTruncated", [](const std::filesystem::path &file) { std::filesystem::resize_file(file, 100); }},
        Change{"IsEmptied", [](const std::filesystem::path &file) { std::filesystem::resize_file(file, 0); }},
        Change{"Grows", [](const std::filesystem::path &file) { std::ofstream(file, std::ios::app) << "more"; }},
        Change{"IsReplaced",
               [](const std::filesystem::path &file) {
                 const std::filesystem::path other = file.parent_path() / "other.pdf";
                 std::ofstream(other) << test::pdfOf(test::numberedPages(1));
                 std::filesystem::rename(other, file);
               }}),
    [](const auto &change) { return change.param.name; });

TEST_F(RendererTest, EndsWhileItIsBusy) {
  open(1, folder.pdf({test::slowPage(), test::slowPage(), test::slowPage()}));
  renderer->want({{1, 0, 72}, {1, 1, 72}, {1, 2, 72}});
  ASSERT_TRUE(renders(1));
  const size_t wakes = waker.wakes();
  renderer.reset();
  EXPECT_LE(waker.wakes(), wakes + 1); // the page being rendered
}

TEST_F(RendererTest, EndsWithFilesToOpen) {
  const auto file = folder.pdf(test::numberedPages(1));
  for (uint64_t document = 1; document <= 50; ++document)
    renderer->open(document, file, {});
  renderer.reset();
  EXPECT_LE(waker.wakes(), 50U);
}

} // namespace
} // namespace viewer
