// A host whose operations do nothing: for measuring what the plug-in itself costs. Memory comes from the C library, an
// atom is always 1, a callback is its function, and everything else returns 0 or null.
//
// The table globals are the plug-in's, so there is one such host in a program and it cannot be taken away.
#pragma once

#include "tavrel/types.h"

/// Points the plug-in's tables here.
void installSilentHost();

/// What the page view of the host belongs to, and which page it shows; null and 0 at first.
struct SilentView {
  tavrel::Doc document;
  int32_t page;
};
extern SilentView silentView;

/// A handle of a document; different numbers are different documents.
tavrel::Doc silentDocument(uintptr_t number);
