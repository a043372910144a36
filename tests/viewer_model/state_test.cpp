// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The state as JSON.
#include <gmock/gmock.h>

#include "Sessions.h"
#include "viewer/model/json.h"
#include "viewer/model/state.h"

namespace viewer {
namespace {

using testing::HasSubstr;

struct StateTest : test::Sessions {
  std::string json(const WindowState &window = {}) { return stateOf(session().model(), app.statusText(), window); }
};

TEST_F(StateTest, StringsAreQuoted) {
  EXPECT_EQ(quoted(""), "\"\"");
  EXPECT_EQ(quoted("a \"b\" \\ c"), R"("a \"b\" \\ c")");
  EXPECT_EQ(quoted("1\n2\t\x1F \x7F"), "\"1\\u000a2\\u0009\\u001f \x7F\"");
  EXPECT_EQ(quoted("\u00E4"), "\"\u00E4\"");
  EXPECT_EQ(quoted("\xE4"), "\"\uFFFD\"");
}

TEST_F(StateTest, WithoutADocumentIsComplete) {
  EXPECT_THAT(json(),
              HasSubstr(R"("title":"Tavrel","status":"","plugins":"","documents":[],"front":0,"opening":false)"));
  EXPECT_THAT(json(), HasSubstr(R"("page":1,"pages":0)"));
  EXPECT_THAT(json(), testing::EndsWith("}"));
}

TEST_F(StateTest, HasWhatTheModelShows) {
  openPages(test::numberedPages(3), "my \"paper\".pdf");
  session().moving.goToPage(1);
  ASSERT_TRUE(draws());
  session().status.set("a message");
  app.setStatusText(testPlugin.id, "3 hits");
  const std::string state = json();
  EXPECT_THAT(state, HasSubstr(R"("status":"a message","plugins":"3 hits","documents":["my \"paper\".pdf"])"));
  EXPECT_THAT(state, HasSubstr(R"("page":2,"pages":3)"));
  EXPECT_THAT(state, HasSubstr(R"("drawn":{"there":true,"page":2,"marks":0,"scrollX":0,"scrollY":0)"));
}

TEST_F(StateTest, HasWhatTheWindowShows) {
  WindowState window;
  window.ticks = {1, 7};
  window.area = {10, 20, 300, 400};
  window.note = "rendering";
  window.buttons = {{"Next", "to the next", true, {1, 2, 3, 4}}};
  window.pageField = {"pageField", "2", {5, 6, 7, 8}};
  window.panel = {true, "Hits", 7, -1, {"a", "b"}, 20, {1, 1, 2, 2}, 3};
  window.dialogs = {{"find", {"Find:"}, {{"Close", {}, false, {}}}, {{"findText", "word", {}}}, {9, 9, 9, 9}}};
  window.dialogs[0].lists = {{"files", {"a.pdf", "b.pdf"}, 1, {1, 2, 3, 4}}};
  const std::string state = json(window);
  EXPECT_THAT(state, HasSubstr(R"("ticks":[1,7])"));
  EXPECT_THAT(state, HasSubstr(R"("area":{"x":10,"y":20,"width":300,"height":400},"note":"rendering")"));
  EXPECT_THAT(
      state,
      HasSubstr(
          R"("buttons":[{"name":"Next","tip":"to the next","enabled":true,"x":1,"y":2,"width":3,"height":4}],"pageField":{"name":"pageField","text":"2","x":5,"y":6,"width":7,"height":8})"));
  EXPECT_THAT(state, HasSubstr(R"("panel":{"shown":true,"title":"Hits","first":7,"current":-1,"texts":["a","b"],)"));
  EXPECT_THAT(state,
              HasSubstr(R"("dialogs":[{"name":"find","texts":["Find:"],"buttons":[{"label":"Close","enabled":false,)"));
  EXPECT_THAT(state, HasSubstr(R"("fields":[{"name":"findText","text":"word",)"));
  EXPECT_THAT(state, HasSubstr(R"("lists":[{"name":"files","items":["a.pdf","b.pdf"],"selected":1,"x":1,)"));
}

} // namespace
} // namespace viewer
