// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A document service that answers late, wrongly, twice, with an error or never: each request in turn, while a document
// is opened, shown with the marks of a plug-in, searched, reloaded and closed. What failed is repeated, as a user does
// it. Then everything must be there, once, and nobody may have waited beyond the deadline.
//
// Nothing here runs on another thread, and no time passes: a wait in vain ends at once, and its length is noted.
#include <gmock/gmock.h>
#include <poll.h>

#include <list>

#include "TestDocuments.h"
#include "document/here.h"
#include "host/kernel/TestPlugin.h"
#include "host/view/tables.h"
#include "tavrel/DocModel.h"
#include "tavrel/TavrelView.h"
#include "viewer/model/session.h"

namespace viewer {
namespace {

enum class Fault { late, wrongPage, wrongSize, error, twice, never };

// The fault, and what has happened.
struct Injection {
  Fault fault;
  size_t at;        ///< which request has it, counted from 0
  size_t asked = 0; ///< so far
  bool wakes = false;
  bool releases = false;                            ///< what is late comes now
  std::vector<std::chrono::milliseconds> vain = {}; ///< waits that ended without an answer
};

struct OtherPage {
  void operator()(host::Opened &got) const { got.pageCount = 0; }
  void operator()(host::Sizes &got) const { ++got.first; }
  void operator()(host::PageWords &got) const { ++got.page; }
  void operator()(host::PageImage &got) const { ++got.page; }
  void operator()(host::PageMatches &got) const { ++got.page; }
  template <typename Got> void operator()(Got & /*got*/) const {} // a failure, or nothing that the viewer asks for
};

struct OtherSize {
  void operator()(host::Opened &got) const { got.sizes.resize(static_cast<size_t>(got.pageCount) + 1, {40, 40}); }
  void operator()(host::Sizes &got) const { got.sizes.pop_back(); }
  void operator()(host::PageWords &got) const { got.order.push_back(0); }
  void operator()(host::PageImage &got) const { got.image = {1, 1, {0}}; }
  void operator()(host::PageMatches &got) const { got.found.emplace_back(); }
  template <typename Got> void operator()(Got & /*got*/) const {}
};

class FaultyBackend final : public host::Backend {
public:
  FaultyBackend(Injection &injection, std::unique_ptr<host::Backend> right)
      : injection_(injection), right_(std::move(right)) {}

  void start(host::Orders order) noexcept override {
    const bool faulty = injection_.asked++ == injection_.at;
    const uint64_t id = order.front().id;
    right_->start(std::move(order));
    host::Orders answered = right_->await(id, {});
    host::Order &one = answered.front();
    injection_.wakes = true;
    if (faulty) switch (injection_.fault) {
      case Fault::late:
        return late_.splice(late_.end(), answered);
      case Fault::wrongPage:
        std::visit(OtherPage{}, one.answer.value);
        break;
      case Fault::wrongSize:
        std::visit(OtherSize{}, one.answer.value);
        break;
      case Fault::error:
        one.answer.value = host::Failure{tavrel::errDocument, "injected"};
        break;
      case Fault::twice:
        answered.push_back(one);
        break;
      case Fault::never:
        return;
      }
    ready_.splice(ready_.end(), answered);
  }
  void setUrgency(uint64_t /*id*/, host::Urgency /*urgency*/) noexcept override {}
  void cancel(uint64_t id) noexcept override {
    for (host::Orders *list : {&ready_, &late_})
      list->remove_if([=](const host::Order &order) { return order.id == id; });
  }
  bool underWay(uint64_t /*id*/) const noexcept override { return false; }
  host::Orders take() noexcept override {
    if (injection_.releases) ready_.splice(ready_.end(), late_);
    return std::exchange(ready_, {});
  }
  host::Orders await(uint64_t id, host::Time deadline) noexcept override {
    host::Orders one;
    const auto found = std::find_if(ready_.begin(), ready_.end(), [=](const auto &order) { return order.id == id; });
    if (found != ready_.end())
      one.splice(one.begin(), ready_, found);
    else
      injection_.vain.push_back(std::chrono::ceil<std::chrono::milliseconds>(
          std::min(deadline, std::chrono::steady_clock::now() + std::chrono::hours(1)) -
          std::chrono::steady_clock::now()));
    return one;
  }

private:
  Injection &injection_;
  std::unique_ptr<host::Backend> right_;
  host::Orders ready_, late_;
};

class Scenario {
public:
  Scenario(const test::ScratchFolder &folder, const std::filesystem::path &file, Injection &injection)
      : folder_(folder), file_(file), injection_(injection) {
    host::addHostTables(runtime_);
    s_opened = s_closed = 0;
    const auto registered = [this](tavrel::DocNotifyProc notified) {
      return host::Registration{testPlugin_.callback(notified), nullptr, testPlugin_.id};
    };
    app_.registerNotification(tavrel::notifyDocDidOpen, registered([](tavrel::Doc, void *) { ++s_opened; }));
    app_.registerNotification(tavrel::notifyDocDidClose, registered([](tavrel::Doc, void *) { ++s_closed; }));
    const tavrel::PageDrawProc mark = [](tavrel::PageView view, void *) {
      const tavrel::Page page = DocModel::DocOpenPage(TavrelView::DocGetModelDoc(TavrelView::PageViewGetDoc(view)),
                                                      TavrelView::PageViewGetPageNum(view));
      const tavrel::TextRange first{0, 1};
      TavrelView::PageViewPaintSelection(view, DocModel::SelectionFromWordRanges(page, &first, 1, 2));
    };
    app_.registerPageDraw({testPlugin_.callback(mark), nullptr, testPlugin_.id});
    session_.emplace(app_, [this](const std::filesystem::path &opened) {
      return std::make_shared<host::Service>(
          opened,
          std::make_unique<FaultyBackend>(injection_, document::answeringAtOnce(document::PdfFile::open(opened, ""))));
    });
    session_->moving.setWindow(40, 40, 0);
  }

  void run() {
    opens();
    shows(0);
    session_->moving.goToPage(pages - 3);
    shows(pages - 3);
    finds();
    shows(pages - 1);
    EXPECT_EQ(session_->documents.all().size(), 1U);
    session_->documents.closeFront();
    EXPECT_EQ(app_.front(), nullptr);
    session_.reset();
    EXPECT_EQ(s_opened, s_closed);
    // A page that is late is waited for once; nobody waits longer than a second.
    EXPECT_LE(injection_.vain.size(), 1U);
    for (const std::chrono::milliseconds wait : injection_.vain)
      EXPECT_LE(wait, std::chrono::seconds(1));
    // What comes late or twice needs no help of the user.
    const bool helps = injection_.fault != Fault::late && injection_.fault != Fault::twice;
    EXPECT_LE(repetitions_, helps ? 1 : 0);
  }

  static constexpr int32_t pages = 40; ///< more than have their sizes asked for at once

private:
  bool isWoken() {
    pollfd ready{session_->descriptor(), POLLIN, 0};
    return std::exchange(injection_.wakes, false) || poll(&ready, 1, 0) == 1;
  }
  // As the window does it. What is late comes when there is nothing else to do.
  void settle() {
    for (int released = 0; released < 2; ++released) {
      injection_.wakes = true;
      while (isWoken() || session_->screen.needsDrawing()) {
        session_->arrivals.collect();
        session_->screen.draw();
      }
      injection_.releases = true;
    }
    injection_.releases = false;
  }

  void opens() {
    session_->opener.open({file_, {}});
    settle();
    // A file that is never open blocks no other; one that has failed is opened again.
    if (session_->documents.all().empty()) {
      ++repetitions_;
      const bool blocked = session_->opener.opening();
      session_->opener.open({blocked ? folder_.write("again.pdf", test::bytesOf(file_)) : file_, {}});
      settle();
    }
    ASSERT_EQ(session_->documents.all().size(), 1U);
    EXPECT_EQ(session_->documents.pageCount(), pages);
  }

  // The page with the mark of the plug-in on its first word.
  void shows(int32_t page) {
    settle();
    ASSERT_EQ(session_->documents.page(), page);
    const auto isThere = [this] {
      const Shown &shown = session_->screen.shown();
      return shown.drawing && shown.drawing->marks == 1 && session_->tiles.error().empty();
    };
    if (!isThere()) { // the user reloads the file
      ++repetitions_;
      session_->opener.reload();
      settle();
    }
    ASSERT_TRUE(isThere()) << "page " << page;
    EXPECT_EQ(session_->screen.shown().page, page);
    EXPECT_EQ(session_->screen.shown().pageWidth, 40);
    EXPECT_EQ(session_->screen.shown().drawing->image.row(0)[0], 0xFFFF0000);
  }

  void finds() {
    session_->finding.find({"needle", {}}, false);
    settle();
    if (session_->finding.searching() || session_->documents.page() != pages - 1) { // the user tries it again
      ++repetitions_;
      session_->finding.end();
      session_->finding.find({"needle", {}}, false);
      settle();
    }
    EXPECT_FALSE(session_->finding.searching());
  }

  static inline int s_opened, s_closed; // the numbers of notifications of plug-ins

  const test::ScratchFolder &folder_;
  std::filesystem::path file_;
  Injection &injection_;
  int repetitions_ = 0; ///< what the user has done once more
  host::Runtime runtime_;
  test::TestPlugin testPlugin_{runtime_};
  host::Application app_{runtime_};
  std::optional<Session> session_;
};

class ServiceFaults : public testing::TestWithParam<Fault> {};

TEST_P(ServiceFaults, LoseNothingShowNothingTwiceAndNobodyWaitsBeyondTheDeadline) {
  const test::ScratchFolder folder;
  std::vector<test::PdfPage> pages(Scenario::pages);
  for (test::PdfPage &page : pages) {
    page = {.texts = {{.x = 5, .y = 10, .text = "hay", .size = 5}}, .width = 40, .height = 40};
    page.drawing = "1 0 0 rg 0 0 40 40 re f 0 g";
  }
  pages.back().texts.push_back({.x = 5, .y = 20, .text = "needle", .size = 5});
  const auto file = folder.write("paper.pdf", test::pdfOf(pages));
  for (size_t at = 0;; ++at) {
    testing::internal::CaptureStderr();
    Injection injection{GetParam(), at};
    Scenario(folder, file, injection).run();
    const std::string lines = testing::internal::GetCapturedStderr();
    ASSERT_FALSE(HasFailure()) << "request " << at << "\n" << lines;
    EXPECT_LE(std::ranges::count(lines, '\n'), 2) << lines;
    if (injection.asked > at) continue;
    EXPECT_GT(at, 15U);
    break;
  }
}

std::string nameOf(const testing::TestParamInfo<Fault> &fault) {
  constexpr const char *names[] = {"AnswersThatAreLate",   "AnswersForAnotherPage", "AnswersOfAnotherSize", "Errors",
                                   "AnswersThatComeTwice", "AnswersThatNeverCome"};
  return names[static_cast<size_t>(fault.param)];
}

INSTANTIATE_TEST_SUITE_P(Of, ServiceFaults,
                         testing::Values(Fault::late, Fault::wrongPage, Fault::wrongSize, Fault::error, Fault::twice,
                                         Fault::never),
                         nameOf);

} // namespace
} // namespace viewer
