// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A host for tests: offers every operation, records every call with its arguments, counts what is open, and injects
// faults.
//
// The tables are built from the lines that declare the operations. Every operation has a plain default behaviour
// over the public fields below; a test replaces one with `answer`. While a RecordingHost exists it is the host of the
// plug-in: its constructor fills the plug-in's table globals and clears the plug-in's state, as at load.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tavrel/Desktop.h"
#include "tavrel/DocModel.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelGLT.h"
#include "tavrel/TavrelSupport.h"
#include "tavrel/TavrelView.h"
#include "tests/host/Describe.h"

/// The function that replaces an operation's default behaviour. One for every operation, by its type.
template <typename Op> struct Behaviour;
template <tavrel::HFT &Table, uint32_t Index, typename R, typename... A>
struct Behaviour<tavrel::Operation<Table, Index, R(A...)>> {
  static inline std::function<R(A...)> replaced;
};

class RecordingHost {
public:
  RecordingHost();
  ~RecordingHost();
  RecordingHost(const RecordingHost &) = delete;
  RecordingHost &operator=(const RecordingHost &) = delete;
  static RecordingHost &current();

  // What happened.
  std::vector<std::string> trace; ///< "TavrelView.PageViewShowPage(view, 3)"
  size_t calls = 0;               ///< since the last `clear`
  size_t raises = 0;              ///< likewise
  std::set<size_t> gaveNothing;   ///< calls, counted likewise, whose result was 0 or null
  /// How many calls of that operation ("PageViewShowPage") are in the trace.
  size_t count(const std::string &operation) const;
  /// The trace without calls of these operations.
  std::vector<std::string> without(const std::set<std::string> &operations) const;
  /// The trace as a text: a line feed, then one line per call, for comparison with R"(...)".
  std::string story() const;
  void clear(); ///< forgets the trace and the count of calls

  /// Runs `action` in that call, after its behaviour and before it returns, as a host draws or calls another plug-in.
  /// Not in an operation on frames. Calls are counted as for faults.
  void during(size_t call, std::function<void()> action);

  // What goes wrong. Calls are counted from 0 since the last `clear`; frame operations and GetExceptionCode count but
  // are never made to fail.
  void raiseAt(size_t call, int32_t code = tavrel::errGeneric);   ///< that call raises
  void raiseFrom(size_t call, int32_t code = tavrel::errGeneric); ///< it and every later one raise
  void failAt(size_t call); ///< that call returns 0 or null without effect, if it can
  void raiseIn(const std::string &operation, int32_t code = tavrel::errGeneric); ///< every call of it raises
  std::set<std::string> reliable; ///< operations ("AtomFromString") without faults, until the host is destroyed
  void noFaults();

  /// Runs `body` in a frame of the host, as a host calls a plug-in. False when it raised.
  bool run(const std::function<void()> &body);

  /// Replaces an operation's behaviour until the host is destroyed.
  template <tavrel::HFT &Table, uint32_t Index, typename R, typename... A>
  void answer(const tavrel::Operation<Table, Index, R(A...)> & /*operation*/, std::function<R(A...)> with) {
    using Op = tavrel::Operation<Table, Index, R(A...)>;
    Behaviour<Op>::replaced = std::move(with);
    undo_.push_back([] { Behaviour<Op>::replaced = nullptr; });
  }

  // The host's handles, which differ by address only.
  tavrel::Doc doc = nullptr, otherDoc = nullptr;
  tavrel::ModelDoc modelDoc = nullptr;
  tavrel::PageView view = nullptr; ///< null: the document has no page view
  tavrel::ToolBar toolBar = nullptr;
  tavrel::ToolButton findAgain = nullptr;
  tavrel::TextSelection selection = nullptr;
  tavrel::Doc frontDoc = nullptr; ///< doc, unless a test changes it

  // What the host shows and answers.
  int32_t shownPage = 0;
  tavrel::ColorValue drawColor = {1, {0, 0, 0, 0}};
  tavrel::DeviceRect visible = {0, 0, 600, 400};
  tavrel::FixedRect bounds = {100 << 16, 520 << 16, 200 << 16, 500 << 16}; ///< of every selection, y upwards
  int32_t selectionPage = 0;
  std::vector<tavrel::TextRange> ranges; ///< of the last selection made
  int32_t alertAnswer = 1;
  std::string alertMessage;
  uint32_t modifiers = 0;
  bool spaceOnToolBar = true;
  std::set<int16_t> wordFinderVersions = {1, 2};
  std::map<std::string, uint32_t> granted; ///< tables by name and the only version at which they are granted
  std::map<std::string, std::string> resources;
  tavrel::Widget topLevel = nullptr;
  std::map<uint32_t, tavrel::Callback> exported; ///< entries stored with ReplaceHFTEntry
  size_t exportedSelectors = 0;
  tavrel::ProvideProc provide = nullptr;
  tavrel::DestroyProc destroy = nullptr;
  std::set<std::string> auxTypes; ///< with a handler

  // What is open.
  size_t frames() const { return frames_.size(); }
  int brackets = 0;
  std::set<const void *> openPages;
  std::set<const void *> finders;
  std::set<void *> blocks; ///< from Malloc and Realloc

  /// The atom of a name, without a call in the trace.
  tavrel::Atom atom(const std::string &name);
  std::string atomName(tavrel::Atom atom) const;
  /// Gives an address a name in traces; returns it.
  template <typename T> T named(T handle, const std::string &name) {
    nameAddress(reinterpret_cast<const void *>(handle), name);
    return handle;
  }
  /// Whether a fault can be injected into an operation ("PageClose").
  bool canFail(const std::string &operation) const;
  /// Whether an operation ("PageClose") can fail by returning 0 or null. Some have no result, and some raise instead,
  /// which callers rely on.
  static bool canFailByValue(const std::string &operation);
  tavrel::HFT kernelTable();
  tavrel::HFT table(const std::string &name);

private:
  friend struct RecordedCall;
  struct Frame {
    tavrel::ExceptionFrame *frame;
    tavrel::RestoreProc restore;
  };
  enum class Verdict { go, fail, raise };

  void nameAddress(const void *address, const std::string &name);
  Verdict enter(const char *operation, const std::string &call);
  void raise(int32_t code);
  void installDefaults();
  void nameTheUsual();

  std::map<std::string, tavrel::Atom> atoms_;
  std::vector<Frame> frames_;
  int32_t exceptionCode_ = 0;
  size_t raiseFirst_ = SIZE_MAX, raiseLast_ = 0, failCall_ = SIZE_MAX;
  int32_t raiseCode_ = 0;
  std::map<std::string, int32_t> raiseIn_;
  size_t interruptCall_ = SIZE_MAX;
  std::function<void()> interruption_;
  bool interruptionDue_ = false;
  std::vector<std::function<void()>> undo_;
  uintptr_t nextHandle_ = 0x9000;
};
