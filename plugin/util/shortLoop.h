// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Unrolls loops that mostly end after a few iterations: there the jump back costs more than the loop's body.
#pragma once

#ifdef __clang__
#define SHORT_LOOP _Pragma("unroll(4)")
#else
#define SHORT_LOOP _Pragma("GCC unroll 4")
#endif
