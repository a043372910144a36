// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/screen.h"

#include <utility>

namespace viewer {

Screen::Screen(host::Application &app, const Documents &documents, Tiles &tiles, const Finding &finding,
               StatusLine &status, Changes &changes)
    : app_(app), documents_(documents), tiles_(tiles), finding_(finding), status_(status), changes_(changes) {
  app_.listener = [this](host::ViewerDocument & /*document*/) {
    changes_.note(allParts);
    if (pageListener) pageListener();
  };
}

Screen::~Screen() { app_.listener = {}; }

// The resolution is compared, too: the same width in pixels does not imply the same image.
bool Screen::outlineIsShown() const {
  const PageWindow &awaited = *documents_.window();
  if (!waitingSince_ || shown_.page != awaited.page() || shown_.dpi != awaited.dpi() ||
      shown_.scrollX != awaited.scrollX() || shown_.scrollY != awaited.scrollY())
    return false;
  return !tiles_.hasFront();
}

bool Screen::needsDrawing() const {
  if (app_.calling()) return false;
  if (documents_.view() == nullptr) return shown_.document;
  return documents_.view()->invalid() && documents_.view()->mayDraw() && !outlineIsShown();
}

bool Screen::draw() {
  if (!needsDrawing()) return false;
  if (host::PageView *view = documents_.view()) {
    try {
      drawPage(*documents_.window());
    } catch (const std::exception &) {
      view->invalidate(); // so that it is drawn again
      throw;
    }
  } else {
    waitingSince_.reset();
    shown_ = {};
  }
  return true;
}

void Screen::drawPage(PageWindow &drawn) {
  // A plug-in may turn the page and scroll during the drawing; the image shows the state from before.
  Shown shows{
      {}, true, drawn.page(), drawn.dpi(), drawn.pageWidth(), drawn.pageHeight(), drawn.scrollX(), drawn.scrollY()};
  shows.drawing = app_.draw(*documents_.front());
  const bool waits = !shows.drawing;
  const uint64_t number = documents_.frontDocument()->number;
  const bool isOther = shown_.page != shows.page || shownDocument_ != number;
  if (!waits)
    waitingSince_.reset();
  else if (!waitingSince_ || shown_.page != shows.page)
    waitingSince_ = std::chrono::steady_clock::now();
  tiles_.request(!waits);
  if (!waits) {
    finding_.paint(*shows.drawing);
    reportOffPage(*shows.drawing);
  }
  shown_ = std::move(shows);
  shownDocument_ = number;
  withoutHighlights_.reset();
  highlights_.clear();
  showHighlights(); // on the new drawing
  tiles_.forgetWords(shown_.page);
  if (!waits) app_.toolBar()->updateStates(); // their states depend on the page shown
  changes_.note(allParts);
  if (waits && isOther) app_.pageAwaited(*documents_.front());
}

// The message is removed when a page without such hits is drawn. Another message is not removed.
void Screen::reportOffPage(const host::Drawing &drawing) {
  std::string line;
  if (drawing.offPage > 0)
    line = "Page " + std::to_string(drawing.page + 1) + ": " + std::to_string(drawing.offPage) +
           (drawing.offPage == 1 ? " hit is" : " hits are") + " outside of the page and not marked";
  if (status_.message() == offPageLine_ && line != offPageLine_) status_.set(line);
  offPageLine_ = line;
}

bool Screen::showHighlights() {
  const OpenDocument *document = documents_.frontDocument();
  if (document == nullptr || document->number != shownDocument_ || !shown_.drawing) return false;
  host::PageView &shown = *documents_.view();
  if (!shown.mayDraw() || shown.highlights() == highlights_) return false;
  host::Drawing drawing = *shown_.drawing;
  if (withoutHighlights_) drawing.image = *withoutHighlights_;
  shown.paintHighlights(drawing);
  std::vector<host::MarkedArea> highlights = shown.highlights();
  if (!withoutHighlights_) withoutHighlights_ = std::move(shown_.drawing->image);
  if (highlights.empty()) withoutHighlights_.reset();
  shown_.drawing = std::move(drawing);
  highlights_ = std::move(highlights);
  return true;
}

} // namespace viewer
