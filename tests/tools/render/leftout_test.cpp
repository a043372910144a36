// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "tools/leftout.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tools/failure.h"

namespace tools {
namespace {

using host::DocumentError;
using enum DocumentError::Reason;

struct LeftOutPages : testing::Test {
  // What is printed for the pages of paper.pdf that have been left out, with the line of the exception.
  std::string report(int32_t pageCount, PagesLeftOut::Processed processed = PagesLeftOut::Processed::allPages) const {
    std::ostringstream err;
    try {
      pages.report(err, "paper.pdf", pageCount, processed, limits);
    } catch (const CommandFailure &failure) {
      EXPECT_EQ(failure.status, exitDocument);
      err << "thrown: " << failure.what() << "\n";
    }
    return err.str();
  }
  PagesLeftOut pages;
  host::ProcessOptions limits{.program = {}, .memory = size_t{300} << 20, .pageTime = std::chrono::milliseconds(1500)};
};

TEST_F(LeftOutPages, AreReportedByReasonWithTheOptionThatSetsALimit) {
  pages.add(8, tooLong);
  pages.add(1, unreadable);
  pages.add(3, tooMuchMemory);
  pages.add(0, unreadable);
  pages.add(4, tooMuchMemory);
  pages.add(6, processFailed);
  EXPECT_EQ(report(9),
            "tavrel: paper.pdf: 2 of 9 pages are damaged and are left out: 1-2\n"
            "tavrel: paper.pdf: 2 of 9 pages take more than 300 megabytes (--document-memory) and are left out: 4-5\n"
            "tavrel: paper.pdf: 1 of 9 pages takes longer than 2 seconds (--page-time) and is left out: 9\n"
            "tavrel: paper.pdf: 1 of 9 pages makes its process fail and is left out: 7\n");
}

TEST_F(LeftOutPages, OfSomePagesAreNotCountedAmongAll) {
  pages.add(2, tooLong);
  EXPECT_EQ(report(9, PagesLeftOut::Processed::somePages),
            "tavrel: paper.pdf: 1 page takes longer than 2 seconds (--page-time) and is left out: 3\n");
}

TEST_F(LeftOutPages, ThatAreAllFailForTheirReason) {
  pages.add(0, tooMuchMemory);
  EXPECT_EQ(report(1), "thrown: paper.pdf: its page takes more than 300 megabytes (--document-memory)\n");
  pages.add(1, tooMuchMemory);
  EXPECT_EQ(report(2), "thrown: paper.pdf: all 2 pages take more than 300 megabytes (--document-memory)\n");
}

TEST_F(LeftOutPages, ThatAreAllForSeveralReasonsFailAfterThose) {
  pages.add(0, tooLong);
  pages.add(1, unreadable);
  EXPECT_EQ(report(2), "tavrel: paper.pdf: 1 of 2 pages is damaged and is left out: 2\n"
                       "tavrel: paper.pdf: 1 of 2 pages takes longer than 2 seconds (--page-time) and is left out: 1\n"
                       "thrown: paper.pdf: none of its 2 pages can be read\n");
}

TEST_F(LeftOutPages, MakeAnOutcomeThatOfTheOthers) {
  EXPECT_STREQ(pages.otherPages(), "");
  pages.add(0, unreadable);
  EXPECT_STREQ(pages.otherPages(), " on the other pages");
}

} // namespace
} // namespace tools
