// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The one symbol that the plug-in exports: `main`, found by the host in the shared library.
//
// It has three arguments, so it is written under another name and given the symbol as an assembler label. It is
// protected, because the program that loads the plug-in has a `main`, too, which the plug-in's references to the symbol
// would otherwise resolve to.
#include "plugin/pi/mdPI.h"
#include "tavrel/plugin.h"

TAVREL_PLUGIN_VERSION("5.0.5");

extern "C" [[gnu::visibility("protected")]] uint32_t PIMain(uint32_t hostVersion, uint32_t *outVersion,
                                                            void **outSetupProc) __asm__("main");

extern "C" uint32_t PIMain(uint32_t hostVersion, uint32_t *outVersion, void **outSetupProc) {
  return PINegotiate(hostVersion, outVersion, outSetupProc);
}
