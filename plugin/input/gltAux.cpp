// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The auxiliary-data channel: the plug-in's two types, and what the host delivers under them.
#include "plugin/input/gltAux.h"

#include "plugin/glt/glt.h"
#include "plugin/pi/mdPI.h"
#include "tavrel/Kernel.h"

using namespace tavrel;

AuxDataHandler auxDataRec;

namespace {

/// The record's size in the host interface, on every machine.
constexpr uint32_t handlerSize = 8;

Atom highlightType() { return Kernel::AtomFromString("tavrelglt"); }
Atom xmlType() { return Kernel::AtomFromString("xml"); }

} // namespace

Bool16 gltRegisterAuxdata() {
  auxDataRec.size = handlerSize;
  auxDataRec.perform = Kernel::CreateCallback(gExtensionID, entryOf(gltAuxdataPerformProc));
  TavrelView::RegisterAuxDataHandler(gExtensionID, highlightType(), &auxDataRec);
  const Bool16 result = TavrelView::RegisterAuxDataHandler(gExtensionID, xmlType(), &auxDataRec);
  GLT_ShowButtons(1, nullptr);
  return result;
}

Bool16 gltUnregisterAuxdata() {
  Bool16 result = 1;
  if (TavrelView::HasAuxDataHandler(highlightType()))
    result = TavrelView::UnregisterAuxDataHandler(gExtensionID, highlightType(), &auxDataRec);
  if (TavrelView::HasAuxDataHandler(xmlType())) // its result replaces that of the first type
    result = TavrelView::UnregisterAuxDataHandler(gExtensionID, xmlType(), &auxDataRec);
  return result;
}

Bool16 gltAuxdataPerformProc(Atom type, const void *data, uint32_t length, Doc document) {
  if (type != highlightType() && type != xmlType()) return 0;
  if (document == nullptr) return 0;
  if (data != nullptr && length != 0) registerGLT(document, data, length); // handled also when it could not be read
  return 1;
}

void auxGLTJumpNotification(Doc /*document*/, HLL * /*list*/, uint32_t /*code*/, void * /*userData*/) {}

void auxGLTNewNotification(Doc /*document*/, HLL * /*list*/, void * /*userData*/) {}

int32_t dbgprintf(const char * /*format*/, ...) { return 0; }
