// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The stack of exception frames, and the only function that raises. The runtime owns the stack; the entry points of the
// tables raise (table.h), plugincall.cpp opens the host's own frames.
#include "host/kernel/frames.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "host/kernel/runtime.h"
#include "host/kernel/table.h"

namespace host {

void FrameStack::push(tavrel::ExceptionFrame *frame, tavrel::RestoreProc restore) {
  if (frame == nullptr || restore == nullptr)
    throw HostError(tavrel::errBadArgument, "an exception frame without a restore procedure");
  // Counted apart from the host's frames: plug-ins have all of theirs, however many the host has open.
  if (depth_ - hostDepth_ == tavrel::maxFrames) throw HostError(tavrel::errFrames, "too many exception frames");
  open({frame, restore, false});
}

void FrameStack::pop() {
  if (depth_ == 0 || open_[depth_ - 1].ofHost)
    throw HostError(tavrel::errFrames, "an exception frame popped too often");
  --depth_;
}

void FrameStack::pushHost(tavrel::ExceptionFrame *frame, tavrel::RestoreProc restore) {
  if (hostDepth_ == maxHostFrames) throw HostError(tavrel::errFrames, "plug-ins and host call each other too deeply");
  open({frame, restore, true});
  ++hostDepth_;
}

size_t FrameStack::closeHost() {
  size_t forgotten = 0;
  for (; !open_[depth_ - 1].ofHost; --depth_)
    ++forgotten;
  --depth_;
  --hostDepth_;
  return forgotten;
}

void FrameStack::open(const Open &frame) { open_[depth_++] = frame; }

void FrameStack::raise(int32_t code) {
  code_ = code;
  if (depth_ == 0) {
    std::fprintf(stderr, "tavrel: error %d outside every exception frame: %s\n", static_cast<int>(code),
                 reason_.data());
    std::abort();
  }
  const Open &innermost = open_[depth_ - 1];
  innermost.restore(innermost.frame);
  std::fputs("tavrel: a restore procedure returned\n", stderr);
  std::abort();
}

void FrameStack::noteReason(const char *reason) noexcept {
  const size_t length = std::min(std::strlen(reason), reason_.size() - 1);
  std::memcpy(reason_.data(), reason, length);
  reason_[length] = '\0';
}

void raise(int32_t code) {
  if (Runtime *runtime = Runtime::find(); runtime != nullptr) runtime->frames.raise(code);
  std::fprintf(stderr, "tavrel: error %d while the host is not running\n", static_cast<int>(code));
  std::abort();
}

void noteReason(const char *reason) noexcept {
  if (Runtime *runtime = Runtime::find(); runtime != nullptr) runtime->frames.noteReason(reason);
}

} // namespace host
