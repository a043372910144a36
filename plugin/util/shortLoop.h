// For loops that mostly end at once: taking the jump back costs more than what is done in them.
#pragma once

#ifdef __clang__
#define SHORT_LOOP _Pragma("unroll(4)")
#else
#define SHORT_LOOP _Pragma("GCC unroll 4")
#endif
