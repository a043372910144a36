// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The recording host: stubs made from the operations' lines, a trace, faults, and a plain default for every operation.
#include "tests/host/RecordingHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tests/host/ResetPlugin.h"

using namespace tavrel;

namespace {

RecordingHost *s_current;
std::map<const void *, std::string> s_names;

/// Operations that never return 0 or null. The stubs add those without a result, before main.
std::set<std::string> &neverByValue() {
  static std::set<std::string> names = {"AtomFromString", "CreateCallback", "DocOpenPage"};
  return names;
}

/// The arguments of the traced call, separated by commas.
template <typename... A> std::string argumentList(A... arguments) {
  std::string text;
  ((text += (text.empty() ? "" : ", ") + describe(arguments)), ...);
  return text;
}

/// Operations into which no fault is injected: without them no failure could be handled.
const std::set<std::string> &onFrames() {
  static const std::set<std::string> names = {"PushExceptionFrame", "PopExceptionFrame", "GetExceptionCode",
                                              "RaiseError"};
  return names;
}

} // namespace

std::string nameOfAddress(const void *address) {
  const auto found = s_names.find(address);
  return found != s_names.end() ? found->second : "*";
}

/// What every stub does: record the call, then fail or behave. Holds no object when it raises.
struct RecordedCall {
  template <typename Op> struct Stub;

  template <HFT &Table, uint32_t Index, typename R, typename... A> struct Stub<Operation<Table, Index, R(A...)>> {
    using Op = Operation<Table, Index, R(A...)>;
    static constexpr bool hasResult = !std::is_void_v<R>;
    static inline const char *name; ///< "Table.Operation"

    static RecordingHost::Verdict enter(A... arguments) {
      return s_current->enter(name, std::string(name) + "(" + argumentList(arguments...) + ")");
    }

    static R call(A... arguments) {
      const size_t number = s_current->calls;
      switch (enter(arguments...)) {
      case RecordingHost::Verdict::raise:
        s_current->raise(s_current->raiseCode_);
        return R();
      case RecordingHost::Verdict::fail:
        return R();
      default:
        return behave(number, s_current->interruptionDue_, arguments...);
      }
    }

    static R behave(size_t number, bool interrupted, A... arguments) {
      s_current->interruptionDue_ = false;
      if constexpr (std::is_void_v<R>) {
        if (Behaviour<Op>::replaced) Behaviour<Op>::replaced(arguments...);
        if (interrupted) s_current->interruption_();
        (void)number;
      } else {
        const R result = Behaviour<Op>::replaced ? Behaviour<Op>::replaced(arguments...) : R();
        if (result == R()) s_current->gaveNothing.insert(number);
        if (interrupted) s_current->interruption_();
        return result;
      }
    }
  };

  template <typename Op> static Entry stub(const Op & /*operation*/, const char *name) {
    Stub<Op>::name = name;
    if (!Stub<Op>::hasResult) neverByValue().insert(strchr(name, '.') + 1);
    return entryOf(&Stub<Op>::call);
  }
};

namespace {

#define KERNEL_STUB(index, operation, ...) RecordedCall::stub(Kernel::operation, "Kernel." #operation),
#define SUPPORT_STUB(index, operation, ...) RecordedCall::stub(TavrelSupport::operation, "TavrelSupport." #operation),
#define MODEL_STUB(index, operation, ...) RecordedCall::stub(DocModel::operation, "DocModel." #operation),
#define VIEW_STUB(index, operation, ...) RecordedCall::stub(TavrelView::operation, "TavrelView." #operation),
#define DESKTOP_STUB(index, operation, ...) RecordedCall::stub(Desktop::operation, "Desktop." #operation),

Entry kernelEntries[] = {KERNEL_OPERATIONS(KERNEL_STUB)};
Entry supportEntries[] = {TAVREL_SUPPORT_OPERATIONS(SUPPORT_STUB)};
Entry modelEntries[] = {DOC_MODEL_OPERATIONS(MODEL_STUB)};
Entry viewEntries[] = {TAVREL_VIEW_OPERATIONS(VIEW_STUB)};
Entry desktopEntries[] = {DESKTOP_OPERATIONS(DESKTOP_STUB)};
Entry emptyEntries[] = {nullptr};

const std::map<std::string, HFT> &tables() {
  static const std::map<std::string, HFT> byName = {{"TavrelSupport", supportEntries}, {"Cobble", emptyEntries},
                                                    {"DocModel", modelEntries},        {"TavrelView", viewEntries},
                                                    {"Desktop", desktopEntries},       {"TSExtra", emptyEntries}};
  return byName;
}

template <typename T> T handleAt(uintptr_t address) { return reinterpret_cast<T>(address); }

} // namespace

RecordingHost::RecordingHost() {
  if (s_current != nullptr) {
    fprintf(stderr, "two recording hosts at once\n");
    abort();
  }
  s_current = this;
  s_names.clear();
  doc = named(handleAt<Doc>(0x1000), "doc");
  otherDoc = named(handleAt<Doc>(0x1008), "otherDoc");
  modelDoc = named(handleAt<ModelDoc>(0x1010), "modelDoc");
  view = named(handleAt<PageView>(0x1020), "view");
  toolBar = named(handleAt<ToolBar>(0x1030), "toolBar");
  findAgain = named(handleAt<ToolButton>(0x1040), "findAgain");
  selection = named(handleAt<TextSelection>(0x1050), "selection");
  frontDoc = doc;
  granted = {{"TavrelSupport", 0x00050000}, {"Cobble", 0x00050000},  {"DocModel", 0x00050000},
             {"TavrelView", 0x00050001},    {"Desktop", 0x00040000}, {"TSExtra", 0x00050000}};
  nameTheUsual();
  installDefaults();
  resetPlugin();
  gKernelHFT = kernelEntries;
  gTavrelSupportHFT = supportEntries;
  gDocModelHFT = modelEntries;
  gTavrelViewHFT = viewEntries;
  gDesktopHFT = desktopEntries;
}

RecordingHost::~RecordingHost() {
  for (const auto &undo : undo_)
    undo();
  resetPlugin();
  for (void *block : blocks)
    free(block);
  s_current = nullptr;
}

RecordingHost &RecordingHost::current() { return *s_current; }

bool RecordingHost::canFail(const std::string &operation) const {
  return !onFrames().contains(operation) && !reliable.contains(operation);
}

bool RecordingHost::canFailByValue(const std::string &operation) { return !neverByValue().contains(operation); }

HFT RecordingHost::kernelTable() { return kernelEntries; }

HFT RecordingHost::table(const std::string &name) { return tables().at(name); }

size_t RecordingHost::count(const std::string &operation) const {
  return static_cast<size_t>(std::count_if(trace.begin(), trace.end(), [&](const std::string &call) {
    return call.find("." + operation + "(") != std::string::npos;
  }));
}

std::vector<std::string> RecordingHost::without(const std::set<std::string> &operations) const {
  std::vector<std::string> rest;
  for (const std::string &call : trace) {
    const size_t dot = call.find('.'), parenthesis = call.find('(');
    if (!operations.contains(call.substr(dot + 1, parenthesis - dot - 1))) rest.push_back(call);
  }
  return rest;
}

std::string RecordingHost::story() const {
  std::string text = "\n";
  for (const std::string &call : trace)
    text += call + "\n";
  return text;
}

void RecordingHost::clear() {
  trace.clear();
  calls = raises = 0;
  gaveNothing.clear();
}

void RecordingHost::raiseAt(size_t call, int32_t code) {
  raiseFirst_ = raiseLast_ = call;
  raiseCode_ = code;
}

void RecordingHost::raiseFrom(size_t call, int32_t code) {
  raiseFirst_ = call;
  raiseLast_ = SIZE_MAX;
  raiseCode_ = code;
}

void RecordingHost::failAt(size_t call) { failCall_ = call; }

void RecordingHost::raiseIn(const std::string &operation, int32_t code) {
  EXPECT_TRUE(canFail(operation)) << operation << " never fails";
  raiseIn_[operation] = code;
}

void RecordingHost::during(size_t call, std::function<void()> action) {
  interruptCall_ = call;
  interruption_ = std::move(action);
}

void RecordingHost::noFaults() {
  raiseFirst_ = failCall_ = SIZE_MAX;
  raiseLast_ = 0;
  raiseIn_.clear();
}

RecordingHost::Verdict RecordingHost::enter(const char *operation, const std::string &call) {
  trace.push_back(call);
  const size_t number = calls++;
  if (!canFail(strchr(operation, '.') + 1)) return Verdict::go;
  if (number == interruptCall_) {
    interruptCall_ = SIZE_MAX;
    interruptionDue_ = true;
  }
  const auto scripted = raiseIn_.find(strchr(operation, '.') + 1);
  if (scripted != raiseIn_.end()) {
    raiseCode_ = scripted->second;
    return Verdict::raise;
  }
  if (number >= raiseFirst_ && number <= raiseLast_) return Verdict::raise;
  return number == failCall_ && canFailByValue(strchr(operation, '.') + 1) ? Verdict::fail : Verdict::go;
}

void RecordingHost::raise(int32_t code) {
  exceptionCode_ = code;
  ++raises;
  if (frames_.empty()) {
    fprintf(stderr, "the host raised %d and no frame was open\n", code);
    abort();
  }
  frames_.back().restore(frames_.back().frame);
}

namespace {

void restoreHostFrame(ExceptionFrame *frame) { longjmp(frame->context, 1); }

} // namespace

bool RecordingHost::run(const std::function<void()> &body) {
  ExceptionFrame frame;
  const size_t depth = frames_.size();
  frames_.push_back({&frame, restoreHostFrame});
  const std::function<void()> *volatile call = &body;
  if (setjmp(frame.context) != 0) {
    frames_.pop_back();
    EXPECT_EQ(frames_.size(), depth);
    return false;
  }
  (*call)();
  frames_.pop_back();
  EXPECT_EQ(frames_.size(), depth) << "the plug-in left the frame stack as it should not";
  return true;
}

Atom RecordingHost::atom(const std::string &name) {
  return atoms_.try_emplace(name, static_cast<Atom>(atoms_.size() + 1)).first->second;
}

std::string RecordingHost::atomName(Atom atom) const {
  for (const auto &[name, value] : atoms_)
    if (value == atom) return name;
  return "";
}

void RecordingHost::nameAddress(const void *address, const std::string &name) { s_names[address] = name; }

void RecordingHost::nameTheUsual() {
  for (const auto &[name, entry] : pluginFunctions())
    nameAddress(reinterpret_cast<const void *>(entry), name);
  for (const auto &[name, address] : pluginObjects())
    nameAddress(address, name);
}

void RecordingHost::installDefaults() {
  // Kernel
  answer(Kernel::RaiseError, std::function([this](int32_t code) { raise(code); }));
  answer(Kernel::PushExceptionFrame, std::function([this](ExceptionFrame *frame, RestoreProc restore) {
           frames_.push_back({frame, restore});
         }));
  answer(Kernel::PopExceptionFrame, std::function([this] {
           ASSERT_FALSE(frames_.empty()) << "a frame was popped that was not pushed";
           ASSERT_NE(frames_.back().restore, restoreHostFrame) << "the plug-in popped a frame of the host";
           frames_.pop_back();
         }));
  answer(Kernel::GetExceptionCode, std::function([this] { return exceptionCode_; }));
  answer(Kernel::AtomFromString, std::function([this](const char *name) { return atom(name); }));
  answer(Kernel::CreateCallback, std::function([](ExtensionID, Entry function) { return function; }));
  answer(Kernel::RequestTable, std::function([this](Atom name, uint32_t version) {
           const auto found = granted.find(atomName(name));
           return found != granted.end() && found->second == version ? tables().at(found->first) : HFT{nullptr};
         }));

  // TavrelSupport
  answer(TavrelSupport::Malloc, std::function([this](uint32_t size) {
           void *block = malloc(size != 0 ? size : 1);
           if (block != nullptr) blocks.insert(block);
           return block;
         }));
  answer(TavrelSupport::Realloc, std::function([this](void *block, uint32_t size) {
           EXPECT_TRUE(blocks.contains(block)) << "resized a block that is not the host's";
           void *resized = realloc(block, size != 0 ? size : 1);
           if (resized == nullptr) return resized; // the block stays as it was
           blocks.erase(block);
           blocks.insert(resized);
           return resized;
         }));
  answer(TavrelSupport::Free, std::function([this](void *block) {
           EXPECT_EQ(blocks.erase(block), 1U) << "freed a block that is not the host's, or twice";
           free(block);
         }));
  answer(TavrelSupport::NewHFTServer,
         std::function([this](const char *, ProvideProc provideProc, DestroyProc destroyProc, void *) {
           provide = provideProc;
           destroy = destroyProc;
           return named(handleAt<HFTServer>(0x1060), "server");
         }));
  answer(TavrelSupport::NewHFT, std::function([this](HFTServer, uint32_t selectors) {
           exportedSelectors = selectors;
           return named(handleAt<HFT>(0x1070), "exportedTable");
         }));
  answer(TavrelSupport::ReplaceHFTEntry,
         std::function([this](HFT, uint32_t selector, Callback callback, uint32_t) { exported[selector] = callback; }));
  answer(TavrelSupport::TransformFixedRect,
         std::function([](FixedRect *out, const FixedMatrix *, const FixedRect *in) { *out = *in; }));

  // DocModel
  answer(DocModel::DocOpenPage, std::function([this](ModelDoc, int32_t page) {
           auto handle = named(handleAt<Page>(nextHandle_ += 8), "page" + std::to_string(page));
           openPages.insert(handle);
           selectionPage = page;
           return handle;
         }));
  answer(DocModel::PageClose, std::function([this](Page page) {
           if (page == nullptr) return raise(errBadHandle);
           EXPECT_EQ(openPages.erase(page), 1U) << "closed a page that is not open";
         }));
  answer(DocModel::WordFinderCreate,
         std::function([this](ModelDoc, void *, void *, void *, int16_t version, uint32_t, void *) {
           if (!wordFinderVersions.contains(version)) return WordFinder{nullptr};
           auto handle = named(handleAt<WordFinder>(nextHandle_ += 8), "finder");
           finders.insert(handle);
           return handle;
         }));
  answer(DocModel::WordFinderDestroy, std::function([this](WordFinder finder) {
           EXPECT_EQ(finders.erase(finder), 1U) << "destroyed a word finder that is not there";
         }));
  const auto select = [this](const TextRange *first, int32_t count) {
    ranges.assign(first, first + count);
    return count != 0 ? selection : nullptr;
  };
  answer(DocModel::SelectionFromCharRanges,
         std::function([select](Page, const TextRange *first, int32_t count) { return select(first, count); }));
  answer(DocModel::SelectionFromWordRanges, std::function([select](Page, const TextRange *first, int32_t count,
                                                                   int16_t) { return select(first, count); }));
  answer(DocModel::SelectionPageNumber, std::function([this](TextSelection) { return selectionPage; }));
  answer(DocModel::SelectionBounds, std::function([this](TextSelection, FixedRect *out) { *out = bounds; }));

  // TavrelView
  answer(TavrelView::Alert,
         std::function([this](int32_t, const char *message, const char *, const char *, const char *, int32_t) {
           alertMessage = message;
           return alertAnswer;
         }));
  answer(TavrelView::GetFrontDoc, std::function([this] { return frontDoc; }));
  answer(TavrelView::GetToolBar, std::function([this] { return toolBar; }));
  answer(TavrelView::DocGetModelDoc, std::function([this](Doc) { return modelDoc; }));
  answer(TavrelView::DocGetPageView, std::function([this](Doc) { return view; }));
  answer(TavrelView::PageViewGetDoc, std::function([this](PageView) { return doc; }));
  // For a null view nothing is written to the results.
  answer(TavrelView::PageViewGetVisibleRect, std::function([this](PageView of, DeviceRect *out) {
           if (of != nullptr) *out = visible;
         }));
  answer(TavrelView::PageViewGetPageNum, std::function([this](PageView) { return shownPage; }));
  answer(TavrelView::PageViewFetchDrawColor, std::function([this](PageView of, ColorValue *color) {
           if (of != nullptr) *color = drawColor;
         }));
  answer(TavrelView::PageViewApplyDrawColor,
         std::function([this](PageView, const ColorValue *color) { drawColor = *color; }));
  answer(TavrelView::PageViewBeginBatch, std::function([this](PageView) { ++brackets; }));
  answer(TavrelView::PageViewEndBatch, std::function([this](PageView) { --brackets; }));
  answer(TavrelView::PageViewShowPage, std::function([this](PageView, int32_t page) { shownPage = page; }));
  answer(TavrelView::PageViewGetPageTransform, std::function([](PageView of, FixedMatrix *matrix) {
           if (of != nullptr) *matrix = {fixedOne, 0, 0, fixedOne, 0, 0};
         }));
  answer(TavrelView::GetModifierKeyState, std::function([this] { return modifiers; }));
  answer(TavrelView::ToolBarFindButton, std::function([this](ToolBar, Atom name) {
           return atomName(name) == "FindAgainDialog" ? findAgain : nullptr;
         }));
  answer(TavrelView::ToolBarHasSpace,
         std::function([this](ToolBar, int32_t, int32_t) { return Bool16{spaceOnToolBar}; }));
  answer(TavrelView::ToolButtonCreate, std::function([this](Atom name, Bitmap, int32_t, int32_t) {
           return named(handleAt<ToolButton>(nextHandle_ += 8), atomName(name));
         }));
  answer(TavrelView::HasAuxDataHandler,
         std::function([this](Atom type) { return Bool16{auxTypes.contains(atomName(type))}; }));
  answer(TavrelView::RegisterAuxDataHandler, std::function([this](ExtensionID, Atom type, const AuxDataHandler *) {
           return Bool16{auxTypes.insert(atomName(type)).second};
         }));
  answer(TavrelView::UnregisterAuxDataHandler, std::function([this](ExtensionID, Atom type, const AuxDataHandler *) {
           return Bool16{auxTypes.erase(atomName(type)) != 0};
         }));

  // Desktop
  answer(Desktop::GetTopLevelWidget, std::function([this] { return topLevel; }));
  answer(Desktop::GetResourceString, std::function([this](Widget, const char *key, const char *builtIn) {
           const auto found = resources.find(key);
           return found != resources.end() ? found->second.c_str() : builtIn;
         }));
  answer(Desktop::GetResourceBitmap,
         std::function([](Widget, const char *name, const char *, const unsigned char *, uint32_t, uint32_t) {
           return Bitmap{strcmp(name, "next") == 0 ? 0x71U : 0x72U};
         }));
}
