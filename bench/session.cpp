// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The time that the host spends in the plug-in: at set-up, and each time that a page is drawn.
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "bench/inputs.h"
#include "bench/measure.h"
#include "host/kernel/runtime.h"
#include "plugin/glt/glt.h"
#include "plugin/pi/mdPI.h"
#include "plugin/pi/miPI.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelView.h"
#include "tests/support/SilentHost.h"

namespace bench {
namespace {

const tavrel::PageView someView = nullptr;

void measureDraw(const std::string &name, const std::vector<Hit> &hits, int32_t page) {
  const auto prepare = [hits, page] {
    silentView = {silentDocument(2), page};
    if (hits.empty()) return;
    HLL *list = GLT_NewHLL(nullptr);
    for (const Hit &hit : hits)
      HLL_AddHL(list, hit.page, hit.pos, hit.len);
    GLT_RegisterHLL(silentView.document, list, tavrel::GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
    GLT_DeleteHLL(list);
  };
  measure("drawing a page", name, "ours", [prepare](benchmark::State &state) {
    prepare();
    for (auto _ : state)
      miPIPageViewDraw(someView, nullptr);
    HLL *list = GLT_GetHLL(silentView.document);
    if (list != nullptr) GLT_UnregisterHLL(silentView.document, list);
  });
  if (!hits.empty()) return;
  measure("drawing a page", name, "the host's calls alone", [prepare](benchmark::State &state) {
    prepare();
    for (auto _ : state) {
      benchmark::DoNotOptimize(TavrelView::PageViewGetDoc(someView));
      benchmark::DoNotOptimize(Kernel::AtomFromString("GLT"));
      benchmark::DoNotOptimize(Kernel::AtomFromString("GLT"));
    }
  });
}

constexpr uint32_t oldestView = 0x00020002, newestView = 0x00050001;

// The plug-in requests one version after another, and the host grants only the last one.
void measureSetup() {
  const std::string line = "196,608 versions asked for";
  measure("set-up", line, "ours", [](benchmark::State &state) {
    host::Runtime runtime;
    std::vector<tavrel::Entry> entries(64);
    runtime.addTable("DocModel", 0x00050000, entries.data());
    runtime.addTable("TavrelView", oldestView, entries.data());
    runtime.addTable("Desktop", 0x00040000, entries.data());
    const tavrel::ExtensionID extension = runtime.extensions.add("bench");
    for (auto _ : state) {
      tavrel::SetupRecord record{0x00020000, extension, host::kernelTable(), nullptr};
      if (PISetupSDK(0x00020000, &record) == 0) state.SkipWithError("set-up failed");
    }
    installSilentHost();
  });
  measure("set-up", line, "a hash table asked as often", [](benchmark::State &state) {
    const std::unordered_map<std::string, uint32_t> names = {{"TavrelView", 1}, {"Kernel", 2}};
    const std::unordered_map<uint64_t, uint32_t> versions = {{oldestView, 1}, {2, 2}};
    const std::string name = "TavrelView";
    for (auto _ : state)
      for (uint32_t version = newestView; version >= oldestView; --version) {
        benchmark::DoNotOptimize(names.find(name));
        benchmark::DoNotOptimize(versions.find(version));
      }
  });
}

} // namespace

void measureSession() {
  measureDraw("a document without hits", {}, 0);
  const std::vector<Hit> many = inPageOrder(10000, 1);
  measureDraw("10,000 pages with hits, the first", many, 0);
  measureDraw("10,000 pages with hits, one in the middle", many, 5000);
  measureDraw("10,000 pages with hits, the last", many, 9999);
  measureDraw("10,000 pages with hits, one without", many, 10000);
  measureSetup();
}

} // namespace bench
