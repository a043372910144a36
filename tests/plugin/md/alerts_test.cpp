// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Alerts: kinds, button sets, answers, formatted texts; and the assertion report.
#include <gtest/gtest.h>

#include "plugin/md/mdUtils.h"
#include "tests/plugin/md/setting.h"
#include "tests/support/Rows.h"

namespace {

using Calls = std::vector<std::string>;

struct KindRow : Row {
  int32_t kind, icon;
};

class AlertKind : public testing::TestWithParam<KindRow> {};

TEST_P(AlertKind, HasTheIcon) {
  RecordingHost host;
  EXPECT_EQ(mdAlertText(nullptr, GetParam().kind, mdOK, "text"), mdResultOK);
  EXPECT_EQ(host.trace,
            (Calls{"TavrelView.Alert(" + std::to_string(GetParam().icon) + R"(, "text", "OK", null, null, 1))"}));
}

const KindRow kinds[] = {
    {{"Zero"}, 0, 1}, {{"One"}, 1, 3},       {{"Two"}, 2, 2},       {{"ThreeIsOneAgain"}, 3, 3},
    {{"Four"}, 4, 0}, {{"MinusOne"}, -1, 0}, {{"Large"}, 65536, 0},
};
INSTANTIATE_TEST_SUITE_P(Kinds, AlertKind, testing::ValuesIn(kinds), rowName<KindRow>);

/// A button set: its labels as the trace shows them, and the results of the answers 1, 2 and 3.
struct ButtonsRow : Row {
  int32_t buttons;
  const char *labels;
  int32_t first, second, third;
};

class AlertButtons : public testing::TestWithParam<ButtonsRow> {
protected:
  static int32_t answered(int32_t answer) {
    RecordingHost host;
    host.alertAnswer = answer;
    const int32_t result = mdAlertText(nullptr, 0, GetParam().buttons, "text");
    EXPECT_EQ(host.trace, (Calls{std::string(R"(TavrelView.Alert(1, "text", )") + GetParam().labels + ", 1)"}));
    return result;
  }
};

TEST_P(AlertButtons, ShowTheirLabelsAndMapTheAnswer) {
  EXPECT_EQ(answered(1), GetParam().first);
  EXPECT_EQ(answered(2), GetParam().second);
  EXPECT_EQ(answered(3), GetParam().third);
}

const ButtonsRow buttonSets[] = {
    {{"OkIsAlwaysOk"}, 0, R"("OK", null, null)", 1, 1, 1},
    {{"OkCancel"}, 1, R"("OK", "Cancel", null)", 1, 2, 2},
    {{"YesNo"}, 2, R"("Yes", "No", null)", 4, 3, 3},
    {{"YesNoCancel"}, 3, R"("Yes", "No", "Cancel")", 4, 3, 2},
    {{"UnknownIsShownWithoutLabels"}, 5, "null, null, null", 0, 0, 0},
    {{"NextToTheLastKnown"}, 4, "null, null, null", 0, 0, 0},
    {{"Negative"}, -1, "null, null, null", 0, 0, 0},
};
INSTANTIATE_TEST_SUITE_P(Sets, AlertButtons, testing::ValuesIn(buttonSets), rowName<ButtonsRow>);

// An answer that no button has, as when the window is closed.
TEST_P(AlertButtons, OtherAnswersCountAsTheLastButton) {
  EXPECT_EQ(answered(0), GetParam().third);
  EXPECT_EQ(answered(4), GetParam().third);
}

TEST(Alerts, LabelsAreTheUsers) {
  RecordingHost host;
  pretendShell(host);
  host.resources = {{"tvYesButton", "Ja"}, {"tvNoButton", "Nein"}, {"tvCancelButton", "Abbrechen"}};
  mdAlertText(nullptr, 2, mdYesNoCancel, "Sichern?");
  EXPECT_EQ(host.trace.back(), R"(TavrelView.Alert(2, "Sichern?", "Ja", "Nein", "Abbrechen", 1))");
}

TEST(Alerts, TextIsNoFormat) {
  RecordingHost host;
  mdAlertText(nullptr, 0, mdOK, "100 %s %d %");
  EXPECT_EQ(host.alertMessage, "100 %s %d %");
}

TEST(Alerts, OwnerIsNotUsed) {
  RecordingHost host;
  int owner = 7;
  mdAlertText(&owner, 1, mdOKCancel, "text");
  mdAlertText(nullptr, 1, mdOKCancel, "text");
  EXPECT_EQ(host.trace[0], host.trace[1]);
  EXPECT_EQ(owner, 7);
}

TEST(Alerts, StringOfAnIdentifier) {
  RecordingHost host;
  host.alertAnswer = 2;
  EXPECT_EQ(mdAlert(0, mdYesNoCancel, stringWrongVersion), mdResultNo);
  EXPECT_EQ(host.alertMessage, mdGetStringPtr(stringWrongVersion));
  host.alertAnswer = 3;
  EXPECT_EQ(mdAlert(0, mdYesNoCancel, stringWrongVersion), mdResultCancel);
}

TEST(Alerts, StringIsAFormat) {
  RecordingHost host;
  pretendShell(host);
  host.resources = {{"fullName", "%s has %d hits on %c"}};
  mdAlert(1, mdOK, 15, "page", 12, 'x');
  EXPECT_EQ(host.alertMessage, "page has 12 hits on x");
  mdAlertEx(nullptr, 1, mdOK, 15, "book", 3, 'y');
  EXPECT_EQ(host.alertMessage, "book has 3 hits on y");
}

TEST(Alerts, FormatGivenDirectly) {
  RecordingHost host;
  EXPECT_EQ(mdAlertStr(nullptr, 3, mdOKCancel, "%d of %s", 3, "ten"), mdResultOK);
  EXPECT_EQ(host.trace, (Calls{R"(TavrelView.Alert(3, "3 of ten", "OK", "Cancel", null, 1))"}));
}

int32_t alertWithArguments(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int32_t result = mdAlertDoIt(nullptr, 2, mdYesNo, format, arguments);
  va_end(arguments);
  return result;
}

TEST(Alerts, FormatWithArgumentList) {
  RecordingHost host;
  EXPECT_EQ(alertWithArguments("%s-%s", "a", "b"), mdResultYes);
  EXPECT_EQ(host.trace, (Calls{R"(TavrelView.Alert(2, "a-b", "Yes", "No", null, 1))"}));
}

TEST(Alerts, IdentifierKeeps16Bits) {
  RecordingHost host;
  mdAlert(0, mdOK, 0x10000 + 15);
  EXPECT_EQ(host.alertMessage, "Glint");
  mdAlertEx(nullptr, 0, mdOK, 0x20000 + 1);
  EXPECT_EQ(host.alertMessage, "ENU");
}

TEST(Alerts, UnknownIdentifier) {
  RecordingHost host;
  mdAlert(0, mdOK, 21);
  EXPECT_EQ(host.alertMessage, "Bad String ID");
}

TEST(Alerts, LongestText) {
  RecordingHost host;
  const std::string text(2049, 'x');
  mdAlertStr(nullptr, 0, mdOK, "%s", text.c_str());
  EXPECT_EQ(host.alertMessage, text);
}

TEST(Alerts, LongerTextsAreTruncated) {
  RecordingHost host;
  const std::string text(5000, 'x');
  mdAlertStr(nullptr, 0, mdOK, "%s", text.c_str());
  EXPECT_EQ(host.alertMessage, text.substr(0, 2049));
}

TEST(Alerts, LongerStringsAreTruncated) {
  RecordingHost host;
  pretendShell(host);
  host.resources = {{"fullName", std::string(5000, 'x')}};
  mdAlert(0, mdOK, 15);
  EXPECT_EQ(host.alertMessage, std::string(2049, 'x'));
}

struct AssertRow : Row {
  const char *expression, *file;
  uint16_t line;
  const char *report;
};

class Assertion : public testing::TestWithParam<AssertRow> {};

TEST_P(Assertion, IsReportedAndReturns) {
  RecordingHost host;
  testing::internal::CaptureStderr();
  mdAssert(GetParam().expression, GetParam().file, GetParam().line);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), GetParam().report);
  EXPECT_EQ(host.trace, Calls{});
}

const AssertRow assertions[] = {
    {{"Usual"}, "p != NULL", "glt", 120, "Assert p != NULL in file glt, line 120.\n"},
    {{"LargestLine"}, "x", "f", 65535, "Assert x in file f, line 65535.\n"},
    {{"PercentSigns"}, "a % b == %d", "f%s", 0, "Assert a % b == %d in file f%s, line 0.\n"},
};
INSTANTIATE_TEST_SUITE_P(Reports, Assertion, testing::ValuesIn(assertions), rowName<AssertRow>);

} // namespace
