// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The only setjmp of the kernel. Objects with destructors are outside of protectedCall: a raise jumps over nothing but
// the plug-in and the body.
#include "host/kernel/plugincall.h"

#include <csetjmp>

#include "host/kernel/runtime.h"

namespace host {
namespace {

void jumpToHost(tavrel::ExceptionFrame *frame) { std::longjmp(frame->context, 1); }

enum class Outcome { returned, raised, threw };

// A plug-in may be written in C++; its exceptions end the call as a raise does.
Outcome runBody(void (*body)(void *), void *argument) {
  try {
    body(argument);
    return Outcome::returned;
  } catch (...) {
    return Outcome::threw;
  }
}

Outcome protectedCall(FrameStack &frames, void (*body)(void *), void *argument) {
  tavrel::ExceptionFrame frame;
  frames.pushHost(&frame, jumpToHost);
  // Volatile: where the compiler sees that the body never returns, it drops stores that the path after the jump reads.
  Outcome (*volatile run)(void (*)(void *), void *) = runBody;
  if (setjmp(frame.context) != 0) return Outcome::raised;
  return run(body, argument);
}

// Sets the plug-in that is running, and notifies the watchers, for the duration of a call.
class CallScope {
public:
  CallScope(Runtime &runtime, tavrel::ExtensionID extension) : runtime_(runtime), caller_(runtime.enter(extension)) {}
  ~CallScope() { runtime_.leave(caller_); }
  CallScope(const CallScope &) = delete;
  CallScope &operator=(const CallScope &) = delete;

private:
  Runtime &runtime_;
  tavrel::ExtensionID caller_;
};

void reportFailure(Runtime &runtime, const PluginCall &call, const std::string &text) {
  runtime.report(runtime.extensions.name(call.extension) + ": " + call.what + " " + text);
}

} // namespace

bool runInPlugin(const PluginCall &call, void (*body)(void *), void *argument) {
  Runtime &runtime = Runtime::current();
  if (!runtime.extensions.active(call.extension)) return false;
  const CallScope scope(runtime, call.extension);
  const Outcome outcome = protectedCall(runtime.frames, body, argument);
  const size_t forgotten = runtime.frames.closeHost();
  if (outcome == Outcome::raised)
    reportFailure(runtime, call,
                  "failed with error " + std::to_string(runtime.frames.code()) + ": " + runtime.frames.reason());
  else if (outcome == Outcome::threw)
    reportFailure(runtime, call, "threw an exception");
  if (forgotten > 0) reportFailure(runtime, call, "left " + std::to_string(forgotten) + " exception frames open");
  return outcome == Outcome::returned;
}

} // namespace host
