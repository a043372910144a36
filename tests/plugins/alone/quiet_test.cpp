// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Plug-ins that read hits, without a plug-in that has any.
#include "tests/plugins/Plugins.h"

namespace {

class WithoutHits : public testing::TestWithParam<const char *> {};

TEST_P(WithoutHits, APluginShowsNothing) {
  const test::ScratchFolder folder;
  const std::string library = std::string(GetParam()) + ".so";
  std::filesystem::create_symlink(std::filesystem::path(TAVREL_PLUGINS) / library, folder.path() / library);
  test::PluginHost host(folder.path());
  EXPECT_EQ(gTavrelGLTHFT, nullptr);
  ASSERT_EQ(host.plugins.plugins().size(), 1U);
  EXPECT_EQ(host.plugins.plugins()[0].name, GetParam());
  EXPECT_EQ(host.plugins.plugins()[0].state, host::PluginState::initialised);
  host::ViewerDocument &document = host.app.open(test::fourPages(folder), "test.pdf", 72);
  host.app.draw(document);
  EXPECT_EQ(host.app.statusText(), "");
  EXPECT_TRUE(document.markedPages.empty());
  host.app.close(document);
  EXPECT_EQ(host.reports, std::vector<std::string>{});
}

INSTANTIATE_TEST_SUITE_P(Each, WithoutHits, testing::Values("BRZ", "HitPages", "HitSteps"),
                         [](const auto &tested) { return std::string(tested.param); });

} // namespace
