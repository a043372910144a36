// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// From the export callback to the unload callback, with a real top-level widget where a shell is made.
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

#include "plugin/glt/glt.h"
#include "plugin/glt/gltHFT.h"
#include "plugin/input/gltAux.h"
#include "plugin/md/mdResources.h"
#include "plugin/md/mdUtils.h"
#include "plugin/pi/mdPI.h"
#include "plugin/pi/miPI.h"
#include "tests/host/Faults.h"
#include "tests/host/RecordingHost.h"
#include "tests/support/FailingMemory.h"
#include "tests/support/Rows.h"
#include "tests/support/TopLevel.h"
#include "tests/support/Xvfb.h"

using namespace tavrel;

namespace {

// Export

TEST(Export, MakesZeroedGlobalDataAndOffersTheTable) {
  const RecordingHost host;
  EXPECT_EQ(ExtensionExportHFTs(), 1U);
  ASSERT_NE(gData, nullptr);
  EXPECT_EQ(gData->shell, nullptr);
  EXPECT_EQ(gData->prevBitmap + gData->nextBitmap, 0U);
  EXPECT_EQ(gData->prevButton, nullptr);
  EXPECT_EQ(gData->nextButton, nullptr);
  EXPECT_EQ(gData->buttonsShown, 0);
  EXPECT_EQ(host.story(), R"(
TavrelSupport.NewHFTServer("TavrelGLT", GLTProvideHFT, GLTDestroyHFT, null)
)");
}

TEST(Export, IgnoresThatTheHostMakesNoServer) {
  RecordingHost host;
  host.failAt(0);
  EXPECT_EQ(ExtensionExportHFTs(), 1U);
  EXPECT_NE(gData, nullptr);
}

TEST(Export, OutOfMemoryExportsNothing) {
  const RecordingHost host;
  const FailingMemory memory(0);
  EXPECT_EQ(ExtensionExportHFTs(), 0U);
  EXPECT_EQ(gData, nullptr);
  EXPECT_EQ(host.story(), "\n");
}

// Initialisation

/// A host with a real top-level widget, set up and exported.
class Lifecycle : public testing::Test {
protected:
  static void SetUpTestSuite() {
    unsetenv("TAVREL_PLUGIN_PARENTLESS_ROOT");
    server_ = std::make_unique<PrivateXvfb>();
    ASSERT_NE(server_->display(), "") << "no X server";
  }
  static void TearDownTestSuite() { server_.reset(); }

  void SetUp() override {
    application_ = std::make_unique<TopLevel>(server_->display());
    ASSERT_NE(application_->widget(), nullptr) << "no display";
    host.topLevel = host.named(application_->widget(), "topLevel");
    gExtensionID = 77;
    ExtensionExportHFTs();
    host.clear();
  }

  /// ExtensionTerm, which leaves `gData` dangling.
  uint32_t terminate() {
    const uint32_t result = ExtensionTerm();
    gData = nullptr;
    return result;
  }

  RecordingHost host;

private:
  static inline std::unique_ptr<PrivateXvfb> server_;
  std::unique_ptr<TopLevel> application_;
};

TEST_F(Lifecycle, InitialisationMakesShellNotificationsHandlerAndButtons) {
  EXPECT_EQ(ExtensionInit(), 1U);
  EXPECT_EQ(host.story(), R"(
Desktop.GetTopLevelWidget()
Desktop.RegisterResourceClass("Highlight", *)
Desktop.GetTopLevelWidget()
Kernel.CreateCallback(77, miPIDocDidOpen)
TavrelView.RegisterNotification(4, 77, miPIDocDidOpen, null)
Kernel.CreateCallback(77, miPIDocDidClose)
TavrelView.RegisterNotification(8, 77, miPIDocDidClose, null)
Kernel.CreateCallback(77, miPIPageViewDraw)
TavrelView.RegisterPageDrawProc(miPIPageViewDraw, null)
Kernel.CreateCallback(77, gltAuxdataPerformProc)
Kernel.AtomFromString("tavrelglt")
TavrelView.RegisterAuxDataHandler(77, 1, auxDataRec)
Kernel.AtomFromString("xml")
TavrelView.RegisterAuxDataHandler(77, 2, auxDataRec)
TavrelView.GetToolBar()
TavrelView.ToolBarHasSpace(toolBar, 2, 0)
Kernel.AtomFromString("FindAgainDialog")
TavrelView.ToolBarFindButton(toolBar, 3)
Desktop.GetResourceBitmap(*, "prev", "prev", *, 16, 16)
Kernel.AtomFromString("TavrelGLT:Prev")
TavrelView.ToolButtonCreate(4, 114, 0, 0)
Kernel.CreateCallback(77, GLTPrevExecProc)
TavrelView.ToolButtonAttachAction(TavrelGLT:Prev, GLTPrevExecProc, null)
Kernel.CreateCallback(77, GLTPrevEnabledProc)
TavrelView.ToolButtonAttachEnabledTest(TavrelGLT:Prev, GLTPrevEnabledProc, null)
Desktop.GetResourceString(*, "helpNext", "Jumps to the previous highlight")
TavrelView.ToolButtonAttachTip(TavrelGLT:Prev, "Jumps to the previous highlight")
Desktop.GetResourceBitmap(*, "next", "next", *, 16, 16)
Kernel.AtomFromString("TavrelGLT:Next")
TavrelView.ToolButtonCreate(5, 113, 0, 0)
Kernel.CreateCallback(77, GLTNextExecProc)
TavrelView.ToolButtonAttachAction(TavrelGLT:Next, GLTNextExecProc, null)
Kernel.CreateCallback(77, GLTNextEnabledProc)
TavrelView.ToolButtonAttachEnabledTest(TavrelGLT:Next, GLTNextEnabledProc, null)
Desktop.GetResourceString(*, "helpPrev", "Jumps to the next highlight")
TavrelView.ToolButtonAttachTip(TavrelGLT:Next, "Jumps to the next highlight")
TavrelView.ToolButtonSetAttribute(TavrelGLT:Prev, 2)
TavrelView.ToolButtonSetAttribute(TavrelGLT:Next, 2)
TavrelView.ToolBarInsertButton(toolBar, TavrelGLT:Prev, 0, findAgain)
TavrelView.ToolBarInsertButton(toolBar, TavrelGLT:Next, 0, TavrelGLT:Prev)
)");
}

TEST_F(Lifecycle, InitialisationFillsTheGlobalData) {
  ExtensionInit();
  EXPECT_EQ(gData->shell, rootWidget);
  EXPECT_NE(gData->shell, nullptr);
  EXPECT_EQ(gData->prevBitmap, 0x72U);
  EXPECT_EQ(gData->nextBitmap, 0x71U);
  EXPECT_NE(gData->prevButton, nullptr);
  EXPECT_NE(gData->nextButton, nullptr);
  EXPECT_EQ(gData->buttonsShown, 0) << "never set";
}

TEST_F(Lifecycle, InitialisationReturnsTheResultOfTheRegistrationForXml) {
  host.auxTypes.insert("xml"); // the host refuses a second registration
  EXPECT_EQ(ExtensionInit(), 0U);
  EXPECT_EQ(host.count("ToolBarInsertButton"), 2U) << "the buttons are set up all the same";
}

TEST_F(Lifecycle, InitialisationIgnoresTheRegistrationForTheOtherType) {
  host.auxTypes.insert("tavrelglt");
  EXPECT_EQ(ExtensionInit(), 1U);
}

TEST_F(Lifecycle, InitialisationIgnoresThatTheButtonsHaveNoSpace) {
  host.spaceOnToolBar = false;
  EXPECT_EQ(ExtensionInit(), 1U);
}

TEST_F(Lifecycle, WithoutAShellNothingIsRegistered) {
  host.topLevel = nullptr;
  EXPECT_EQ(ExtensionInit(), 0U);
  for (const char *registration : {"CreateCallback", "RegisterNotification", "RegisterPageDrawProc",
                                   "RegisterAuxDataHandler", "GetToolBar", "ToolButtonCreate"})
    EXPECT_EQ(host.count(registration), 0U) << registration;
}

TEST_F(Lifecycle, InitialisationOpensNoFrame) {
  host.raiseIn("RegisterPageDrawProc");
  EXPECT_FALSE(host.run([] { ExtensionInit(); }));
  EXPECT_EQ(host.count("PushExceptionFrame"), 0U);
  EXPECT_EQ(host.count("RegisterAuxDataHandler"), 0U);
}

// Termination

TEST_F(Lifecycle, TerminationDestroysTheShellThenUnregistersTheHandler) {
  ExtensionInit();
  const std::function note([this] { host.trace.emplace_back("the shell is destroyed"); });
  onDestruction(gData->shell, note);
  host.clear();
  EXPECT_EQ(terminate(), 1U);
  EXPECT_EQ(host.story(), R"(
the shell is destroyed
Kernel.AtomFromString("tavrelglt")
TavrelView.HasAuxDataHandler(1)
Kernel.AtomFromString("tavrelglt")
TavrelView.UnregisterAuxDataHandler(77, 1, auxDataRec)
Kernel.AtomFromString("xml")
TavrelView.HasAuxDataHandler(2)
Kernel.AtomFromString("xml")
TavrelView.UnregisterAuxDataHandler(77, 2, auxDataRec)
)");
}

TEST_F(Lifecycle, TerminationLeavesThePointerToTheGlobalDataAsItIs) {
  ExtensionInit();
  const auto before = reinterpret_cast<uintptr_t>(gData);
  ExtensionTerm();
  EXPECT_EQ(reinterpret_cast<uintptr_t>(gData), before);
  gData = nullptr;
}

TEST(Termination, WithoutShellAndBitmapsStillFreesAndUnregisters) {
  RecordingHost host;
  const size_t blocks = liveBlocks();
  ExtensionExportHFTs();
  host.auxTypes = {"tavrelglt", "xml"};
  EXPECT_EQ(ExtensionTerm(), 1U);
  EXPECT_EQ(liveBlocks(), blocks);
  gData = nullptr;
  EXPECT_EQ(host.auxTypes, (std::set<std::string>{}));
}

TEST(Termination, WithoutGlobalDataDestroysNoShell) {
  const RecordingHost host;
  mdTerm();
  EXPECT_EQ(host.story(), "\n");
}

struct Unregistration : Row {
  std::set<std::string> registered; ///< before
  std::string refused;              ///< the type that the host does not unregister
  uint32_t result;
};
class TerminationResult : public testing::TestWithParam<Unregistration> {};

TEST_P(TerminationResult, IsThatOfTheLastTypeUnregistered) {
  RecordingHost host;
  ExtensionExportHFTs();
  host.auxTypes = GetParam().registered;
  host.answer(TavrelView::UnregisterAuxDataHandler,
              std::function([&host](ExtensionID, Atom type, const AuxDataHandler *) {
                return Bool16{host.atomName(type) != GetParam().refused};
              }));
  EXPECT_EQ(ExtensionTerm(), GetParam().result);
  gData = nullptr;
}

INSTANTIATE_TEST_SUITE_P(Termination, TerminationResult,
                         testing::ValuesIn<Unregistration>({
                             {{"None"}, {}, "", 1},
                             {{"Both"}, {"tavrelglt", "xml"}, "", 1},
                             {{"XmlRefused"}, {"tavrelglt", "xml"}, "xml", 0},
                             {{"FirstOutcomeIsLost"}, {"tavrelglt", "xml"}, "tavrelglt", 1},
                             {{"OnlyTheFirstRefused"}, {"tavrelglt"}, "tavrelglt", 0},
                             {{"OnlyXmlRefused"}, {"xml"}, "xml", 0},
                         }),
                         rowName<Unregistration>);

TEST(Termination, FailingHostCallUnwindsToTheHost) {
  const auto end = [](RecordingHost &) {
    ExtensionTerm();
    gData = nullptr;
  };
  const auto prepare = [](RecordingHost &host) {
    ExtensionExportHFTs();
    host.auxTypes = {"tavrelglt", "xml"};
  };
  const auto check = [](RecordingHost &host, const std::string &call) {
    EXPECT_EQ(host.trace.back(), call) << "nothing is done after it";
    gData = nullptr;
  };
  EXPECT_EQ(raiseAtEveryCall({prepare, end, check}), 8U);
}

TEST(Termination, WithoutGlobalDataUnregistersTheHandler) {
  RecordingHost host;
  host.auxTypes = {"tavrelglt", "xml"};
  EXPECT_EQ(ExtensionTerm(), 1U);
  EXPECT_TRUE(host.auxTypes.empty());
}

} // namespace
