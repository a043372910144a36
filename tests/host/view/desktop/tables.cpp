// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The tables as a plug-in has them: tests call the host through these.
#include "host/view/tables.h"
#include "tavrel/Desktop.h"
#include "tavrel/Kernel.h"

tavrel::HFT gKernelHFT = host::kernelTable();
tavrel::HFT gDesktopHFT = host::desktopTable();
