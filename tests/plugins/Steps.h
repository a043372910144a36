// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Steps from hit to hit in a window, with the buttons of the tool bar.
#pragma once

#include <optional>

#include "Plugins.h"
#include "document/here.h"
#include "viewer/model/pagewindow.h"

namespace test {

/// The rectangle of a page that a window shows, or a hit covers, in pixels of the page.
struct PixelRect {
  double left, top, right, bottom;
};

inline bool contains(const PixelRect &outer, const PixelRect &inner) {
  return outer.left <= inner.left && outer.top <= inner.top && inner.right <= outer.right &&
         inner.bottom <= outer.bottom;
}

class Steps : public Plugins {
protected:
  static constexpr uint32_t outlinePixel = 0xFF202033;

  /// Opens a document in a window of that size.
  void openInWindow(std::unique_ptr<host::Document> model, int width, int height, viewer::Fit fit = viewer::Fit::none,
                    const std::string &parameters = {}) {
    auto viewport = std::make_unique<viewer::PageWindow>(*model, 72);
    pageWindow = viewport.get();
    pageWindow->setWindow(width, height);
    pageWindow->setFit(fit);
    document = &app.open(std::move(model), std::move(viewport), scratch.path() / "test.pdf", parameters);
    doc = app.documents().handle(document);
  }

  /// Registers a list and draws it, as a window does.
  void show(HLL *list, int32_t mode = tavrel::GLT_VIEW_ALL, int32_t units = tavrel::GLT_CHARACTER_OFFSETS) {
    TavrelGLT::GLT_RegisterHLL(doc, list, units, nullptr, nullptr, 1, nullptr);
    TavrelGLT::GLT_DeleteHLL(list);
    TavrelGLT::GLT_SetViewMode(doc, mode);
    draw();
  }
  host::Drawing draw() { return *app.draw(*document); }

  viewer::PageWindow *pageWindow = nullptr; ///< of the document

  static const char *buttonName(int direction) { return direction > 0 ? "TavrelGLT:Next" : "TavrelGLT:Prev"; }
  /// False if the button is greyed.
  bool press(int direction, uint32_t modifiers = 0) {
    return app.press(*app.toolBar()->find(host_.runtime.atoms.atom(buttonName(direction))), modifiers);
  }
  /// Presses the button and draws; gives the status text.
  std::string step(int direction) {
    EXPECT_TRUE(press(direction)) << app.statusText();
    draw();
    return app.statusText();
  }

  PixelRect visible() const {
    const tavrel::DeviceRect rect = document->view->visible();
    return {1.0 * rect.left, 1.0 * rect.top, 1.0 * rect.right, 1.0 * rect.bottom};
  }
  /// Where the characters of a page are, in pixels of the page.
  PixelRect placeOf(int32_t page, const tavrel::TextRange &range) const {
    const host::Box &box = document->model->selectCharacters(page, {&range, 1})->bounds;
    const double scale = document->view->dpi() / 72, height = document->model->pageSize(page).height;
    return {box.left * scale, (height - box.top) * scale, box.right * scale, (height - box.bottom) * scale};
  }
  /// The box around the outlines of a drawing, in pixels of the page.
  static std::optional<PixelRect> outlineIn(const host::Drawing &drawing) {
    std::optional<PixelRect> box;
    for (int y = 0; y < drawing.image.height; ++y)
      for (int x = 0; x < drawing.image.width; ++x) {
        if (drawing.image.row(y)[x] != outlinePixel) continue;
        const PixelRect at{1.0 * drawing.x + x, 1.0 * drawing.y + y, drawing.x + x + 1.0, drawing.y + y + 1.0};
        if (!box) box = at;
        box = {std::min(box->left, at.left), std::min(box->top, at.top), std::max(box->right, at.right),
               std::max(box->bottom, at.bottom)};
      }
    return box;
  }
};

/// Pages of 200 by 1000 points with a word at these heights: "word" is at 0, 5, 10 … of the page's text.
inline constexpr int lines = 9, width = 200, height = 300;
inline constexpr double lineDistance = 110;

inline PdfPage pageOfLines() {
  PdfPage page{.width = width, .height = 1000};
  for (int line = 0; line < lines; ++line)
    page.texts.push_back({20, 950 - line * lineDistance, "word"});
  return page;
}

constexpr tavrel::TextRange onLine(int line) { return {static_cast<uint16_t>(5 * line), 4}; }

/// Pages of lines in such a window.
class StepsOnLines : public Steps {
protected:
  StepsOnLines() { openInWindow(document::openedHere(scratch.pdf({4, pageOfLines()}), ""), width, height); }

  /// Hits on these lines of these pages.
  static HLL *hitsOn(const std::vector<int32_t> &pages, const std::vector<int> &onLines) {
    HLL *list = TavrelGLT::GLT_NewHLL(nullptr);
    for (const int32_t page : pages)
      for (const int line : onLines)
        TavrelGLT::HLL_AddHL(list, page, onLine(line).pos, onLine(line).len);
    return list;
  }
  int32_t page() const { return document->view->page(); }
  int scrollY() const { return pageWindow->scrollY(); }
  bool isVisible(int32_t onPage, int line) const {
    return page() == onPage && contains(visible(), placeOf(onPage, onLine(line)));
  }
  void expectOutlined(int line) {
    const auto outline = outlineIn(draw());
    ASSERT_TRUE(outline);
    const PixelRect hit = placeOf(page(), onLine(line));
    EXPECT_TRUE(contains(*outline, hit));
    EXPECT_LT(outline->bottom - outline->top, hit.bottom - hit.top + 12) << "around one line";
  }
};

} // namespace test
