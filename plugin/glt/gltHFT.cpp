// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The exported table: its server, made at export, and the table itself, built when the first client asks.
#include "plugin/glt/gltHFT.h"

#include "plugin/glt/glt.h"
#include "plugin/pi/mdPI.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelSupport.h"

using namespace tavrel;

HFTServer gGLTHFTServer;
HFT gGLTHFT;
uint16_t gGLTHFTBuilt;

namespace {

/// An exported operation: the function must have exactly the type that its line in TavrelGLT.h declares.
struct Exported {
  uint32_t selector;
  Entry function;
};

template <HFT &Table, uint32_t Index, typename R, typename... A>
Exported exported(const Operation<Table, Index, R(A...)> & /*operation*/, R (*function)(A...)) {
  return {Index, entryOf(function)};
}

} // namespace

Bool16 GLTExportHFTServer() {
  gGLTHFT = nullptr;
  gGLTHFTServer = TavrelSupport::NewHFTServer("TavrelGLT", GLTProvideHFT, GLTDestroyHFT, nullptr);
  return gGLTHFTServer != nullptr;
}

HFT GLTProvideHFT(HFTServer /*server*/, uint32_t version) {
  if (version > tavrelGLTVersion) return nullptr;
  if (gGLTHFTBuilt == 0) {
    gGLTHFTBuilt = 1;
    GLTCreateHFT();
  }
  return gGLTHFT;
}

void GLTDestroyHFT(HFTServer /*server*/) {
  HFT table = gGLTHFT;
  gGLTHFT = nullptr; // the table is not built again: later requests get null
  TavrelSupport::DestroyHFT(table);
}

void GLTCreateHFT() {
  HFT table = TavrelSupport::NewHFT(gGLTHFTServer, TavrelGLT::selectorCount);
  if (table == nullptr) return;
#define GLT_EXPORTED(selector, operation, ...) exported(TavrelGLT::operation, ::operation),
  const Exported operations[] = {TAVREL_GLT_OPERATIONS(GLT_EXPORTED)};
#undef GLT_EXPORTED
  for (const Exported &operation : operations)
    TavrelSupport::ReplaceHFTEntry(table, operation.selector, Kernel::CreateCallback(gExtensionID, operation.function),
                                   0);
  gGLTHFT = table; // not before it is filled: clients call its entries unchecked, also after a raise in the loop above
}
