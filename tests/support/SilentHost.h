// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A host whose operations do nothing: for measuring what the plug-in itself costs. Memory comes from the C library, an
// atom is always 1, a callback is its function, and everything else returns 0 or null.
//
// It uses the plug-in's table globals, so a program has one such host, which cannot be removed.
#pragma once

#include "tavrel/types.h"

/// Points the plug-in's table globals to this host's tables.
void installSilentHost();

/// The document of the host's page view, and the page that it shows; null and 0 at first.
struct SilentView {
  tavrel::Doc document;
  int32_t page;
};
extern SilentView silentView;

/// A handle of a document; different numbers are different documents.
tavrel::Doc silentDocument(uintptr_t number);
