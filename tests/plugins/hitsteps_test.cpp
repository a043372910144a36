// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Two plug-ins together: one has hits, the other reads them through its exported table. The test registers lists
// through the same table.
#include "Plugins.h"

namespace {

using namespace tavrel;

constexpr ColorValue green = {colorSpaceRGB, {0, fixedOne, 0, 0}};
constexpr uint32_t greenPixel = 0xFF00FF00, redPixel = 0xFFFF0000;

size_t pixelsOf(const host::Drawing &drawing, uint32_t color) {
  return static_cast<size_t>(std::count(drawing.image.pixels.begin(), drawing.image.pixels.end(), color));
}

// The codes that the jump procedure was called with.
std::vector<uint32_t> jumps;
void noteJump(Doc, HLL *, uint32_t code, void *) { jumps.push_back(code); }

class Plugins : public test::Plugins {
protected:
  Plugins() { jumps.clear(); }

  /// Six hits: two on page 0, three on page 2, one on page 3. They are at these positions of a page's text or words.
  static HLL *sixHits(uint16_t first, uint16_t second, uint16_t third, uint16_t length) {
    HLL *list = TavrelGLT::GLT_NewHLL(nullptr);
    for (const uint16_t pos : {first, second})
      TavrelGLT::HLL_AddHL(list, 0, pos, length);
    for (const uint16_t pos : {first, second, third})
      TavrelGLT::HLL_AddHL(list, 2, pos, length);
    TavrelGLT::HLL_AddHL(list, 3, second, length);
    return list;
  }
  void registerInCharacters() {
    HLL *list = sixHits(0, 6, 11, 4);
    TavrelGLT::GLT_RegisterHLL(doc, list, GLT_CHARACTER_OFFSETS, noteJump, nullptr, 1, nullptr);
    TavrelGLT::GLT_DeleteHLL(list);
  }
  void registerInWords() {
    HLL *list = sixHits(0, 1, 2, 1);
    TavrelGLT::GLT_RegisterWordOffsetHLL(doc, list, noteJump, nullptr, 1, &green, 2);
    TavrelGLT::GLT_DeleteHLL(list);
  }
  host::Drawing draw() { return *app.draw(*document); }
  std::string statusAfterADraw() {
    draw();
    return app.statusText();
  }
  std::string statusAfterJump(uint32_t code) {
    TavrelGLT::GLT_Jump(doc, code);
    return statusAfterADraw();
  }
};

TEST_F(Plugins, AreLoadedInOrderOfTheirNames) {
  std::vector<std::string> names;
  for (const host::Plugin &plugin : plugins) {
    names.push_back(plugin.name);
    EXPECT_EQ(plugin.state, host::PluginState::initialised) << plugin.reason;
  }
  EXPECT_EQ(names, (std::vector<std::string>{"BRZ", "HitPages", "HitSteps", "TavrelGLT"}));
  EXPECT_EQ(reports, std::vector<std::string>{});
}

TEST_F(Plugins, OfferTheTableUpToVersionFive) {
  const Atom name = Kernel::AtomFromString("TavrelGLT");
  ASSERT_NE(gTavrelGLTHFT, nullptr);
  EXPECT_EQ(Kernel::RequestTable(name, 0x00050000), gTavrelGLTHFT);
  EXPECT_EQ(Kernel::RequestTable(name, 0x00050001), nullptr);
}

TEST_F(Plugins, ShowNothingForADocumentWithoutHits) { EXPECT_EQ(statusAfterADraw(), ""); }

TEST_F(Plugins, ShowTheNumberOfTheHitAfterADraw) {
  registerInCharacters();
  EXPECT_EQ(app.statusText(), "") << "nothing is drawn yet";
  EXPECT_EQ(statusAfterADraw(), "hit 1 of 6, page 1 of 3");
}

TEST_F(Plugins, ShowTheHitOfThePageThatIsTurnedTo) {
  registerInCharacters();
  document->view->showPage(2);
  EXPECT_EQ(statusAfterADraw(), "hit 3 of 6, page 2 of 3");
  document->view->showPage(1);
  EXPECT_EQ(statusAfterADraw(), "6 hits on 3 pages, none on this one");
}

TEST_F(Plugins, FollowJumpsFromPageToPage) {
  registerInCharacters();
  EXPECT_EQ(statusAfterJump(GLT_JUMP_NEXT), "hit 3 of 6, page 2 of 3");
  EXPECT_EQ(statusAfterJump(GLT_JUMP_LAST), "hit 6 of 6, page 3 of 3");
  EXPECT_EQ(statusAfterJump(GLT_JUMP_FIRST), "hit 1 of 6, page 1 of 3");
  EXPECT_EQ(jumps, (std::vector<uint32_t>{GLT_JUMP_NEXT, GLT_JUMP_LAST, GLT_JUMP_FIRST}));
}

TEST_F(Plugins, MarkAllHitsOfAPageInBothUnits) {
  registerInCharacters();
  document->view->showPage(2);
  const host::Drawing inCharacters = draw();
  registerInWords();
  document->view->showPage(2);
  const host::Drawing inWords = draw();
  EXPECT_EQ(inCharacters.marks, 3U);
  EXPECT_EQ(inWords.marks, 3U);
  EXPECT_GT(pixelsOf(inCharacters, redPixel), 200U);
  EXPECT_GT(pixelsOf(inWords, greenPixel), pixelsOf(inCharacters, redPixel))
      << "complete words, not their first four letters";
  EXPECT_EQ(pixelsOf(inWords, redPixel), 0U);
}

TEST_F(Plugins, TakeAnotherColorWithTheNextDraw) {
  registerInCharacters();
  TavrelGLT::GLT_SetColor(doc, &green);
  ColorValue color = {};
  TavrelGLT::GLT_GetColor(doc, &color);
  EXPECT_EQ(color.component[1], fixedOne);
  const host::Drawing drawing = draw();
  EXPECT_GT(pixelsOf(drawing, greenPixel), 150U);
  EXPECT_EQ(pixelsOf(drawing, redPixel), 0U);
}

TEST_F(Plugins, StepFromHitToHitInTheModeForOneHit) {
  registerInCharacters();
  TavrelGLT::GLT_SetViewMode(doc, GLT_VIEW_ONE);
  EXPECT_EQ(TavrelGLT::GLT_GetViewMode(doc), GLT_VIEW_ONE);
  EXPECT_EQ(draw().marks, 1U);
  TavrelGLT::GLT_Jump(doc, GLT_JUMP_NEXT); // a draw goes back to the page's first hit
  uint32_t pageIndex = 9;
  uint16_t wordIndex = 9;
  EXPECT_EQ(TavrelGLT::GLT_GetPos(doc, &pageIndex, &wordIndex), 1);
  EXPECT_EQ(pageIndex, 0U);
  EXPECT_EQ(wordIndex, 1U);
  TavrelGLT::GLT_SetViewMode(doc, GLT_VIEW_NONE);
  EXPECT_EQ(draw().marks, 0U);
}

TEST_F(Plugins, CountAPageWithManyHits) {
  HLL *list = TavrelGLT::GLT_NewHLL(nullptr);
  for (uint16_t pos = 0; pos < 1000; ++pos)
    TavrelGLT::HLL_AddHL(list, 0, pos, 1);
  TavrelGLT::HLL_AddHL(list, 2, 0, 1);
  TavrelGLT::GLT_RegisterHLL(doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
  TavrelGLT::GLT_DeleteHLL(list);
  EXPECT_EQ(statusAfterJump(GLT_JUMP_LAST), "hit 1001 of 1001, page 2 of 2");
}

TEST_F(Plugins, CountOnlyThePagesThatTheDocumentHas) {
  HLL *list = TavrelGLT::GLT_NewHLL(nullptr);
  for (const int32_t page : {-7, 1, 4, 2, 1000, 3})
    for (uint16_t pos = 0; pos < 2; ++pos)
      TavrelGLT::HLL_AddHL(list, page, pos, 1);
  TavrelGLT::GLT_RegisterHLL(doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
  TavrelGLT::GLT_DeleteHLL(list);
  document->view->showPage(2);
  EXPECT_EQ(statusAfterADraw(), "hit 3 of 6, page 2 of 3");
  document->view->showPage(3);
  EXPECT_EQ(statusAfterADraw(), "hit 5 of 6, page 3 of 3");
  EXPECT_EQ(TavrelGLT::HLL_GetWordCount(TavrelGLT::GLT_GetHLL(doc)), 12U) << "the list has all hits of the file";
  EXPECT_EQ(TavrelGLT::HLL_GetPageCount(TavrelGLT::GLT_GetHLL(doc)), 6U);
}

TEST_F(Plugins, ShowNothingForAHitOnAPageThatTheDocumentLacks) {
  HLL *list = TavrelGLT::GLT_NewHLL(nullptr);
  for (const int32_t page : {1, 4})
    TavrelGLT::HLL_AddHL(list, page, 0, 1);
  TavrelGLT::GLT_RegisterHLL(doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
  TavrelGLT::GLT_DeleteHLL(list);
  document->view->showPage(0);
  TavrelGLT::GLT_SetPos(doc, 1, 0, 0);
  EXPECT_EQ(statusAfterADraw(), "1 hit on 1 page, none on this one");
  document->view->showPage(1);
  EXPECT_EQ(statusAfterADraw(), "hit 1 of 1, page 1 of 1");
}

TEST_F(Plugins, ShowNothingAfterTheListIsUnregistered) {
  registerInCharacters();
  draw();
  TavrelGLT::GLT_UnregisterHLL(doc, TavrelGLT::GLT_GetHLL(doc));
  EXPECT_EQ(TavrelGLT::GLT_GetHLL(doc), nullptr);
  const host::Drawing drawing = draw();
  EXPECT_EQ(drawing.marks, 0U);
  EXPECT_EQ(app.statusText(), "");
}

TEST_F(Plugins, ShowTheFrontDocumentOnly) {
  host::ViewerDocument &back = *document;
  registerInCharacters();
  host::ViewerDocument &front = app.open(test::fourPages(scratch), "test.pdf", 72);
  app.draw(front);
  app.draw(back);
  EXPECT_EQ(app.statusText(), "") << "the front one has no hits";
  app.bringToFront(back);
  EXPECT_EQ(statusAfterADraw(), "hit 1 of 6, page 1 of 3");
  app.close(front);
  EXPECT_EQ(app.statusText(), "hit 1 of 6, page 1 of 3");
}

TEST_F(Plugins, ShowNothingAfterTheDocumentIsClosed) {
  registerInCharacters();
  draw();
  app.close(*document);
  EXPECT_EQ(app.statusText(), "");
  EXPECT_EQ(reports, std::vector<std::string>{});
}

} // namespace
