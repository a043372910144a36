// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Registrations, first ones and replacing ones, and unregistering.
//
// No registration opens a frame, and none loses a block: no host call comes between copying the list and filing the
// record.
#include "plugin/pi/miPI.h"
#include "tests/torture/Torture.h"

using namespace tavrel;

namespace torture {

namespace {

HLL *s_list;

void withAList(RecordingHost & /*host*/) { s_list = sixHighlights(); }

void overAnother(RecordingHost &host) {
  registerSix(host);
  s_list = sixHighlights();
}

void registerInCharacters(RecordingHost &host, Bool16 scroll) {
  GLT_RegisterHLL(host.doc, s_list, GLT_CHARACTER_OFFSETS, jumpProc, newProc, scroll, nullptr);
}

void registeringNewProc(Doc document, HLL *list, void * /*userData*/) {
  if (!isActing()) return;
  RecordingHost::current().run(
      [&] { GLT_RegisterHLL(document, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr); });
}

void unregisteringNewProc(Doc document, HLL *list, void * /*userData*/) {
  if (isActing()) RecordingHost::current().run([&] { GLT_UnregisterHLL(document, list); });
}

std::function<void(RecordingHost &)> registeredWith(GLTNewProc procedure) {
  return [procedure](RecordingHost &host) {
    s_list = sixHighlights();
    GLT_RegisterHLL(host.doc, s_list, GLT_CHARACTER_OFFSETS, nullptr, procedure, 0, nullptr);
  };
}

/// Registers a list while another registration looks up its n-th atom, which is one of its key.
std::function<void(RecordingHost &)> interruptedByARegistration(int n) {
  return [n](RecordingHost &host) {
    host.answer(
        Kernel::AtomFromString, std::function([&host, left = n](const char *name) mutable {
          if (isActing() && left-- == 0)
            host.run([&] { GLT_RegisterHLL(host.doc, s_list, GLT_CHARACTER_OFFSETS, jumpProc, newProc, 0, nullptr); });
          return host.atom(name);
        }));
    registerInCharacters(host, 1);
  };
}

void registerTheRegistered(RecordingHost &host) {
  GLT_RegisterHLL(host.doc, GLT_GetHLL(host.doc), GLT_CHARACTER_OFFSETS, jumpProc, newProc, 1, nullptr);
}

void unregister(RecordingHost &host) { GLT_UnregisterHLL(host.doc, GLT_GetHLL(host.doc)); }

} // namespace

std::vector<Scenario> registryScenarios() {
  const auto characters = [](RecordingHost &host) { registerInCharacters(host, 0); };
  const auto scrolling = [](RecordingHost &host) { registerInCharacters(host, 1); };
  return {
      {"RegisterInCharacters", withAList, characters},
      {"RegisterInCharactersAndScroll", withAList, scrolling},
      {"RegisterInWords", withAList,
       [](RecordingHost &host) {
         const ColorValue green = {colorSpaceRGB, {0, fixedOne, 0, 0}};
         GLT_RegisterWordOffsetHLL(host.doc, s_list, jumpProc, newProc, 1, &green, 1);
       }},
      {"RegisterOverAnother", overAnother, characters},
      {"RegisterOverAnotherAndScroll", overAnother, scrolling},
      {"RegisterOverOneThatRegisters", registeredWith(registeringNewProc), characters},
      {"RegisterOverOneThatUnregisters", registeredWith(unregisteringNewProc), characters},
      {"RegisterWhileTheKeyOfAnotherIsMade", withAList, interruptedByARegistration(2)},
      {"RegisterOverAnotherWhileTheKeyIsMade", overAnother, interruptedByARegistration(4)},
      {"RegisterTheListThatIsRegistered", registerSix, registerTheRegistered},
      {"RegisterTheListThatItsRegistrantRegisters", registeredWith(registeringNewProc), registerTheRegistered},
      {"RegisterTheListOfAnotherDocument", registerSix,
       [](RecordingHost &host) {
         GLT_RegisterHLL(host.otherDoc, GLT_GetHLL(host.doc), GLT_CHARACTER_OFFSETS, jumpProc, newProc, 1, nullptr);
       }},
      {"RegisterAnEmptyList", [](RecordingHost &) { s_list = clientList(); }, scrolling},
      {"RegisterNoList", [](RecordingHost &) { s_list = nullptr; }, scrolling},
      {"RegisterWithoutView",
       [](RecordingHost &host) {
         overAnother(host);
         host.view = nullptr;
       },
       scrolling},
      {"Unregister", registerSix, unregister},
      {"UnregisterOneThatRegisters", registeredWith(registeringNewProc), unregister},
      {"UnregisterOneThatUnregisters", registeredWith(unregisteringNewProc), unregister},
      {"UnregisterAnother", overAnother, [](RecordingHost &host) { GLT_UnregisterHLL(host.doc, s_list); }},
      {"Close", registerSix, [](RecordingHost &host) { miPIDocDidClose(host.doc, nullptr); }},
      {"CloseWithoutList", nullptr, [](RecordingHost &host) { miPIDocDidClose(host.doc, nullptr); }},
  };
}

} // namespace torture
