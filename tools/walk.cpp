// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The loop of the render command.
#include "tools/walk.h"

#include <unordered_set>
#include <utility>

#include "tavrel/TavrelGLT.h"

namespace tools {

void walkMarkedPages(host::Application &app, host::ViewerDocument &document, size_t limit, const PageSink &sink) {
  std::unordered_set<int32_t> seen;
  const auto drawNewPage = [&] {
    const int32_t page = document.view->page();
    try {
      auto drawing = app.drawIfNeeded(document);
      if (!drawing || !seen.insert(drawing->page).second) return false;
      if (drawing->marks > 0 || drawing->offPage > 0) sink.drawn(std::move(*drawing));
    } catch (const host::DocumentError &error) {
      if (!seen.insert(page).second) return false;
      sink.failed(page, error);
    }
    return true;
  };
  drawNewPage();
  const host::ToolBar *bar = app.toolBar();
  if (bar == nullptr) return;
  const tavrel::Atom name = host::Runtime::current().atoms.atom(tavrel::gltNextButton);
  for (size_t idle = 0; idle <= limit;) {
    host::ToolButton *button = bar->find(name);
    if (button == nullptr || !bar->test(*button)) return;
    bar->press(*button);
    idle = drawNewPage() ? 0 : idle + 1;
  }
}

void walkAllPages(host::Application &app, host::ViewerDocument &document, const PageSink &sink) {
  for (int32_t page = 0; page < document.model->pageCount(); ++page) {
    document.view->showPage(page);
    try {
      if (auto drawing = app.draw(document)) sink.drawn(std::move(*drawing));
    } catch (const host::DocumentError &error) {
      sink.failed(page, error);
    }
  }
}

} // namespace tools
