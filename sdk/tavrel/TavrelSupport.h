// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// The "TavrelSupport" table, version 0x00050000: memory, tables that plug-ins offer, fixed-point geometry.
// Tags: see Kernel.h.
#pragma once

#include "tavrel/hft.h"

extern tavrel::HFT gTavrelSupportHFT;

namespace tavrel {
/// Returns a server's table for a requested version, or null. Called when the table is requested.
using ProvideProc = HFT (*)(HFTServer server, uint32_t version);
/// Called once, just before the plug-in's unload callback (plugin.h). The server is not requested any more.
using DestroyProc = void (*)(HFTServer server);
} // namespace tavrel

// clang-format off
#define TAVREL_SUPPORT_OPERATIONS(OPERATION)                                                                           \
  /* A block of size bytes, or null when memory is exhausted. [no-raise] [owned] */                                    \
  OPERATION(0, Malloc, void *(uint32_t size))                                                                          \
  /* Resizes a block; on null the old one stays as it is. [raises] on an unknown block. [owned] */                     \
  OPERATION(1, Realloc, void *(void *block, uint32_t size))                                                            \
  /* Releases a block; null is ignored. [raises] on an unknown block. */                                               \
  OPERATION(2, Free, void(void *block))                                                                                \
  /* Offers a table under a name; the host calls provide when it is asked for, destroy at the end. [raises] also when \
     the plug-in is ending. */                                                                                         \
  OPERATION(3, NewHFTServer, HFTServer(const char *name, ProvideProc provide, DestroyProc destroy, void *clientData))  \
  /* An empty table of that many selectors. The memory of released tables stays reserved, so make only a few. [raises] \
     [owned] */                                                                                                        \
  OPERATION(4, NewHFT, HFT(HFTServer server, uint32_t selectors))                                                      \
  /* Releases a table made with NewHFT; null is ignored. A plug-in that calls through it after that gets a raise,      \
     errBadHandle. [raises] */                                                                                         \
  OPERATION(5, DestroyHFT, void(HFT table))                                                                            \
  /* Stores a callback at a selector; flags are 0. [raises] */                                                         \
  OPERATION(6, ReplaceHFTEntry, void(HFT table, uint32_t selector, Callback callback, uint32_t flags))                 \
  /* The normalised bounds of the transformed rectangle: left <= right, bottom <= top. out may be in. [raises] */      \
  OPERATION(7, TransformFixedRect, void(FixedRect *out, const FixedMatrix *matrix, const FixedRect *in))
// clang-format on

namespace TavrelSupport {
using namespace tavrel;
#define TAVREL_SUPPORT_DECLARE(...) TAVREL_OPERATION(gTavrelSupportHFT, __VA_ARGS__)
TAVREL_SUPPORT_OPERATIONS(TAVREL_SUPPORT_DECLARE)
#undef TAVREL_SUPPORT_DECLARE
inline constexpr ListedOperation operations[] = {TAVREL_SUPPORT_OPERATIONS(TAVREL_LISTED)};
} // namespace TavrelSupport
