// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// Exception frames: how the failure of a host operation reaches the plug-in.
//
// A host operation marked [raises] does not return when it fails: the host stores the error code and calls the restore
// procedure of the innermost frame, which jumps back into the function that opened it. The rules:
//
//  1. Push the frame, then call setjmp on its context: 0 enters the protected body.
//  2. Pop it on both paths, in the function that pushed it, before that function returns. A raise pops nothing.
//  3. Between a frame and a call that may raise there is no object with a non-trivial destructor: the jump skips it.
//  4. What the handler needs after the jump is kept in memory that the body reaches through a pointer, not in a
//     local of the function that calls setjmp.
//  5. A failure with no frame of the plug-in open goes to a frame of the host, which ends that call into the plug-in.
//  6. Frames nest, up to `maxFrames`; one more is itself an error and raises.
#pragma once

#include <csetjmp>
#include <cstdint>

namespace tavrel {

struct ExceptionFrame {
  jmp_buf context;
};

/// Jumps back to the frame; never returns. Not declared noreturn: compilers then drop stores before the jump.
using RestoreProc = void (*)(ExceptionFrame *frame);

inline constexpr uint32_t maxFrames = 256;

/// Error codes of the host. 0 is no error.
enum ErrorCode : int32_t {
  errNone = 0,
  errGeneric = 1,     ///< something else went wrong
  errNoMemory = 2,    ///< memory is exhausted
  errBadHandle = 3,   ///< a handle that the host does not know
  errBadPage = 4,     ///< the document has no such page
  errBadArgument = 5, ///< an argument out of range
  errFrames = 6,      ///< too many frames, or one popped too often
  errDocument = 7,    ///< the document cannot be read
};

} // namespace tavrel
