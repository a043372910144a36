// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
#include "frame.h"

#include <csetjmp>

#include "tavrel/Kernel.h"

namespace {

void jumpBack(tavrel::ExceptionFrame *frame) { longjmp(frame->context, 1); }

} // namespace

bool attempt(void (*body)(void *), void *argument) {
  tavrel::ExceptionFrame frame;
  // Volatile: where the compiler sees that the body never returns, it drops stores that are read after the jump.
  void (*volatile run)(void *) = body;
  Kernel::PushExceptionFrame(&frame, jumpBack);
  const bool raised = setjmp(frame.context) != 0;
  if (!raised) run(argument);
  Kernel::PopExceptionFrame();
  return !raised;
}
