// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The auxiliary-data channel: registration, delivery, unregistration.
#include <gtest/gtest.h>

#include "plugin/pi/mdPI.h"
#include "plugin/pi/miPI.h"
#include "tests/plugin/input/reading.h"
#include "tests/support/Rows.h"

using namespace tavrel;

namespace {

using Calls = std::vector<std::string>;

const std::string goodFile = fileOf("<loc pg=3 pos=1 len=2>");

Bool16 deliver(RecordingHost &host, const std::string &type, const std::string &file) {
  return gltAuxdataPerformProc(host.atom(type), file.data(), static_cast<uint32_t>(file.size()), host.doc);
}

TEST(AuxData, RegistersBothTypesThenShowsTheButtons) {
  RecordingHost host;
  host.toolBar = nullptr;
  gExtensionID = 42;
  host.atom("tavrelglt");
  host.atom("xml");
  EXPECT_EQ(gltRegisterAuxdata(), 1);
  EXPECT_EQ(host.trace,
            (Calls{"Kernel.CreateCallback(42, gltAuxdataPerformProc)", R"(Kernel.AtomFromString("tavrelglt"))",
                   "TavrelView.RegisterAuxDataHandler(42, 1, auxDataRec)", R"(Kernel.AtomFromString("xml"))",
                   "TavrelView.RegisterAuxDataHandler(42, 2, auxDataRec)", "TavrelView.GetToolBar()"}));
  EXPECT_EQ(auxDataRec.size, 8U) << "on every machine";
  EXPECT_EQ(auxDataRec.perform, entryOf(gltAuxdataPerformProc));
}

TEST(AuxData, RegistrationCreatesTheButtons) {
  RecordingHost host;
  ExtensionExportHFTs();
  EXPECT_EQ(gltRegisterAuxdata(), 1);
  EXPECT_EQ(host.count("ToolButtonCreate"), 2U);
  EXPECT_EQ(host.count("ToolBarInsertButton"), 2U);
}

TEST(AuxData, EachRegistrationMakesACallback) {
  RecordingHost host;
  host.toolBar = nullptr;
  gltRegisterAuxdata();
  gltRegisterAuxdata();
  EXPECT_EQ(host.count("CreateCallback"), 2U);
}

struct RegisterRow : Row {
  std::set<std::string> taken;
  int result;
};

class AuxDataRegister : public testing::TestWithParam<RegisterRow> {};

TEST_P(AuxDataRegister, ResultIsThatOfXml) {
  RecordingHost host;
  host.toolBar = nullptr;
  host.auxTypes = GetParam().taken;
  EXPECT_EQ(gltRegisterAuxdata(), GetParam().result);
  EXPECT_EQ(host.auxTypes, (std::set<std::string>{"tavrelglt", "xml"}));
  EXPECT_EQ(host.count("GetToolBar"), 1U);
}

const RegisterRow registrations[] = {
    {{"Both"}, {}, 1},
    {{"OwnTypeRefused"}, {"tavrelglt"}, 1},
    {{"XmlRefused"}, {"xml"}, 0},
    {{"BothRefused"}, {"tavrelglt", "xml"}, 0},
};
INSTANTIATE_TEST_SUITE_P(Rows, AuxDataRegister, testing::ValuesIn(registrations), rowName<RegisterRow>);

struct UnregisterRow : Row {
  std::set<std::string> known;
  Bool16 ownAnswer, xmlAnswer;
  int result;
  std::vector<std::string> unregistered;
};

class AuxDataUnregister : public testing::TestWithParam<UnregisterRow> {};

TEST_P(AuxDataUnregister, ResultIsThatOfTheLastOneUnregistered) {
  RecordingHost host;
  host.auxTypes = GetParam().known;
  std::vector<std::string> unregistered;
  host.answer(TavrelView::UnregisterAuxDataHandler,
              std::function([&](ExtensionID, Atom type, const AuxDataHandler *handler) {
                EXPECT_EQ(handler, &auxDataRec);
                unregistered.push_back(host.atomName(type));
                return unregistered.back() == "xml" ? GetParam().xmlAnswer : GetParam().ownAnswer;
              }));
  EXPECT_EQ(gltUnregisterAuxdata(), GetParam().result);
  EXPECT_EQ(unregistered, GetParam().unregistered);
}

const UnregisterRow unregistrations[] = {
    {{"NoneKnown"}, {}, 0, 0, 1, {}},
    {{"OnlyOwn"}, {"tavrelglt"}, 1, 0, 1, {"tavrelglt"}},
    {{"OnlyOwnRefused"}, {"tavrelglt"}, 0, 1, 0, {"tavrelglt"}},
    {{"OnlyXml"}, {"xml"}, 0, 1, 1, {"xml"}},
    {{"OnlyXmlRefused"}, {"xml"}, 1, 0, 0, {"xml"}},
    {{"Both"}, {"tavrelglt", "xml"}, 1, 1, 1, {"tavrelglt", "xml"}},
    {{"OutcomeOfOwnIsLost"}, {"tavrelglt", "xml"}, 0, 1, 1, {"tavrelglt", "xml"}},
    {{"XmlRefused"}, {"tavrelglt", "xml"}, 1, 0, 0, {"tavrelglt", "xml"}},
};
INSTANTIATE_TEST_SUITE_P(Rows, AuxDataUnregister, testing::ValuesIn(unregistrations), rowName<UnregisterRow>);

TEST(AuxData, UnregistrationCallsInOrder) {
  RecordingHost host;
  gExtensionID = 42;
  host.atom("tavrelglt");
  host.atom("xml");
  host.auxTypes = {"tavrelglt", "xml"};
  EXPECT_EQ(gltUnregisterAuxdata(), 1);
  EXPECT_EQ(host.without({"AtomFromString"}),
            (Calls{"TavrelView.HasAuxDataHandler(1)", "TavrelView.UnregisterAuxDataHandler(42, 1, auxDataRec)",
                   "TavrelView.HasAuxDataHandler(2)", "TavrelView.UnregisterAuxDataHandler(42, 2, auxDataRec)"}));
}

struct DeliveryRow : Row {
  std::string type, file;
  int result;
  Highlights highlights;
};

class AuxDataDelivery : public testing::TestWithParam<DeliveryRow> {};

TEST_P(AuxDataDelivery, Handles) {
  RecordingHost host;
  EXPECT_EQ(deliver(host, GetParam().type, GetParam().file), GetParam().result);
  EXPECT_EQ(host.count("Malloc"), GetParam().result != 0 && !GetParam().file.empty() ? 1U : 0U);
  EXPECT_EQ(registered(), GetParam().highlights);
}

const DeliveryRow deliveries[] = {
    {{"OwnType"}, "tavrelglt", goodFile, 1, {{3, 1, 2}}},
    {{"Xml"}, "xml", goodFile, 1, {{3, 1, 2}}},
    {{"OtherType"}, "html", goodFile, 0, {}},
    {{"TypesAreNotCaseless"}, "XML", goodFile, 0, {}},
    {{"GeneralXmlIsTakenAndRegistersNothing"}, "xml", "<?xml version=\"1.0\"?><note>hello</note>", 1, {}},
    {{"FileThatCannotBeReadIsTaken"}, "tavrelglt", "nonsense", 1, {}},
    {{"EmptyIsTaken"}, "tavrelglt", "", 1, {}},
    {{"EmptyXmlIsTaken"}, "xml", "", 1, {}},
    {{"EmptyOtherIsNot"}, "html", "", 0, {}},
};
INSTANTIATE_TEST_SUITE_P(Rows, AuxDataDelivery, testing::ValuesIn(deliveries), rowName<DeliveryRow>);

TEST(AuxData, WithoutDocumentIsNotHandled) {
  RecordingHost host;
  for (const char *type : {"tavrelglt", "xml", "html"})
    EXPECT_EQ(gltAuxdataPerformProc(host.atom(type), goodFile.data(), 10, nullptr), 0) << type;
  EXPECT_EQ(gltAuxdataPerformProc(host.atom("xml"), nullptr, 0, nullptr), 0);
  EXPECT_EQ(host.count("Malloc"), 0U);
}

TEST(AuxData, WithoutDataIsHandledAndDoesNothing) {
  RecordingHost host;
  EXPECT_EQ(gltAuxdataPerformProc(host.atom("xml"), nullptr, 10, host.doc), 1);
  EXPECT_EQ(gltAuxdataPerformProc(host.atom("xml"), "<XML>", 0, host.doc), 1);
  EXPECT_EQ(host.without({"AtomFromString"}), Calls{});
}

TEST(AuxData, DeliveredThroughTheCallbackThatTheHostHolds) {
  RecordingHost host;
  host.toolBar = nullptr;
  gltRegisterAuxdata();
  const auto perform = functionOf<AuxDataProc>(auxDataRec.perform);
  EXPECT_EQ(perform(host.atom("xml"), goodFile.data(), static_cast<uint32_t>(goodFile.size()), host.doc), 1);
  EXPECT_EQ(registered(), (Highlights{{3, 1, 2}}));
}

TEST(AuxData, SecondDeliveryReplacesTheFirst) {
  RecordingHost host;
  deliver(host, "xml", goodFile);
  deliver(host, "tavrelglt", fileOf("<loc pg=9 pos=9 len=9>"));
  EXPECT_EQ(registered(), (Highlights{{9, 9, 9}}));
}

TEST(AuxData, EachDocumentHasItsOwn) {
  RecordingHost host;
  deliver(host, "xml", goodFile);
  gltAuxdataPerformProc(host.atom("xml"), goodFile.data(), static_cast<uint32_t>(goodFile.size()), host.otherDoc);
  EXPECT_NE(GLT_GetHLL(host.otherDoc), nullptr);
  EXPECT_NE(GLT_GetHLL(host.otherDoc), GLT_GetHLL(host.doc));
}

TEST(AuxData, ProceduresOfAFileHaveNoEffect) {
  RecordingHost host;
  auxGLTJumpNotification(host.doc, nullptr, GLT_JUMP_NEXT, nullptr);
  auxGLTNewNotification(host.doc, nullptr, nullptr);
  testing::internal::CaptureStderr();
  EXPECT_EQ(dbgprintf("%s %d\n", "text", 3), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(host.trace, Calls{});
}

} // namespace
