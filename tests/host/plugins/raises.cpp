// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in that raises in its initialisation.
#include "LoadedPlugin.h"
#include "tavrel/Kernel.h"

const LoadedPlugin loadedPlugin = {.name = "raises", .initialise = [] { Kernel::RaiseError(tavrel::errDocument); }};
