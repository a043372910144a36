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

// Where a pixel is: in a mark, so close to one that a mark's edge or the outline of the current hit may cover it, or in
// neither.
enum Area { outside, near, inside };

// The words of a page's hit; none on most pages. Boxes are in points from the upper left.
struct Hit {
  std::vector<host::Box> words = {};

  Area areaOf(int x, int y, double dpi) const {
    constexpr double edge = 1;    // pixels
    constexpr double outline = 2; // points, and two more pixels
    const double perPoint = dpi / 72;
    const auto isWithin = [&](const host::Box &box, double by) {
      return x >= box.left * perPoint - by && x + 1 <= box.right * perPoint + by && y >= box.top * perPoint - by &&
             y + 1 <= box.bottom * perPoint + by;
    };
    if (std::any_of(words.begin(), words.end(), [&](const host::Box &word) { return isWithin(word, -edge); }))
      return inside;
    const bool isNear =
        !words.empty() && isWithin({words.front().left, words.front().top, words.back().right, words.back().bottom},
                                   outline * perPoint + 2);
    return isNear ? near : outside;
  }
};

// The hits of hits.xml are on the pages 3 and 9, counted from 0.
Hit hitOn(int32_t page, document::PdfFile &reference) {
  if (page != 3 && page != 9) return {};
  const std::vector<host::WordText> words = reference.text(page).words;
  const double height = reference.pageSize(page).height;
  Hit hit;
  for (const size_t index : page == 3 ? std::vector<size_t>{0} : std::vector<size_t>{2, 3}) {
    const host::Box &box = words.at(index).bounds;
    hit.words.push_back({box.left, height - box.top, box.right, height - box.bottom});
  }
  return hit;
}

// A mark of the default colour, red, keeps one component of a pixel. A line around it is dark.
bool isRight(Area area, uint32_t before, uint32_t now) {
  constexpr uint32_t red = 0xFFFF0000;
  if (area == outside) return now == before;
  if (area == inside) return now == (before & red);
  for (const uint32_t component : {0xFFU, 0xFF00U, 0xFF0000U})
    if ((now & component) > (before & component)) return false;
  return true;
}

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
    const Hit hit = hitOn(page, reference);
    EXPECT_EQ(drawing.marks, hit.words.empty() ? 0U : 1U) << "page " << page;
    const host::Image complete = reference.render(page, dpi);
    for (int y = 0; y < drawing.image.height; ++y)
      for (int x = 0; x < drawing.image.width; ++x) {
        const Area area = hit.areaOf(x + drawing.x, y + drawing.y, dpi);
        if (area == inside) ++marked;
        ASSERT_PRED3(isRight, area, complete.row(y + drawing.y)[x + drawing.x], drawing.image.row(y)[x])
            << std::hex << "page " << std::dec << page << ", " << x << ", " << y;
      }
  }

  std::mt19937 random;
  int killed = 0, unreadable = 0;
  int64_t marked = 0; ///< pixels
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
  std::cout << unreadable << " times a page was unreadable; " << marked << " pixels were marked\n";
  EXPECT_LT(unreadable, 20);
  EXPECT_GT(marked, 0);
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
