// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A viewer with one open document, and a plug-in that works on it.
#pragma once

#include <gtest/gtest.h>

#include "FakeDocument.h"
#include "FakeViewport.h"
#include "host/kernel/TestPlugin.h"
#include "host/view/application.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelView.h"

namespace test {

struct Viewer : testing::Test {
  /// 72 dots per inch: a pixel of the page is a point.
  static constexpr double dpi = 72;
  static constexpr int32_t pageCount = 5;

  Viewer() {
    auto fake = std::make_unique<FakeDocument>(pageCount);
    model = fake.get();
    auto viewport = std::make_unique<FakeViewport>(*fake, dpi);
    window = viewport.get();
    document = &app.open(std::move(fake), std::move(viewport), "test.pdf");
    doc = app.documents().handle(document);
    view = app.views().handle(document->view.get());
    bar = TavrelView::GetToolBar();
  }

  host::Runtime runtime;
  TestPlugin testPlugin{runtime};
  host::Application app{runtime};
  FakeDocument *model = nullptr;
  FakeViewport *window = nullptr;
  host::ViewerDocument *document = nullptr;
  tavrel::Doc doc = nullptr;
  tavrel::PageView view = nullptr;
  tavrel::ToolBar bar = nullptr;
};

} // namespace test
