// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in whose version's note claims to be longer than all the notes of the library.
#include "LoadedPlugin.h"
#include "tavrel/plugin.h"

const LoadedPlugin loadedPlugin = {.name = "brokennote"};

namespace {

[[gnu::section(".note.tavrel"), gnu::used, gnu::aligned(4)]] const tavrel::VersionNote note{.textSize = 0x10000,
                                                                                            .text = "1.2.3"};

} // namespace
