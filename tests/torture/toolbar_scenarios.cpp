// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The buttons and the platform layer: alerts, texts, labels, bitmaps.
#include "plugin/input/gltAux.h"
#include "plugin/md/mdResources.h"
#include "plugin/md/mdUtils.h"
#include "plugin/pi/mdPI.h"
#include "plugin/pi/miPI.h"
#include "tests/torture/Torture.h"

using namespace tavrel;

namespace torture {

namespace {

/// After export, with an address in place of the shell: lookups only pass it on.
void exported(RecordingHost &host) {
  gExtensionID = 77;
  ExtensionExportHFTs();
  rootWidget = reinterpret_cast<Widget>(uintptr_t{0x8000});
  host.clear();
}

void withButtons(RecordingHost &host) {
  exported(host);
  GLT_ShowButtons(1, nullptr);
  registerSix(host);
}

void press(RecordingHost & /*host*/) {
  GLTNextExecProc(nullptr, nullptr);
  GLTPrevExecProc(nullptr, nullptr);
}

void askAll(RecordingHost & /*host*/) {
  GLTPrevEnabledProc(nullptr, nullptr);
  GLTNextEnabledProc(nullptr, nullptr);
}

} // namespace

std::vector<Scenario> toolBarScenarios() {
  return {
      {"ShowButtons", exported, [](RecordingHost &) { GLT_ShowButtons(1, nullptr); }},
      {"ShowButtonsAfterAnother", exported, [](RecordingHost &host) { GLT_ShowButtons(1, host.findAgain); }},
      {"ShowButtonsAgain", withButtons, [](RecordingHost &) { GLT_ShowButtons(1, nullptr); }},
      {"HideButtons",
       [](RecordingHost &host) {
         withButtons(host);
         gData->buttonsShown = 1;
       },
       [](RecordingHost &) { GLT_ShowButtons(0, nullptr); }},
      {"PressButtons", withButtons, press},
      {"PressButtonsWithShift",
       [](RecordingHost &host) {
         withButtons(host);
         host.modifiers = modifierShift;
       },
       press},
      {"AskWhetherEnabled", withButtons, askAll},
      {"RegisterTheHandler", exported, [](RecordingHost &) { gltRegisterAuxdata(); }},
      {"UnregisterTheHandler",
       [](RecordingHost &host) {
         exported(host);
         gltRegisterAuxdata();
       },
       [](RecordingHost &) { gltUnregisterAuxdata(); }},
      {"Alerts", exported,
       [](RecordingHost &) {
         for (int32_t kind = 0; kind < 5; ++kind)
           for (int32_t buttons = 0; buttons < 5; ++buttons)
             mdAlert(kind, buttons, stringWrongVersion);
       }},
      {"AlertOfAText", exported, [](RecordingHost &) { mdAlertStr(nullptr, 0, mdYesNoCancel, "%d of %s", 1, "two"); }},
      {"Texts", exported,
       [](RecordingHost &) {
         char text[300];
         for (uint16_t id = 0; id < stringCount; ++id)
           mdGetString(id, text, sizeof text);
         for (uint16_t id = 0; id < buttonStringCount; ++id)
           mdGetButtonString(id, text, sizeof text);
       }},
      {"Bitmaps", exported,
       [](RecordingHost &) {
         mdGetBitmap(bitmapNext);
         mdGetBitmap(bitmapPrev);
       }},
      // The bundle is allocated before its bitmaps are looked up: a raise in a lookup loses it.
      {"IconBundle",
       exported,
       [](RecordingHost &) { mdReleaseIconBundle(mdGetIconBundle(bitmapNext, bitmapPrev)); },
       {},
       {1, 0}},
  };
}

} // namespace torture
