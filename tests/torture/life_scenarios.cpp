// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// From the entry point to the unload callback, with a real top-level widget where there is X.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "plugin/pi/mdPI.h"
#include "plugin/pi/miPI.h"
#include "tests/support/TopLevel.h"
#include "tests/support/Xvfb.h"
#include "tests/torture/Torture.h"

using namespace tavrel;

namespace torture {

namespace {

constexpr const char *parentless = "TAVREL_PLUGIN_PARENTLESS_ROOT";

Widget topLevel() {
  static const PrivateXvfb server;
  static const TopLevel one(server.display());
  return one.widget();
}

/// The records outlive the scenario, as a host's do.
SetupRecord s_setup;
HandshakeRecord s_handshake;

void beforeSetup(RecordingHost &host) {
  unsetenv(parentless);
  host.topLevel = host.named(topLevel(), "topLevel");
  s_setup = {handshakeVersion, 77, host.kernelTable(), nullptr};
  s_handshake = {};
}

void exported(RecordingHost &host) {
  beforeSetup(host);
  gExtensionID = 77;
  ExtensionExportHFTs();
}

void initialised(RecordingHost &host) {
  exported(host);
  ExtensionInit();
}

void completeLife(RecordingHost &host) {
  uint32_t version = 0;
  void *setup = nullptr;
  PINegotiate(handshakeVersion, &version, &setup);
  if (!PISetupSDK(version, &s_setup) || !PIHandshake(version, &s_handshake)) return;
  if (!ExtensionExportHFTs() || !ExtensionInit()) return;
  miPIDocDidOpen(host.doc, nullptr);
  GLT_RegisterHLL(host.doc, sixHighlights(), GLT_CHARACTER_OFFSETS, jumpProc, newProc, 1, nullptr);
  miPIPageViewDraw(host.view, nullptr);
  miPIDocDidClose(host.doc, nullptr);
  noteTermination();
  ExtensionTerm();
}

} // namespace

std::vector<Scenario> lifeScenarios() {
  return {
      {"SetUp", beforeSetup, [](RecordingHost &) { PISetupSDK(handshakeVersion, &s_setup); }},
      {"Handshake", beforeSetup, [](RecordingHost &) { PIHandshake(handshakeVersion, &s_handshake); }},
      {"Export", beforeSetup, [](RecordingHost &) { ExtensionExportHFTs(); }},
      {"Initialisation", exported, [](RecordingHost &) { ExtensionInit(); }},
      {"InitialisationWithAnIndependentShell",
       [](RecordingHost &host) {
         exported(host);
         setenv(parentless, "1", 1);
       },
       [](RecordingHost &) { ExtensionInit(); }},
      {"InitialisationWithoutWindowSystem",
       [](RecordingHost &host) {
         exported(host);
         host.topLevel = nullptr;
       },
       [](RecordingHost &) { ExtensionInit(); }},
      {"Termination", initialised,
       [](RecordingHost &) {
         noteTermination();
         ExtensionTerm();
       }},
      {"CompleteLife", beforeSetup, completeLife},
  };
}

} // namespace torture
