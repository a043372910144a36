// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// How the host enters a plug-in: the exported entry point and the two records that are exchanged.
//
// A plug-in is a shared library that exports one symbol, `main`, of type `PluginMain`. The host then calls, in this
// order: main; the set-up procedure that main returned; the handshake callback; then the export callback of every
// plug-in, the import callback of every plug-in and the initialisation callback of every plug-in, so that each finds
// what the others offer.
//
// At the end of the program plug-ins end one after the other. A plug-in that got a table from another one ends before
// it; apart from that, the plug-in loaded last ends first. Plug-ins that got tables from each other end one by one,
// too, the one loaded last first. To end a plug-in, the host
//
//  1. removes its table servers, so that no plug-in gets its tables any more, and calls their destroy procedures, the
//     newest server's first. The plug-in can make no new server from here on;
//  2. calls its unload callback, in which everything else still works, the tables of other plug-ins included;
//  3. drops what it registered: buttons, notifications, page-draw procedures, handlers of auxiliary data, its text on
//     the status line, its marked pages and lists. Its callbacks are unknown from then on, and an operation of a table
//     that it offered raises errBadHandle.
//
// After its unload callback has returned or raised, nothing of the plug-in is called. The library stays mapped.
#pragma once

#include "tavrel/types.h"

namespace tavrel {

/// The handshake version that plug-ins speak: major number in the upper half, minor in the lower.
inline constexpr uint32_t handshakeVersion = 0x00020000;

/// Given to the set-up procedure.
struct SetupRecord {
  uint32_t handshakeVersion; ///< must equal the negotiated one
  ExtensionID extension;     ///< the plug-in's number
  HFT kernel;                ///< the "Kernel" table
  Callback handshake;        ///< written by the plug-in
};

/// Given to the handshake callback. The plug-in writes its name and the callbacks that it has.
struct HandshakeRecord {
  uint32_t hostWord;     ///< the host's own
  uint16_t hostFlags;    ///< the host's own
  Atom name;             ///< under which the plug-in is known
  Callback exportTables; ///< uint32_t(): offer tables of its own
  Callback importTables; ///< uint32_t(): acquire tables of other plug-ins
  Callback initialise;   ///< uint32_t(): everything else
  Callback unload;       ///< uint32_t(): undo it
};

/// The plug-in's version, for the viewer's list of plug-ins: a note in the library, which the host can read even if the
/// plug-in fails to start. `TAVREL_PLUGIN_VERSION("5.0.5");` occurs once in a plug-in, in the source with the entry
/// point.
struct VersionNote {
  uint32_t ownerSize = 7;   ///< of `owner`, with its terminator
  uint32_t textSize = 32;   ///< of `text`
  uint32_t type = 1;        ///< a version
  char owner[8] = "Tavrel"; ///< padded to four bytes
  char text[32] = {};
};
// NOLINTBEGIN(bugprone-macro-parentheses): a string in parentheses initialises no array
#define TAVREL_PLUGIN_VERSION(version)                                                                                 \
  [[gnu::section(".note.tavrel"), gnu::used, gnu::aligned(4)]] static const tavrel::VersionNote tavrelVersionNote {    \
    .text = version                                                                                                    \
  }
// NOLINTEND(bugprone-macro-parentheses)

/// Negotiates: writes the version to speak and the set-up procedure (a SetupProc). Non-zero is success.
using PluginMain = uint32_t (*)(uint32_t hostVersion, uint32_t *outVersion, void **outSetupProc);
using SetupProc = uint32_t (*)(uint32_t handshakeVersion, SetupRecord *record);
using HandshakeProc = uint32_t (*)(uint32_t handshakeVersion, HandshakeRecord *record);
using LifecycleProc = uint32_t (*)();

/// The offset for pointers of 32 bits (narrow) or of 64 bits (wide).
constexpr size_t byPointerSize(size_t narrow, size_t wide) { return sizeof(void *) == 4 ? narrow : wide; }

static_assert(offsetof(SetupRecord, handshakeVersion) == 0 && offsetof(SetupRecord, extension) == 4);
static_assert(offsetof(SetupRecord, kernel) == 8 && offsetof(SetupRecord, handshake) == byPointerSize(12, 16));
static_assert(offsetof(HandshakeRecord, hostWord) == 0 && offsetof(HandshakeRecord, hostFlags) == 4);
static_assert(offsetof(HandshakeRecord, name) == 6 && offsetof(HandshakeRecord, exportTables) == 8);
static_assert(offsetof(HandshakeRecord, importTables) == byPointerSize(12, 16));
static_assert(offsetof(HandshakeRecord, initialise) == byPointerSize(16, 24));
static_assert(offsetof(HandshakeRecord, unload) == byPointerSize(20, 32));

} // namespace tavrel
