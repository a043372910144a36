// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The only source of the plug-in that uses setjmp.
#include "plugin/pi/PIFrame.h"

#include "tavrel/Kernel.h"

using namespace tavrel;

void RestorePlugInFrame(ExceptionFrame *frame) { longjmp(frame->context, 1); }

bool PIProtectCall(void (*body)(void *), void *argument) {
  ExceptionFrame frame;
  Kernel::PushExceptionFrame(&frame, RestorePlugInFrame);
  if (setjmp(frame.context) != 0) {
    Kernel::PopExceptionFrame();
    return false;
  }
  // Volatile: where the compiler sees that a body never returns, it drops the body's stores to the caller's variables,
  // and the handler then reads old values.
  void (*volatile call)(void *) = body;
  call(argument);
  Kernel::PopExceptionFrame();
  return true;
}
