// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Every command that a test starts uses the plug-ins of this build; without this a program finds only installed ones.
#include <gtest/gtest.h>

#include <cstdlib>

namespace {

class BuiltPlugins : public testing::Environment {
public:
  void SetUp() override { ASSERT_EQ(setenv("TAVREL_PLUGIN_PATH", TAVREL_PLUGINS, 1), 0); }
};

auto *const s_environment = testing::AddGlobalTestEnvironment(new BuiltPlugins); // owned by the framework

} // namespace
