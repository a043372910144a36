// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The processes of a document are killed at random moments, a thousand times, while pages are turned and zoomed and
// hits stepped through. Each time the window shows afterwards what it would have shown; or, where three have been
// killed before a page was there, that, until the document is loaded again. TAVREL_SEED repeats a run.
#include <gmock/gmock.h>

#include <csignal>
#include <iostream>
#include <random>
#include <thread>

#include "document/pdf.h"
#include "tavrel/TavrelGLT.h"
#include "viewer_soak/Soak.h"

namespace {

using test::documentProcesses;
using test::Soak;
using test::Usage;
using testing::AnyOf;
using testing::HasSubstr;

class Kills : public Soak {
protected:
  Kills() {
    const char *given = std::getenv("TAVREL_SEED");
    const unsigned seed = given != nullptr ? static_cast<unsigned>(std::atoi(given)) : std::random_device{}();
    std::cout << "TAVREL_SEED=" << seed << "\n";
    random.seed(seed);
  }

  int below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(random); }

  void press(const char *name) {
    const tavrel::Atom atom = runtime.atoms.atom(name);
    host::ToolButton *button = app.toolBar()->find(atom);
    ASSERT_NE(button, nullptr);
    if (app.toolBar()->test(*button)) app.toolBar()->press(*button);
  }

  void act() {
    switch (below(6)) {
    case 0:
      return session.moving.turn(1);
    case 1:
      return session.moving.turn(-1);
    case 2:
      return session.moving.goToPage(below(session.documents.pageCount()));
    case 3:
      return session.moving.zoomBy(session.documents.view()->dpi() > 100 ? -1 : 1);
    case 4:
      return press(tavrel::gltNextButton);
    default:
      return press("TavrelGLT:Prev");
    }
  }

  // One of the processes, at a moment within the next milliseconds.
  void killOne() {
    const int iterations = below(4);
    for (int i = 0; i < iterations; ++i) {
      int one = 0;
      until([&] { return ++one > 1; });
    }
    std::this_thread::sleep_for(std::chrono::microseconds(below(8000)));
    const std::vector<pid_t> processes = documentProcesses();
    if (processes.empty()) return;
    kill(processes[static_cast<size_t>(below(static_cast<int>(processes.size())))], SIGKILL);
    ++killed;
  }

  // The hits are on the pages 3 and 9, counted from 0.
  void expectShown(document::PdfFile &reference) {
    const int32_t page = session.documents.page();
    const double dpi = session.documents.view()->dpi();
    const host::Drawing &drawing = *session.screen.shown().drawing;
    if (!session.tiles.error().empty()) {
      ++unreadable;
      EXPECT_THAT(session.tiles.error(),
                  AnyOf(HasSubstr(": its process failed: it was ended: Killed"),
                        HasSubstr(" is not read until the document is loaded again: its process failed: it")));
      EXPECT_EQ(drawing.image.row(0)[0], 0xFFFFFFFF);
      return;
    }
    EXPECT_EQ(drawing.page, page);
    EXPECT_EQ(drawing.marks, page == 3 || page == 9 ? 1U : 0U) << "page " << page;
    if (drawing.marks > 0) return;
    const host::Image complete = reference.render(page, dpi);
    for (int y = 0; y < drawing.image.height; ++y) {
      const uint32_t *row = drawing.image.row(y);
      ASSERT_TRUE(std::equal(row, row + drawing.image.width, complete.row(y + drawing.y) + drawing.x))
          << "page " << page << ", row " << y;
    }
  }

  std::mt19937 random;
  int killed = 0, unreadable = 0;
};

TEST_F(Kills, OfProcessesChangeNothingThatIsShown) {
  const auto reference = document::PdfFile::open(file, "");
  session.opener.open({file, "xml=hits.xml"});
  until([&] { return session.documents.front() != nullptr && drawn(); });
  rest();
  const Usage early = usage();
  while (killed < 1000) {
    act();
    const int32_t page = session.documents.page();
    killOne();
    until([&] { return drawn(); });
    ASSERT_EQ(session.documents.page(), page);
    expectShown(*reference);
    if (!session.tiles.error().empty()) {
      session.opener.reload();
      until([&] { return !session.opener.opening() && drawn(); });
      EXPECT_EQ(session.tiles.error(), "");
      ASSERT_EQ(session.documents.page(), page);
      expectShown(*reference);
    }
    ASSERT_FALSE(HasFailure()) << "after " << killed << " kills";
  }
  std::cout << unreadable << " times a page was unreadable\n";
  EXPECT_LT(unreadable, 20);
  for (int i = 0; i < 2; ++i) { // in place of those that were killed last
    session.documents.closeFront();
    session.opener.open({file, "xml=hits.xml"});
    until([&] { return session.documents.front() != nullptr && drawn(); });
  }
  rest();
  const Usage late = usage();
  std::cout << "early: " << early << "\nlate:  " << late << "\n";
  EXPECT_EQ(late.descriptors, early.descriptors);
  EXPECT_EQ(late.processes, early.processes);
}

} // namespace
