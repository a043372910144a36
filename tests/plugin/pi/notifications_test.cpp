// The document notifications.
#include <gtest/gtest.h>

#include "plugin/glt/glt.h"
#include "plugin/pi/miPI.h"
#include "tests/host/RecordingHost.h"
#include "tests/plugin/glt/lists.h"

using namespace tavrel;

namespace {

TEST(Notifications, ClosingADocumentWithoutHighlightsUnregistersNothing) {
  RecordingHost host;
  miPIDocDidClose(host.doc, nullptr);
  EXPECT_EQ(host.trace,
            (std::vector<std::string>{R"(Kernel.AtomFromString("GLT"))", R"(Kernel.AtomFromString("GLT"))"}));
}

TEST(Notifications, DrawingAPageMovesThePositionToItsHighlights) {
  RecordingHost host;
  const ListOwner list({{2, 10, 3}, {5, 20, 3}});
  GLT_RegisterHLL(host.doc, list, GLT_CHARACTER_OFFSETS, nullptr, nullptr, 0, nullptr);
  uint32_t page = 9;
  uint16_t word = 9;

  host.shownPage = 5;
  miPIPageViewDraw(host.view, nullptr);
  GLT_GetPos(host.doc, &page, &word);
  EXPECT_EQ(page, 1U);
  EXPECT_EQ(word, 0);

  host.shownPage = 3;
  miPIPageViewDraw(host.view, nullptr);
  GLT_GetPos(host.doc, &page, &word);
  EXPECT_EQ(page, 1U) << "a page without highlights leaves it";
}

} // namespace
