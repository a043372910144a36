// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Sizes of pages that come after the pages have been laid out.
#include <gtest/gtest.h>

#include "TestDocuments.h"
#include "host/document/answering.h"
#include "viewer/model/session.h"

namespace viewer {
namespace {

// Answers at once, but for sizes: those are held back, and nobody waits for them.
class LateSizes final : public host::Backend {
public:
  LateSizes(const bool &released, std::unique_ptr<host::Backend> right)
      : released_(released), right_(std::move(right)) {}

  void start(host::Orders order) noexcept override {
    const uint64_t id = order.front().id;
    host::Orders &list = std::holds_alternative<host::SizesRequest>(order.front().request) ? late_ : ready_;
    right_->start(std::move(order));
    list.splice(list.end(), right_->await(id, {}));
  }
  void raise(uint64_t /*id*/, host::Urgency /*urgency*/) noexcept override {}
  void cancel(uint64_t id) noexcept override {
    for (host::Orders *list : {&ready_, &late_})
      list->remove_if([=](const host::Order &order) { return order.id == id; });
  }
  bool underWay(uint64_t /*id*/) const noexcept override { return false; }
  host::Orders take() noexcept override {
    if (released_) ready_.splice(ready_.end(), late_);
    return std::exchange(ready_, {});
  }
  host::Orders await(uint64_t /*id*/, host::Time /*deadline*/) noexcept override { return {}; }

private:
  const bool &released_;
  std::unique_ptr<host::Backend> right_;
  host::Orders ready_, late_;
};

// The window is 400 pixels wide, and the pages 800 points.
struct LateSizesTest : testing::Test {
  LateSizesTest() {
    std::vector<test::PdfPage> pages(100, {.width = 800, .height = 400});
    session.opener.open({folder.write("wide.pdf", test::pdfOf(pages)), {}});
    session.moving.setWindow(400, 300, 0);
    settle();
  }
  void settle() {
    for (int round = 0; round < 10; ++round) {
      session.arrivals.collect();
      session.screen.draw();
    }
  }
  test::ScratchFolder folder;
  bool released = false;
  host::Runtime runtime;
  host::Application app{runtime};
  Session session{app, [] {},
                  [this](const std::filesystem::path &file) {
                    return std::make_shared<host::Service>(
                        file,
                        std::make_unique<LateSizes>(released, host::answeringAtOnce(host::PdfFile::open(file, ""))));
                  }};
};

TEST_F(LateSizesTest, LayOutThePageThatIsShownWhenTheyCome) {
  session.moving.goToPage(70); // it is waited for
  session.moving.goToPage(72); // of the same run
  settle();
  ASSERT_GT(session.documents.window()->dpi(), 40) << "a letter page, so far";
  released = true;
  settle();
  EXPECT_EQ(session.documents.window()->dpi(), 36);
  ASSERT_TRUE(session.screen.shown().drawing);
  EXPECT_EQ(session.screen.shown().drawing->dpi, 36);
  EXPECT_EQ(session.tiles.error(), "");
}

} // namespace
} // namespace viewer
