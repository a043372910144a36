// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Plug-ins of the loader's tests that use each other's tables. A table has the plug-in's name and one operation.
#pragma once

/// Offers the plug-in's own table; in the export callback.
void offerTable();
/// The same, and the plug-in never destroys the table.
void offerTableForEver();
/// Gets another plug-in's table; in the import callback.
void getTable(const char *plugin);
/// Calls the operation of the table that getTable got.
void askPeer();
