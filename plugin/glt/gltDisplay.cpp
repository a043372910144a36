// Puts the registered highlights on the screen, in two phases: first the view is turned and scrolled to them, then,
// when the host draws the page, they are painted.
#include "plugin/glt/glt.h"
#include "plugin/pi/PIFrame.h"
#include "tavrel/DocModel.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelView.h"

using namespace tavrel;

namespace {

/// How many of a page's highlights are marked, always from its first one on.
int32_t entriesShown(int32_t viewMode, uint16_t count) {
  switch (viewMode) {
  case GLT_VIEW_ALL:
    return count;
  case GLT_VIEW_ONE: // the page's first highlight whatever the current one is, on purpose
    return count != 0 ? 1 : 0;
  default:
    return 0;
  }
}

TextSelection selectionOn(Page page, const GLTRecord *record, const HL *words, int32_t entries) {
  if (record->offsetUnits == GLT_CHARACTER_OFFSETS) return DocModel::SelectionFromCharRanges(page, words, entries);
  return DocModel::SelectionFromWordRanges(page, words, entries, record->wordFinderVersion);
}

void paint(Doc document, uint32_t serial, GLTRecord *record, PageView view, TextSelection selection) {
  ColorValue saved;
  TavrelView::PageViewFetchDrawColor(view, &saved);
  record = GLTStillRegistered(document, serial, record);
  if (record == nullptr) return;
  const ColorValue color = record->color;
  TavrelView::PageViewApplyDrawColor(view, &color);
  TavrelView::PageViewPaintSelection(view, selection);
  TavrelView::PageViewApplyDrawColor(view, &saved);
}

/// What stands between the bracket's opening and its closing.
void showInBracket(Doc document, GLTRecord *record, uint32_t serial, PageView view, Bool16 scroll) {
  if (view == nullptr) return;
  if (record == nullptr) {
    TavrelView::PageViewRefreshArea(view, nullptr);
    return;
  }
  record = GLTStillRegistered(document, serial, record);
  if (record == nullptr) return;
  if (HLL_GetWordCount(record->hll) == 0) {
    TavrelView::PageViewShowPage(view, 0);
    return;
  }
  if (record->viewMode == GLT_VIEW_NONE) {
    const HLP *page = HLLPageAt(record->hll, record->curPage);
    if (page != nullptr) TavrelView::PageViewShowPage(view, page->page);
    return;
  }
  TextSelection selection = GLTMapHLLToViewer(document, record);
  record = GLTStillRegistered(document, serial, record);
  if (selection == nullptr || record == nullptr) return;
  if (scroll != 0)
    GLTScrollTo(view, selection);
  else
    paint(document, serial, record, view, selection);
}

} // namespace

TextSelection GLTMapHLLToViewer(Doc document, GLTRecord *record) {
  const uint32_t serial = record->serial;
  const uint32_t pageIndex = record->curPage;
  const HLP *current = HLLPageAt(record->hll, pageIndex);
  if (current == nullptr) return nullptr;
  const int32_t pageNumber = current->page;
  const int32_t entries = entriesShown(record->viewMode, current->count);
  Page page = nullptr;
  TextSelection selection = nullptr;
  const bool done = PIProtect([&] {
    PageView view = TavrelView::DocGetPageView(document);
    if (view != nullptr) TavrelView::PageViewShowPage(view, pageNumber);
    page = DocModel::DocOpenPage(TavrelView::DocGetModelDoc(document), pageNumber);
    const GLTRecord *still = GLTStillRegistered(document, serial, record);
    if (still != nullptr) selection = selectionOn(page, still, still->hll->pages[pageIndex].words, entries);
  });
  // A page that was opened before the host failed stays open, on purpose: only a raise without a code closes it.
  if (!done && (Kernel::GetExceptionCode() != errNone || page == nullptr)) return nullptr;
  DocModel::PageClose(page);
  return done ? selection : nullptr;
}

void GLTShowHighlights(Doc document, GLTRecord *record, Bool16 scroll) {
  const uint32_t serial = record != nullptr ? record->serial : 0;
  PIProtect([&] {
    PageView view = TavrelView::DocGetPageView(document);
    TavrelView::PageViewBeginBatch(view); // also without a view, on purpose: the bracket is the host's to judge
    showInBracket(document, record, serial, view, scroll);
    TavrelView::PageViewEndBatch(view);
  });
  // After a raise the bracket stays open, on purpose: the host closes what a failed call left open.
}
