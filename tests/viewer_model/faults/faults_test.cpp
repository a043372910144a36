// Memory that runs out in a viewer without a window: every allocation fails in turn while a document is opened,
// rendered, searched, reloaded and closed. Whoever reads asks again for what has failed with a line; then everything is
// there, once.
#include <optional>

#include "FailingNew.h"
#include "host/kernel/TestPlugin.h"
#include "viewer/model/session.h"
#include "viewer_model/Waker.h"
#include "viewer_model/TestDocuments.h"

namespace {

constexpr uint32_t red = 0xFFFF0000;

int s_opened, s_closed; // as plug-ins are notified

class Life {
public:
  explicit Life(const std::filesystem::path &file) : file_(file) {
    host::addHostTables(runtime_);
    s_opened = s_closed = 0;
    const auto registered = [this](tavrel::DocNotifyProc notified) {
      return host::Registration{testPlugin_.callback(notified), nullptr, testPlugin_.id};
    };
    app_.registerNotification(tavrel::notifyDocDidOpen, registered([](tavrel::Doc, void *) { ++s_opened; }));
    app_.registerNotification(tavrel::notifyDocDidClose, registered([](tavrel::Doc, void *) { ++s_closed; }));
    session_.emplace(app_, [this] { waker_.wake(); });
    session_->setWindow(40, 30, 0);
  }

  void goesOn() {
    opens();
    shows(red);
    finds();
    reloads();
    shows(red);
    closes();
    session_.reset();
    EXPECT_FALSE(test::hasOpen(file_));
    EXPECT_EQ(s_opened, 2);
    EXPECT_EQ(s_closed, 2);
  }

private:
  // False where memory ran out.
  template <typename Action> static bool tries(const Action &action) {
    try {
      const FailingNew::Armed armed;
      action();
      return true;
    } catch (const std::bad_alloc &) {
      return false;
    }
  }
  // As the window does it: what the threads have done is taken over, and a drawing that failed is tried again.
  bool until(const std::function<bool()> &done) {
    return waker_.until([&] {
      tries([this] { session_->collect(); });
      for (int drawings = 0; session_->needsDrawing() && drawings < 3; ++drawings)
        tries([this] { session_->draw(); });
      return done();
    });
  }
  // At most one allocation fails, so what comes to nothing is asked for once more.
  template <typename Action, typename Done>
  void once(const char *what, const Action &action, const std::function<bool()> &over, const Done &done) {
    for (int time = 0; time < 2 && !done(); ++time) {
      tries(action);
      ASSERT_TRUE(until(over)) << what;
    }
    EXPECT_TRUE(done()) << what << ": " << session_->message();
  }

  void opens() {
    once(
        "open",
        [this] {
          session_->open({file_, {}});
        },
        [this] { return !session_->opening(); }, [this] { return session_->documents().size() == 1; });
  }
  void shows(uint32_t color) {
    const auto there = [this] { return session_->shown().drawing && !session_->needsDrawing(); };
    ASSERT_TRUE(until(there)) << "show";
    if (!session_->pageError().empty()) { // whoever reads it has the file read anew
      --s_opened;
      --s_closed;
      ASSERT_TRUE(tries([this] { session_->reload(); }));
      ASSERT_TRUE(until([&] { return !session_->opening() && there() && session_->pageError().empty(); })) << "reload";
    }
    EXPECT_EQ(session_->shown().drawing->image.row(0)[0], color);
  }
  void finds() {
    once(
        "find",
        [this] {
          session_->find({"needle", {}}, false);
        },
        [this] { return !session_->searching(); }, [this] { return session_->page() == 1; });
    tries([this] { session_->goToPage(0); });
  }
  void reloads() {
    const host::ViewerDocument *before = session_->front();
    once(
        "reload", [this] { session_->reload(); }, [this] { return !session_->opening(); },
        [&] { return session_->front() != before; });
    EXPECT_EQ(session_->documents().size(), 1U);
  }
  void closes() {
    once(
        "close", [this] { session_->closeFront(); }, [] { return true; },
        [this] { return session_->documents().empty(); });
    EXPECT_EQ(app_.front(), nullptr);
    EXPECT_EQ(app_.documents().size(), 0U);
  }

  std::filesystem::path file_;
  test::Waker waker_;
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
  Life(file).goesOn(); // what is made once and kept
  for (size_t n = 0;; ++n) {
    testing::internal::CaptureStderr();
    const size_t before = blocksInUse();
    {
      const FailingNew failing(n, GetParam());
      Life(file).goesOn();
    }
    EXPECT_EQ(blocksInUse(), before);
    const std::string lines = testing::internal::GetCapturedStderr();
    ASSERT_FALSE(HasFailure()) << "allocation " << n << "\n" << lines;
    if (FailingNew::failed()) continue;
    EXPECT_GT(n, 20U);
    break;
  }
}

INSTANTIATE_TEST_SUITE_P(Of, Faults, testing::Values(FailingNew::owner, FailingNew::others),
                         [](const auto &of) { return of.param == FailingNew::owner ? "TheOwner" : "TheThreads"; });

} // namespace
