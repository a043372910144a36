// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The reader of highlight files over any bytes, with host calls and allocations that fail where the input says: no
// frame is left open, and a good file that is read afterwards is registered. Where nothing fails, nothing stays open,
// and no block of the host's stays allocated except the working copy of a file that is no highlight file. Memory is
// lost only where a call raises.
//
// Input: the fault ('0' none, '1' a call raises, '2' it and all later ones raise, '3' a call returns nothing, '4' an
// allocation fails), which one, counted from '0', the answer to the host's question ('1' is yes), then the file.
#include <gtest/gtest.h>
#include <sanitizer/lsan_interface.h>

#include <cstdint>
#include <memory>
#include <string>

#include "fuzz/require.h"
#include "plugin/glt/glt.h"
#include "plugin/input/gltAux.h"
#include "tests/host/RecordingHost.h"
#include "tests/support/FailingMemory.h"

namespace {

enum Fault : uint8_t { none, raiseOnce, raiseOn, fail, memory, faults };

const std::string goodFile = "<XML>\n<Body Units=\"characters\">\n<highlights>\n<loc pg=1 pos=2 len=3>\n"
                             "<loc pg=1 pos=9 len=1>\n<loc pg=4 pos=0 len=7>\n</highlights>\n</Body>\n</XML>\n";

/// Gives the reader exactly the file's bytes.
tavrel::Bool16 read(RecordingHost &host, const std::string &file) {
  const std::unique_ptr<char[]> bytes(new char[file.size()]);
  file.copy(bytes.get(), file.size());
  tavrel::Bool16 result = 0;
  host.run([&] { result = registerGLT(host.doc, bytes.get(), static_cast<uint32_t>(file.size())); });
  return result;
}

void requireNothingLeft(const RecordingHost &host) {
  require(host.openPages.empty() && host.finders.empty() && host.brackets == 0, "nothing stays open");
  // One call only: the working copy was allocated, and then the reader returned early.
  require(host.blocks.empty() || host.calls == 1, "no block stays but the copy of a file that is no highlight file");
}

void requireGoodFileRegistered(RecordingHost &host) {
  require(read(host, goodFile) == 1, "a good file is registered");
  const HLL *list = GLT_GetHLL(host.doc);
  require(list != nullptr, "a good file's list is there");
  require(HLL_GetPageCount(list) == 2 && HLL_GetWordCount(list) == 3, "a good file's list is complete");
  require(host.frames() == 0, "no frame is left by a good file");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  GTEST_FLAG_SET(throw_on_failure, true); // the host's failed expectations abort as well
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size < 3) return 0;
  const uint8_t fault = static_cast<uint8_t>(data[0] - '0') % faults, n = static_cast<uint8_t>(data[1] - '0');
  const std::string file(reinterpret_cast<const char *>(data + 3), size - 3);

  RecordingHost host;
  host.alertAnswer = data[2] - '0';
  if (fault == raiseOnce) host.raiseAt(n);
  if (fault == raiseOn) host.raiseFrom(n);
  if (fault == fail) host.failAt(n);
  tavrel::Bool16 result = 0;
  // A raise loses the list and the copy, which would otherwise be reported as leaks.
  const bool raises = fault == raiseOnce || fault == raiseOn;
  if (raises) __lsan_disable();
  {
    const FailingMemory failing(fault == memory ? n : SIZE_MAX);
    result = read(host, file);
  }
  if (raises) __lsan_enable();
  require(host.frames() == 0, "no frame is left");
  if (fault == none) {
    requireNothingLeft(host);
    require((result != 0) == (GLT_GetHLL(host.doc) != nullptr), "the result says whether a list was registered");
  }
  host.noFaults();
  host.clear();
  requireGoodFileRegistered(host);
  return 0;
}
