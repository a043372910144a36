// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The table "TavrelGLT" that the plug-in offers to other plug-ins (tavrel/TavrelGLT.h says what is in it).
#pragma once

#include "tavrel/types.h"

/// The server and, from the first request on, its table; null while there is none.
extern tavrel::HFTServer gGLTHFTServer;
extern tavrel::HFT gGLTHFT;

/// Set by the first request, also when the build fails: it is not tried again.
extern uint16_t gGLTHFTBuilt;

/// Offers the table. 1 when the host made a server for it.
tavrel::Bool16 GLTExportHFTServer();

/// Called by the host for a client: the table, built on the first request, or null above version 5.0.
tavrel::HFT GLTProvideHFT(tavrel::HFTServer server, uint32_t version);

/// Called by the host when the server is destroyed: releases the table. Later requests get null.
void GLTDestroyHFT(tavrel::HFTServer server);

/// Builds the table; on failure gGLTHFT is null, and a table that was made is left to the host, which owns its tables.
void GLTCreateHFT();
