// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A page view as a window shows it: which part of the page is drawn, and where its pages come from.
#include <gmock/gmock.h>

#include <numeric>

#include "Viewer.h"

namespace {

using testing::ElementsAre;

struct Window : test::Viewer {
  host::PageView &shown() const { return *document->view; }
  tavrel::TextSelection corner() const { return model->select(0, {{40, 170, 70, 140}}); } // 40,30 to 70,60 in pixels
};

// The page of 100 x 200 points is as wide as a window of so many pixels.
TEST_F(Window, OfOnePixelShowsOnePixel) {
  window->setWindow(1, 1);
  EXPECT_EQ(shown().visible().right, 1);
  EXPECT_EQ(shown().visible().bottom, 1);
  const auto drawing = app.draw(*document);
  EXPECT_EQ(drawing->image.width, 1);
  EXPECT_EQ(drawing->image.height, 1);
}

// A square of 64 points has the largest image at 4096 pixels a side, a strip at the longest side: 20000 pixels. A pixel
// less is allowed, for rounding.
// A window of 50 pixels on a page of 100 x 200 that doubles.
TEST_F(Window, OnlyTheVisiblePartIsDrawn) {
  window->setWindow(50, 40);
  window->scrollTo(20, 60);
  const auto drawing = app.draw(*document);
  ASSERT_TRUE(drawing);
  EXPECT_EQ(drawing->x, 20);
  EXPECT_EQ(drawing->y, 60);
  EXPECT_EQ(drawing->image.width, 50);
  EXPECT_EQ(drawing->image.height, 40);
  EXPECT_EQ(drawing->image.pixels.size(), 2000U);
}

TEST_F(Window, ThePartDrawnIsThatOfThePage) {
  host::Image page{100, 200, std::vector<uint32_t>(20000)};
  std::iota(page.pixels.begin(), page.pixels.end(), 0U);
  shown().setSource([&](int32_t, double) { return &page; });
  window->setWindow(3, 2);
  window->scrollTo(20, 60);
  EXPECT_THAT(app.draw(*document)->image.pixels, ElementsAre(6020, 6021, 6022, 6120, 6121, 6122));
}

TEST_F(Window, ThePartDrawnTakesNoMoreMemoryThanItsPixels) {
  window->setWindow(50, 40);
  EXPECT_EQ(app.draw(*document)->image.pixels.capacity(), 2000U);
}

TEST_F(Window, TheMarginIsDrawnAsFarAsThePageReaches) {
  window->setWindow(50, 40, 10);
  window->scrollTo(5, 60);
  const auto drawing = app.draw(*document);
  ASSERT_TRUE(drawing);
  EXPECT_EQ(drawing->x, 0);
  EXPECT_EQ(drawing->y, 50);
  EXPECT_EQ(drawing->image.width, 65);
  EXPECT_EQ(drawing->image.height, 60);
  EXPECT_EQ(shown().visible().left, 5) << "what is drawn for looks is not visible";
}

tavrel::TextSelection s_painted;
void paint(tavrel::PageView view, void *) { TavrelView::PageViewPaintSelection(view, s_painted); }

TEST_F(Window, MarksLieWhereThePageHasThem) {
  s_painted = corner();
  TavrelView::RegisterPageDrawProc(testPlugin.callback(paint), nullptr);
  window->setWindow(50, 50);
  window->scrollTo(20, 40); // shows half of the mark's height
  const auto drawing = app.draw(*document);
  ASSERT_TRUE(drawing);
  EXPECT_EQ(drawing->image.row(0)[20], 0xFF000000U);
  EXPECT_EQ(drawing->image.row(19)[49], 0xFF000000U);
  EXPECT_EQ(drawing->image.row(20)[20], test::FakeDocument::paper);
  EXPECT_EQ(drawing->image.row(0)[19], test::FakeDocument::paper);
}

TEST_F(Window, APageThatIsNotThereYetIsDrawnLater) {
  const host::Image *there = nullptr;
  shown().setSource([&](int32_t, double) { return there; });
  EXPECT_FALSE(app.drawIfNeeded(*document));
  EXPECT_TRUE(shown().invalid());
  const host::Image image = model->render(0, dpi);
  there = &image;
  EXPECT_TRUE(app.drawIfNeeded(*document));
  EXPECT_EQ(model->renders, 1) << "the view renders nothing itself";
}

TEST_F(Window, IsPreparedBeforeThePluginsAreNotifiedOfADocument) {
  int width = 0;
  app.prepare = [&](host::ViewerDocument &opened) { width = opened.view->visible().right; };
  const host::ViewerDocument &opened = app.open(std::make_unique<test::FakeDocument>(1), "other.pdf", dpi, "page=1");
  EXPECT_EQ(width, 100);
  EXPECT_EQ(opened.parameters, "page=1");
  app.prepare = {};
}

TEST_F(Window, ADocumentsParametersAndItsFileCanBeAskedFor) {
  host::ViewerDocument &opened = app.open(std::make_unique<test::FakeDocument>(1), "other.pdf", dpi, "page=1");
  const tavrel::Doc handle = app.documents().handle(&opened);
  EXPECT_FALSE(app.documents().find(handle).parametersRead);
  EXPECT_STREQ(TavrelView::DocGetOpenParameters(handle), "page=1");
  EXPECT_TRUE(app.documents().find(handle).parametersRead);
  EXPECT_EQ(TavrelView::DocGetFile(handle), std::filesystem::current_path() / "other.pdf");
  EXPECT_EQ(TavrelView::DocGetOpenParameters(doc), nullptr);
}

TEST_F(Window, AViewKnowsItsNumberOfPages) {
  EXPECT_EQ(TavrelView::PageViewGetPageCount(view), pageCount);
  EXPECT_EQ(TavrelView::PageViewGetPageCount(nullptr), 0);
}

TEST_F(Window, MarkedPagesAreKeptInOrderEachOnceAndOnlyThoseThatThereAre) {
  int notified = 0;
  app.statusListener = [&] { ++notified; };
  const int32_t pages[] = {3, 1, 3, -1, pageCount};
  TavrelView::DocMarkPages(testPlugin.id, doc, pages, 5);
  EXPECT_THAT(document->markedPages.at(testPlugin.id), ElementsAre(1, 3));
  EXPECT_EQ(notified, 1);
  TavrelView::DocMarkPages(testPlugin.id, doc, pages, 5);
  EXPECT_EQ(notified, 1) << "equal pages are not notified again";
  TavrelView::DocMarkPages(testPlugin.id, doc, nullptr, 0);
  EXPECT_TRUE(document->markedPages.empty());
  EXPECT_EQ(notified, 2);
}

TEST_F(Window, EveryPageOfTheDocumentMayBeMarked) {
  const int32_t pages[] = {-1, 0, pageCount - 1, pageCount};
  TavrelView::DocMarkPages(testPlugin.id, doc, pages, 4);
  EXPECT_THAT(document->markedPages.at(testPlugin.id), ElementsAre(0, pageCount - 1));
}

std::string s_received;
tavrel::Bool16 receive(tavrel::Atom, const void *data, uint32_t length, tavrel::Doc) {
  s_received.assign(static_cast<const char *>(data), length);
  return 1;
}

TEST_F(Window, APluginMayAttachAuxiliaryData) {
  s_received.clear();
  const tavrel::Atom type = Kernel::AtomFromString("notes");
  const tavrel::AuxDataHandler handler{8, testPlugin.callback(receive)};
  TavrelView::RegisterAuxDataHandler(testPlugin.id, type, &handler);
  EXPECT_EQ(TavrelView::DocAttachAuxData(doc, type, "abc", 3), 1);
  EXPECT_EQ(s_received, "abc");
  EXPECT_EQ(TavrelView::DocAttachAuxData(doc, Kernel::AtomFromString("other"), "abc", 3), 0);
  EXPECT_EQ(TavrelView::DocAttachAuxData(doc, type, "d", 1), 1);
  EXPECT_EQ(s_received, "d");
  EXPECT_EQ(TavrelView::DocAttachAuxData(doc, type, nullptr, 0), 1);
  EXPECT_EQ(s_received, "");
}

TEST_F(Window, AuxiliaryDataOfAnUnknownDocumentRaises) {
  const tavrel::Atom type = Kernel::AtomFromString("notes");
  EXPECT_EQ(testPlugin.attempt([=] { TavrelView::DocAttachAuxData(nullptr, type, "abc", 3); }), tavrel::errBadHandle);
}

} // namespace
