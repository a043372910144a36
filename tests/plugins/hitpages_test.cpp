// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The pages with hits, marked beside the scroll bar.
#include <gmock/gmock.h>

#include <numeric>

#include "Plugins.h"

namespace {

using namespace tavrel;
using testing::ElementsAre;
using testing::IsEmpty;

class HitPages : public test::Plugins {
protected:
  using Numbers = std::vector<int32_t>;

  /// Registers a list with a hit on each of these pages.
  void registerHits(const Numbers &pages) const {
    HLL *list = TavrelGLT::GLT_NewHLL(nullptr);
    for (const int32_t page : pages)
      TavrelGLT::HLL_AddHL(list, page, 0, 1);
    TavrelGLT::GLT_RegisterWordOffsetHLL(doc, list, nullptr, nullptr, 0, nullptr, 2);
    TavrelGLT::GLT_DeleteHLL(list);
  }
  /// The pages that are marked; only one plug-in marks pages.
  static Numbers markedIn(const host::ViewerDocument &opened) {
    return opened.markedPages.empty() ? Numbers{} : opened.markedPages.begin()->second;
  }
  Numbers markedAfterADraw() {
    app.draw(*document);
    return markedIn(*document);
  }
};

TEST_F(HitPages, AreNoneWithoutHits) { EXPECT_THAT(markedAfterADraw(), IsEmpty()); }

TEST_F(HitPages, AreMarkedAfterADraw) {
  registerHits({3, 1});
  EXPECT_THAT(markedIn(*document), IsEmpty()) << "nothing is drawn yet";
  EXPECT_THAT(markedAfterADraw(), ElementsAre(1, 3));
  ASSERT_EQ(document->markedPages.size(), 1U);
  const ExtensionID whose = document->markedPages.begin()->first;
  EXPECT_EQ(host_.runtime.extensions.name(whose), "HitPages");
  EXPECT_EQ(reports, std::vector<std::string>{});
}

TEST_F(HitPages, ChangeWithAnotherList) {
  registerHits({1, 3});
  app.draw(*document);
  registerHits({0, 2, 3});
  EXPECT_THAT(markedAfterADraw(), ElementsAre(0, 2, 3));
  registerHits({2});
  EXPECT_THAT(markedAfterADraw(), ElementsAre(2));
}

TEST_F(HitPages, ChangeWhenTheListChanges) {
  registerHits({1});
  app.draw(*document);
  TavrelGLT::HLL_AddHL(TavrelGLT::GLT_GetHLL(doc), 2, 0, 1);
  EXPECT_THAT(markedAfterADraw(), ElementsAre(1, 2));
}

TEST_F(HitPages, AreOnlyPagesThatTheDocumentHas) {
  Numbers pages(3000);
  std::iota(pages.begin(), pages.end(), 2);
  registerHits(pages);
  EXPECT_THAT(markedAfterADraw(), ElementsAre(2, 3));
}

TEST_F(HitPages, AreFoundAfterPagesThatTheDocumentLacks) {
  registerHits({-1, 900, 3, 4, 70'000, 0});
  EXPECT_THAT(markedAfterADraw(), ElementsAre(0, 3));
}

TEST_F(HitPages, AreRemovedWithTheList) {
  registerHits({1, 3});
  app.draw(*document);
  TavrelGLT::GLT_UnregisterHLL(doc, TavrelGLT::GLT_GetHLL(doc));
  EXPECT_THAT(markedAfterADraw(), IsEmpty());
}

TEST_F(HitPages, AreSeparateForEachDocument) {
  host::ViewerDocument &first = *document;
  registerHits({1});
  app.draw(first);
  open();
  registerHits({2, 3});
  EXPECT_THAT(markedAfterADraw(), ElementsAre(2, 3));
  EXPECT_THAT(markedIn(first), ElementsAre(1));
}

} // namespace
