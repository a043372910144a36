// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The silent host: its tables are made from the operations' lines; the few operations that callers rely on are
// implemented here.
#include "tests/support/SilentHost.h"

#include <cstdlib>

#include "tavrel/Desktop.h"
#include "tavrel/DocModel.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelSupport.h"
#include "tavrel/TavrelView.h"

using namespace tavrel;

SilentView silentView;

namespace {

template <typename Operation> struct Silence;
template <HFT &Table, uint32_t Index, typename R, typename... A> struct Silence<Operation<Table, Index, R(A...)>> {
  static R call(A... /*arguments*/) { return R(); }
};

template <typename Operation> Entry silence(const Operation & /*operation*/) {
  return entryOf(&Silence<Operation>::call);
}

#define KERNEL_SILENCE(index, operation, ...) silence(Kernel::operation),
#define SUPPORT_SILENCE(index, operation, ...) silence(TavrelSupport::operation),
#define MODEL_SILENCE(index, operation, ...) silence(DocModel::operation),
#define VIEW_SILENCE(index, operation, ...) silence(TavrelView::operation),
#define DESKTOP_SILENCE(index, operation, ...) silence(Desktop::operation),

Entry kernelEntries[] = {KERNEL_OPERATIONS(KERNEL_SILENCE)};
Entry supportEntries[] = {TAVREL_SUPPORT_OPERATIONS(SUPPORT_SILENCE)};
Entry modelEntries[] = {DOC_MODEL_OPERATIONS(MODEL_SILENCE)};
Entry viewEntries[] = {TAVREL_VIEW_OPERATIONS(VIEW_SILENCE)};
Entry desktopEntries[] = {DESKTOP_OPERATIONS(DESKTOP_SILENCE)};

/// Fills the operation's entry. Does not compile unless the function has its type.
template <HFT &Table, uint32_t Index, typename R, typename... A>
void provide(HFT table, const Operation<Table, Index, R(A...)> & /*operation*/, R (*function)(A...)) {
  table[Index] = entryOf(function);
}

Atom oneAtom(const char * /*name*/) { return 1; }
Callback itself(ExtensionID /*extension*/, Entry function) { return function; }
void *allocate(uint32_t size) { return malloc(size); }
void *resize(void *block, uint32_t size) { return realloc(block, size); }
void release(void *block) { free(block); }
Doc documentOfView(PageView /*view*/) { return silentView.document; }
int32_t pageOfView(PageView /*view*/) { return silentView.page; }

} // namespace

void installSilentHost() {
  provide(kernelEntries, Kernel::AtomFromString, oneAtom);
  provide(kernelEntries, Kernel::CreateCallback, itself);
  provide(supportEntries, TavrelSupport::Malloc, allocate);
  provide(supportEntries, TavrelSupport::Realloc, resize);
  provide(supportEntries, TavrelSupport::Free, release);
  provide(viewEntries, TavrelView::PageViewGetDoc, documentOfView);
  provide(viewEntries, TavrelView::PageViewGetPageNum, pageOfView);
  gKernelHFT = kernelEntries;
  gTavrelSupportHFT = supportEntries;
  gDocModelHFT = modelEntries;
  gTavrelViewHFT = viewEntries;
  gDesktopHFT = desktopEntries;
}

Doc silentDocument(uintptr_t number) {
  return reinterpret_cast<Doc>(0x1000 + number * 8); // NOLINT(performance-no-int-to-ptr)
}
