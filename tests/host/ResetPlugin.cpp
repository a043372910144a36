// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Resets the plug-in's globals to their values at load.
#include "tests/host/ResetPlugin.h"

#include <cstdlib>
#include <cstring>
#include <iterator>

#include "plugin/glt/glt.h"
#include "plugin/glt/gltHFT.h"
#include "plugin/glt/miAssoc.h"
#include "plugin/input/gltAux.h"
#include "plugin/md/mdResources.h"
#include "plugin/pi/PIFrame.h"
#include "plugin/pi/mdPI.h"
#include "plugin/pi/miPI.h"
#include "tavrel/Desktop.h"
#include "tavrel/DocModel.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelSupport.h"
#include "tavrel/TavrelView.h"

using namespace tavrel;

void resetPlugin() {
  while (s_AssocList != nullptr) {
    AssocEntry *entry = s_AssocList;
    if (entry->size == sizeof(GLTRecord)) GLT_DeleteHLL(static_cast<GLTRecord *>(entry->data)->hll);
    AssociateDelete(entry->object, entry->key1, entry->key2);
  }
  free(gData);
  gData = nullptr;
  gGLTHFTServer = nullptr;
  gGLTHFT = nullptr;
  gGLTHFTBuilt = 0;
  auxDataRec = {};
  pGLTPrevExecProc = pGLTPrevEnabledProc = pGLTNextExecProc = pGLTNextEnabledProc = nullptr;
  std::fill(std::begin(stringCache), std::end(stringCache), nullptr);
  std::fill(std::begin(buttonStringCache), std::end(buttonStringCache), nullptr);
  std::fill(std::begin(bitmapCache), std::end(bitmapCache), 0);
  rootWidget = nullptr;
  gExtensionID = 0;
  gKernelHFT = gTavrelSupportHFT = gCobbleHFT = gDocModelHFT = gTavrelViewHFT = gDesktopHFT = gTSExtraHFT = nullptr;
  gKernelVersion = gTavrelSupportVersion = gCobbleVersion = gDocModelVersion = gTavrelViewVersion = gDesktopVersion =
      gTSExtraVersion = 0;
}

#define NAMED(function)                                                                                                \
  { #function, entryOf(function) }

const std::map<std::string, Entry> &pluginFunctions() {
  static const std::map<std::string, Entry> functions = {
      NAMED(PIHandshake),           NAMED(ExtensionExportHFTs),
      NAMED(ExtensionInit),         NAMED(ExtensionTerm),
      NAMED(RestorePlugInFrame),    NAMED(miPIDocDidOpen),
      NAMED(miPIDocDidClose),       NAMED(miPIPageViewDraw),
      NAMED(gltAuxdataPerformProc), NAMED(auxGLTJumpNotification),
      NAMED(auxGLTNewNotification), NAMED(GLTPrevExecProc),
      NAMED(GLTPrevEnabledProc),    NAMED(GLTNextExecProc),
      NAMED(GLTNextEnabledProc),    NAMED(GLTProvideHFT),
      NAMED(GLTDestroyHFT),
  };
  return functions;
}

const std::map<std::string, const void *> &pluginObjects() {
  static const std::map<std::string, const void *> objects = {{"auxDataRec", &auxDataRec}};
  return objects;
}
