// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Exhausted memory in a viewer without a window: each allocation in turn fails while a document is opened, rendered,
// searched, reloaded and closed. A failed action is repeated, as a user does it after the message; then all results
// must be there, once.
#include <optional>

#include "FailingNew.h"
#include "host/kernel/TestPlugin.h"
#include "host/view/tables.h"
#include "viewer/model/session.h"
#include "viewer_model/TestDocuments.h"
#include "viewer_model/Until.h"

namespace {

constexpr uint32_t red = 0xFFFF0000;

int s_opened, s_closed; // the numbers of notifications of plug-ins
host::Application *s_app;
std::u32string s_words; // of the page drawn last

// As a plug-in does it, through the document. A failure is the plug-in's: it is called again at the next drawing.
void readWords() {
  host::ViewerDocument &front = *s_app->front();
  s_words.clear();
  try {
    s_words = front.model->pageText(front.view->page()).text();
  } catch (const std::exception &) {
    front.view->invalidate();
  }
}

class Scenario {
public:
  explicit Scenario(const std::filesystem::path &file) : file_(file) {
    host::addHostTables(runtime_);
    s_opened = s_closed = 0;
    const auto registered = [this](tavrel::DocNotifyProc notified) {
      return host::Registration{testPlugin_.callback(notified), nullptr, testPlugin_.id};
    };
    app_.registerNotification(tavrel::notifyDocDidOpen, registered([](tavrel::Doc, void *) { ++s_opened; }));
    app_.registerNotification(tavrel::notifyDocDidClose, registered([](tavrel::Doc, void *) { ++s_closed; }));
    app_.registerPageDraw(
        {testPlugin_.callback(+[](tavrel::PageView, void *) { readWords(); }), nullptr, testPlugin_.id});
    s_app = &app_;
    session_.emplace(app_);
    session_->moving.setWindow(40, 30, 0);
  }

  void run() {
    opens();
    shows(red);
    EXPECT_EQ(s_words, U"");
    finds();
    shows(red);
    EXPECT_EQ(s_words, U"needle");
    tries([this] { session_->moving.goToPage(0); });
    reloads();
    shows(red);
    closes();
    session_.reset();
    EXPECT_FALSE(test::hasOpen(file_));
    EXPECT_EQ(s_opened, 2);
    EXPECT_EQ(s_closed, 2);
  }

private:
  // False if memory was exhausted.
  template <typename Action> static bool tries(const Action &action) {
    try {
      const FailingNew::Armed armed;
      action();
      return true;
    } catch (const std::bad_alloc &) {
      return false;
    }
  }
  // As the window does it: takes over what has been answered, and tries a failed drawing again.
  bool until(const std::function<bool()> &done) {
    return test::until(session_->descriptor(), [&] {
      tries([this] { session_->arrivals.collect(); });
      for (int drawings = 0; session_->screen.needsDrawing() && drawings < 3; ++drawings)
        tries([this] { session_->screen.draw(); });
      return done();
    });
  }
  // At most one allocation fails, so a failed action is repeated once.
  template <typename Action, typename Done>
  void once(const char *what, const Action &action, const std::function<bool()> &over, const Done &done) {
    for (int time = 0; time < 2 && !done(); ++time) {
      tries(action);
      ASSERT_TRUE(until(over)) << what;
    }
    EXPECT_TRUE(done()) << what << ": " << session_->status.message();
  }

  void opens() {
    once(
        "open",
        [this] {
          session_->opener.open({file_, {}});
        },
        [this] { return !session_->opener.opening(); }, [this] { return session_->documents.all().size() == 1; });
  }
  void shows(uint32_t color) {
    const auto there = [this] { return session_->screen.shown().drawing && !session_->screen.needsDrawing(); };
    ASSERT_TRUE(until(there)) << "show";
    if (!session_->tiles.error().empty()) { // the user reloads the file
      --s_opened;
      --s_closed;
      ASSERT_TRUE(tries([this] { session_->opener.reload(); }));
      ASSERT_TRUE(until([&] { return !session_->opener.opening() && there() && session_->tiles.error().empty(); }))
          << "reload";
    }
    EXPECT_EQ(session_->screen.shown().drawing->image.row(0)[0], color);
  }
  void finds() {
    once(
        "find",
        [this] {
          session_->finding.find({"needle", {}}, false);
        },
        [this] { return !session_->finding.searching(); }, [this] { return session_->documents.page() == 1; });
  }
  void reloads() {
    const host::ViewerDocument *before = session_->documents.front();
    once(
        "reload", [this] { session_->opener.reload(); }, [this] { return !session_->opener.opening(); },
        [&] { return session_->documents.front() != before; });
    EXPECT_EQ(session_->documents.all().size(), 1U);
  }
  void closes() {
    once(
        "close", [this] { session_->documents.closeFront(); }, [] { return true; },
        [this] { return session_->documents.all().empty(); });
    EXPECT_EQ(app_.front(), nullptr);
    EXPECT_EQ(app_.documents().size(), 0U);
  }

  std::filesystem::path file_;
  host::Runtime runtime_;
  test::TestPlugin testPlugin_{runtime_};
  host::Application app_{runtime_};
  std::optional<viewer::Session> session_;
};

class Faults : public testing::TestWithParam<FailingNew::Threads> {};

TEST_P(Faults, LoseNothingAndDoNothingTwice) {
  const test::ScratchFolder folder;
  test::PdfPage first, second;
  second.texts = {{.x = 5, .y = 10, .text = "needle", .size = 5}};
  for (test::PdfPage *page : {&first, &second}) {
    page->width = page->height = 40;
    page->drawing = "1 0 0 rg 0 0 40 40 re f 0 g";
  }
  const auto file = folder.write("paper.pdf", test::pdfOf({first, second}));
  Scenario(file).run(); // for what is allocated once and kept
  for (size_t n = 0;; ++n) {
    testing::internal::CaptureStderr();
    const size_t before = blocksInUse();
    {
      const FailingNew failing(n, GetParam());
      Scenario(file).run();
    }
    EXPECT_EQ(blocksInUse(), before);
    const std::string lines = testing::internal::GetCapturedStderr();
    ASSERT_FALSE(HasFailure()) << "allocation " << n << "\n" << lines;
    if (FailingNew::failed()) continue;
    EXPECT_GT(n, GetParam() == FailingNew::owner ? 20U : 1U);
    break;
  }
}

INSTANTIATE_TEST_SUITE_P(Of, Faults, testing::Values(FailingNew::owner, FailingNew::others), [](const auto &of) {
  return of.param == FailingNew::owner ? "TheOwner" : "TheThreadThatOpensFiles";
});

} // namespace
