// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in inside of the test: it has a number, calls the host's tables, and the host calls its functions.
#pragma once

#include <string>
#include <vector>

#include "host/kernel/plugincall.h"
#include "host/kernel/runtime.h"

namespace test {

class TestPlugin {
public:
  explicit TestPlugin(host::Runtime &runtime, const char *name = "test plug-in")
      : id(runtime.extensions.add(name)), runtime_(runtime) {
    runtime.reporter = [this](const std::string &line) { reports.push_back(line); };
  }
  ~TestPlugin() {
    runtime_.reporter = [](const std::string &) {};
  }
  TestPlugin(const TestPlugin &) = delete;
  TestPlugin &operator=(const TestPlugin &) = delete;

  /// Runs the body as the host runs a plug-in; gives the code of the error that ended it, or 0. The body has no object
  /// with a destructor.
  template <typename Body> int32_t attempt(Body body) const {
    const auto run = [](void *memory) { (*static_cast<Body *>(memory))(); };
    return host::runInPlugin({id, "the body"}, run, &body) ? 0 : runtime_.frames.code();
  }

  /// A callback of the test plug-in's.
  template <typename Function> tavrel::Callback callback(Function *function) {
    return runtime_.callbacks.create(id, tavrel::entryOf(function));
  }

  const tavrel::ExtensionID id;
  std::vector<std::string> reports; ///< what the host reported about plug-ins

private:
  host::Runtime &runtime_;
};

} // namespace test
