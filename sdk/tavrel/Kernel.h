// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// The "Kernel" table: atoms, callbacks, exception frames, and access to every other table. The set-up record contains
// it.
//
// Tags of all tables: [raises] fails by raising (frame.h); [no-raise] never fails; [owned] the caller releases the
// result; [borrowed until X] the caller may read the result until X and does not release it. Booleans are 1 and 0.
#pragma once

#include "tavrel/frame.h"
#include "tavrel/hft.h"

extern tavrel::HFT gKernelHFT;

// clang-format off
#define KERNEL_OPERATIONS(OPERATION)                                                                                   \
  /* Raises a host error: jumps to the innermost exception frame. */                                                   \
  OPERATION(0, RaiseError, void(int32_t code))                                                                         \
  /* Opens an exception frame; the caller then calls setjmp on it. [raises] when there are too many. */                \
  OPERATION(1, PushExceptionFrame, void(ExceptionFrame *frame, RestoreProc restore))                                   \
  /* Closes the innermost frame. [raises] when none of the plug-in's is open. */                                       \
  OPERATION(2, PopExceptionFrame, void())                                                                              \
  /* The code of the error raised last. [no-raise] */                                                                  \
  OPERATION(3, GetExceptionCode, int32_t())                                                                            \
  /* The atom of a name; the name is copied. [raises] */                                                               \
  OPERATION(4, AtomFromString, Atom(const char *name))                                                                 \
  /* Wraps a function for the host to call. The same function of the same plug-in gets the same handle. [raises] */    \
  OPERATION(5, CreateCallback, Callback(ExtensionID extension, Entry function))                                        \
  /* The named table at exactly that version, or null. [raises] */                                                     \
  OPERATION(6, RequestTable, HFT(Atom name, uint32_t version))
// clang-format on

namespace Kernel {
using namespace tavrel;
using tavrel::Atom; // X has an Atom, too
#define KERNEL_DECLARE(...) TAVREL_OPERATION(gKernelHFT, __VA_ARGS__)
KERNEL_OPERATIONS(KERNEL_DECLARE)
#undef KERNEL_DECLARE
inline constexpr ListedOperation operations[] = {KERNEL_OPERATIONS(TAVREL_LISTED)};
} // namespace Kernel
