// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The host's tables, in the globals through which plug-ins and these tests call the host.
#include "host/view/tables.h"
#include "host/document/document.h"
#include "tavrel/DocModel.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelView.h"

tavrel::HFT gKernelHFT = host::kernelTable();
tavrel::HFT gTavrelViewHFT = host::viewTable();
tavrel::HFT gDocModelHFT = host::docModelTable();
