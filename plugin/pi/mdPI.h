// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// How the host enters the plug-in: negotiation, set-up with the host's tables, handshake.
#pragma once

#include "tavrel/plugin.h"

/// Given in the set-up record; passed with every callback that the plug-in creates.
extern tavrel::ExtensionID gExtensionID;

// The host's tables are declared by their headers; these are the versions that were granted (for "Kernel", the
// handshake version). A version one below its minimum says that the table was not granted.
extern tavrel::HFT gCobbleHFT, gTSExtraHFT;
extern uint32_t gKernelVersion, gTavrelSupportVersion, gCobbleVersion, gDocModelVersion, gTavrelViewVersion,
    gDesktopVersion, gTSExtraVersion;

/// Called by the exported `main`: writes the smaller of the host's version and the plug-in's, and PISetupSDK. Always 1.
uint32_t PINegotiate(uint32_t hostVersion, uint32_t *outVersion, void **outSetupProc);

/// Takes the extension identifier and the "Kernel" table from the record, acquires the other six tables and writes
/// the handshake callback into the record. 0 on another handshake version or a table that is not granted.
uint32_t PISetupSDK(uint32_t version, tavrel::SetupRecord *record);

/// Writes the plug-in's name and its export, initialisation and unload callbacks. 0 on another handshake version.
uint32_t PIHandshake(uint32_t version, tavrel::HandshakeRecord *record);
