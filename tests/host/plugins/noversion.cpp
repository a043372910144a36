// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A library whose entry point succeeds, but writes neither a handshake version nor a set-up procedure.
#include <cstdint>

extern "C" __attribute__((visibility("protected"))) uint32_t noVersionMain(uint32_t, uint32_t *,
                                                                           void **) __asm__("main");
uint32_t noVersionMain(uint32_t, uint32_t *, void **) { return 1; }
