// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Highlight files to registrations, for tests: reads a file for the host's document and returns what is registered.
#pragma once

#include <memory>
#include <string>

#include "plugin/glt/glt.h"
#include "plugin/input/gltAux.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/glt/lists.h"

/// Passes exactly the file's bytes to the reader, without a NUL after them.
inline tavrel::Bool16 readFor(tavrel::Doc document, const std::string &file) {
  const std::unique_ptr<char[]> bytes(new char[file.size()]);
  file.copy(bytes.get(), file.size());
  return registerGLT(document, bytes.get(), static_cast<uint32_t>(file.size()));
}

inline tavrel::Bool16 readFile(const std::string &file) { return readFor(RecordingHost::current().doc, file); }

/// What is registered for the host's document.
inline Highlights registered() {
  const HLL *list = GLT_GetHLL(RecordingHost::current().doc);
  return list != nullptr ? highlightsOf(list) : Highlights{};
}

/// A file around location tags, in character offsets.
inline std::string fileOf(const std::string &locations) {
  return "<XML>\n<Body Units=\"characters\">\n<highlights>\n" + locations + "\n</highlights>\n</Body>\n</XML>\n";
}

/// A file around the attributes of the body tag, with one highlight.
inline std::string fileWith(const std::string &attributes) {
  return "<XML>\n<Body " + attributes +
         ">\n<highlights>\n<loc pg=\"1\" pos=\"2\" len=\"3\"/>\n</highlights>\n</Body>\n";
}
