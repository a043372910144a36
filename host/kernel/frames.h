// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The stack of exception frames (sdk/tavrel/frame.h has the rules). Frames of plug-ins and of the host are on one
// stack; a raise goes to the innermost and pops nothing.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "host/kernel/error.h"

namespace host {

/// How deep host and plug-ins may call each other.
inline constexpr size_t maxHostFrames = 64;

class FrameStack {
public:
  /// Opens a plug-in's frame; throws errFrames when plug-ins have `maxFrames` open.
  void push(tavrel::ExceptionFrame *frame, tavrel::RestoreProc restore);
  /// Closes it; throws errFrames when the innermost is not a plug-in's.
  void pop();

  /// Opens a frame of the host's own; throws errFrames when `maxHostFrames` are open.
  void pushHost(tavrel::ExceptionFrame *frame, tavrel::RestoreProc restore);
  /// Closes the host's frame opened last and the frames on top of it; returns the number of the latter.
  size_t closeHost();

  /// Stores the code and calls the innermost restore procedure, which does not return. Ends the program with a line
  /// on standard error where no frame is open.
  void raise(int32_t code);

  int32_t code() const { return code_; }
  size_t depth() const { return depth_; }

  /// Why the next raise happens; truncated where it is too long.
  void noteReason(const char *reason) noexcept;
  const char *reason() const { return reason_.data(); }

private:
  struct Open {
    tavrel::ExceptionFrame *frame;
    tavrel::RestoreProc restore;
    bool ofHost;
  };
  void open(const Open &frame);

  // Plain arrays: nothing here may need an allocation while an error is raised.
  std::array<Open, tavrel::maxFrames + maxHostFrames> open_{};
  std::array<char, 256> reason_{};
  size_t depth_ = 0;
  size_t hostDepth_ = 0;
  int32_t code_ = tavrel::errNone;
};

} // namespace host
