// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in whose set-up creates no handshake callback.
#include "LoadedPlugin.h"

const LoadedPlugin loadedPlugin = {.name = "nohandshake", .noHandshake = true};
