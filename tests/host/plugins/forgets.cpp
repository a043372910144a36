// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in that leaves an exception frame open.
#include "LoadedPlugin.h"
#include "tavrel/Kernel.h"

static tavrel::ExceptionFrame forgotten;

const LoadedPlugin loadedPlugin = {
    .name = "forgets", .initialise = [] { Kernel::PushExceptionFrame(&forgotten, [](tavrel::ExceptionFrame *) {}); }};
