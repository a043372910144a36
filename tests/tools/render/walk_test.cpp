// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The loop that steps from hit to hit, with a plug-in inside the test.
#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <map>

#include "host/view/Viewer.h"
#include "tavrel/TavrelGLT.h"
#include "tools/walk.h"

namespace {

using testing::ElementsAre;

// What the plug-in does. It is a global because the callbacks are plain functions.
struct Plan {
  std::map<int32_t, tavrel::TextSelection> marks; ///< what is painted on a page
  std::vector<int32_t> stops;                     ///< the page that each press shows; -1 for none
  size_t next = 0;
  bool endless = false; ///< the button stays enabled
  tavrel::PageView view = nullptr;
};
Plan plan;

void paint(tavrel::PageView view, void *) {
  const auto mark = plan.marks.find(TavrelView::PageViewGetPageNum(view));
  if (mark != plan.marks.end()) TavrelView::PageViewPaintSelection(view, mark->second);
}

void press(tavrel::ToolButton, void *) {
  const int32_t stop = plan.next < plan.stops.size() ? plan.stops[plan.next] : -1;
  ++plan.next;
  if (stop >= 0) TavrelView::PageViewShowPage(plan.view, stop);
}

tavrel::Bool16 isEnabled(tavrel::ToolButton, void *) { return plan.endless || plan.next < plan.stops.size() ? 1 : 0; }

struct Walk : test::Viewer {
  Walk() {
    plan = {};
    plan.view = view;
    TavrelView::RegisterPageDrawProc(testPlugin.callback(paint), nullptr);
    const tavrel::ToolButton button = TavrelView::ToolButtonCreate(runtime.atoms.atom(tavrel::gltNextButton), 0, 0, 0);
    TavrelView::ToolButtonAttachAction(button, testPlugin.callback(press), nullptr);
    TavrelView::ToolButtonAttachEnabledTest(button, testPlugin.callback(isEnabled), nullptr);
    TavrelView::ToolBarInsertButton(bar, button, 0, nullptr);
  }
  void markPages(const std::vector<int32_t> &pages) {
    for (const int32_t page : pages)
      plan.marks[page] = model->select(page, {{0, 10, 10, 0}});
  }
  tools::PageSink sink() {
    return {[this](const host::Drawing &drawing) { written.push_back(drawing.page); },
            [this](int32_t page, const host::DocumentError &) { damaged.push_back(page); }};
  }
  void walk(size_t limit = 10) { tools::walkMarkedPages(app, *document, limit, sink()); }

  // Makes pages throw the exception that a damaged page throws.
  void damagePages(const std::vector<int32_t> &pages) const {
    document->view->setSource([this, pages](int32_t page, double) -> const host::Image * {
      if (std::count(pages.begin(), pages.end(), page) > 0)
        throw host::DocumentError(host::DocumentError::unreadable, "test.pdf: page is damaged");
      return &whitePage;
    });
  }

  const host::Image whitePage{100, 100, std::vector<uint32_t>(10'000, 0xFFFFFFFF)};
  std::vector<int32_t> written, damaged;
};

TEST_F(Walk, WritesTheMarkedPagesThatItVisits) {
  markPages({0, 2, 4});
  plan.stops = {2, 4};
  walk();
  EXPECT_THAT(written, ElementsAre(0, 2, 4));
}

TEST_F(Walk, WritesNoPageWithoutMarks) {
  markPages({3});
  plan.stops = {1, 3, 4};
  walk();
  EXPECT_THAT(written, ElementsAre(3));
}

TEST_F(Walk, ReportsAPageWhoseMarksCannotBePainted) {
  plan.marks[3] = model->selectOffPage(3);
  plan.stops = {1, 3, 4};
  walk();
  EXPECT_THAT(written, ElementsAre(3));
}

TEST_F(Walk, WritesAPageOnceHoweverOftenItIsVisited) {
  markPages({1, 2});
  plan.stops = {1, 2, 1, 2, 1};
  walk();
  EXPECT_THAT(written, ElementsAre(1, 2));
}

TEST_F(Walk, StepsOverPagesThatTheDocumentLacks) {
  markPages({1, 4});
  plan.stops = {99, 1, 99, 99, 4}; // a page that does not exist ends the action with an error
  walk();
  EXPECT_THAT(written, ElementsAre(1, 4));
}

TEST_F(Walk, EndsAfterMorePressesInARowThanTheLimitWithoutANewPage) {
  plan.endless = true;
  walk(10);
  EXPECT_EQ(plan.next, 11U);
}

TEST_F(Walk, TheLimitCountsPressesInARow) {
  markPages({1, 2, 3});
  plan.stops = {-1, -1, 1, -1, -1, 2, -1, -1, 3};
  walk(2);
  EXPECT_THAT(written, ElementsAre(1, 2, 3));
}

TEST_F(Walk, EndsIfTheSamePagesRepeatForever) {
  markPages({1, 2});
  for (int n = 0; n < 1000; ++n)
    plan.stops.push_back(1 + n % 2);
  plan.endless = true;
  walk(10);
  EXPECT_THAT(written, ElementsAre(1, 2));
  EXPECT_EQ(plan.next, 13U);
}

TEST_F(Walk, GoesOnAfterADamagedPageAndReportsItOnce) {
  markPages({0, 1, 3, 4});
  damagePages({1, 3});
  plan.stops = {1, 3, -1, 1, 4};
  walk();
  EXPECT_THAT(written, ElementsAre(0, 4));
  EXPECT_THAT(damaged, ElementsAre(1, 3));
}

TEST_F(Walk, OfAllPagesGoesOnAfterADamagedOne) {
  damagePages({0, 3});
  tools::walkAllPages(app, *document, sink());
  EXPECT_THAT(written, ElementsAre(1, 2, 4));
  EXPECT_THAT(damaged, ElementsAre(0, 3));
}

TEST_F(Walk, WithoutTheButtonThePageShownIsWritten) {
  markPages({0, 1});
  TavrelView::ToolButtonDetach(TavrelView::ToolBarFindButton(bar, runtime.atoms.atom(tavrel::gltNextButton)));
  walk();
  EXPECT_THAT(written, ElementsAre(0));
}

TEST_F(Walk, WithoutAToolBarThePageShownIsWritten) {
  markPages({0});
  app.removeToolBar();
  walk();
  EXPECT_THAT(written, ElementsAre(0));
}

TEST_F(Walk, OfAllPagesVisitsThemInOrderMarkedOrNot) {
  markPages({3});
  TavrelView::PageViewShowPage(view, 3);
  tools::walkAllPages(app, *document, sink());
  EXPECT_THAT(written, ElementsAre(0, 1, 2, 3, 4));
  EXPECT_EQ(plan.next, 0U) << "and presses nothing";
}

} // namespace
