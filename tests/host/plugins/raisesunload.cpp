// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in that raises in its unload callback.
#include "LoadedPlugin.h"
#include "tavrel/Kernel.h"

const LoadedPlugin loadedPlugin = {.name = "raisesunload", .unload = [] { Kernel::RaiseError(tavrel::errGeneric); }};
