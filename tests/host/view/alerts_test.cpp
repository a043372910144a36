// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The answers of a program without a window.
#include "host/view/alerts.h"

#include <gtest/gtest.h>

namespace host {
namespace {

// What is printed when an alert with these buttons is answered, and the number.
struct Answered {
  int32_t number;
  std::string printed;
  bool operator==(const Answered &) const = default;
};

void PrintTo(const Answered &answered, std::ostream *out) { *out << answered.number << ": " << answered.printed; }

using Buttons = std::array<std::optional<std::string>, 3>;

Answered answer(bool yes, const Buttons &buttons) {
  Alert alert;
  alert.message = "Sure?";
  alert.buttons = buttons;
  testing::internal::CaptureStderr();
  const int32_t number = answerAlerts(yes)(alert);
  return {number, testing::internal::GetCapturedStderr()};
}

Answered expected(int32_t number, const std::string &label) {
  return {number, "tavrel: asked \"Sure?\", answered \"" + label + "\"\n"};
}

TEST(AnswerAlerts, PressesTheButtonThatItPrints) {
  const Buttons all = {"Yes", "No", "Cancel"};
  EXPECT_EQ(answer(true, all), expected(1, "Yes"));
  EXPECT_EQ(answer(false, all), expected(2, "No"));
}

TEST(AnswerAlerts, TakesTheNextOneWhereAButtonIsMissing) {
  EXPECT_EQ(answer(true, {std::nullopt, "No", "Cancel"}), expected(2, "No"));
  EXPECT_EQ(answer(true, {std::nullopt, std::nullopt, "Cancel"}), expected(3, "Cancel"));
  EXPECT_EQ(answer(false, {"Yes", std::nullopt, "Cancel"}), expected(3, "Cancel"));
  EXPECT_EQ(answer(false, {"Yes", std::nullopt, std::nullopt}), expected(1, "Yes"));
}

TEST(AnswerAlerts, AnswersNothingWhereThereIsNoButton) {
  EXPECT_EQ(answer(true, {}), expected(0, "nothing"));
  EXPECT_EQ(answer(false, {}), expected(0, "nothing"));
}

} // namespace
} // namespace host
