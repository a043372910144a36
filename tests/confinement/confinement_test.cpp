// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What a document process cannot do after a hostile file has taken it over. The stand-in (standin.cpp) is confined in
// the same way; its document's name says what it tries.
#include <gmock/gmock.h>
#include <linux/landlock.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "host/document/descriptor.h"
#include "host/document/process.h"
#include "host/document/processes.h"
#include "host/document/sanitized.h"
#include "support/pdf.h"

namespace {

using namespace host;
using testing::EndsWith;
using testing::HasSubstr;

constexpr const char *denied = "Operation not permitted", *noAccess = "Permission denied";

bool kernelRestrictsFiles() {
  return syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) > 0;
}

// How the answer ends a test: its line, or "answered".
std::string lineOf(const Answer &answer) {
  const auto *failure = std::get_if<Failure>(&answer.value);
  return failure == nullptr ? "answered" : failure->line;
}

// Another file in place of one of the standard ones, until the end of this object.
class Instead {
public:
  Instead(int standard, const Descriptor &other) : standard_(standard), kept_(dup(standard)) {
    EXPECT_EQ(dup2(other.number(), standard), standard);
  }
  Instead(const Instead &) = delete;
  Instead &operator=(const Instead &) = delete;
  ~Instead() { EXPECT_EQ(dup2(kept_.number(), standard_), standard_); }

private:
  int standard_;
  Descriptor kept_;
};

struct Confined : testing::Test {
  // The line of its answer, or of the failure that its owner makes of its behaviour.
  std::string tries(const std::string &attempt, std::chrono::milliseconds pageTime = std::chrono::seconds(60)) {
    const auto file = folder.path() / (attempt + ".pdf");
    std::ofstream(file) << "document";
    Processes processes({STANDIN, size_t{1} << 30, pageTime});
    const auto service = std::make_shared<Service>(file, processes.backend(file));
    return answered(processes, *service, OpenRequest{file, ""});
  }
  static std::string answered(const Processes &processes, Service &service, const Request &request) {
    const Time deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    std::string line;
    const Ticket ticket = service.ask(request, Urgency::shown, [&](Answer &answer) { line = lineOf(answer); });
    while (line.empty()) {
      pollfd ready{processes.descriptor(), POLLIN, 0};
      if (poll(&ready, 1, 60'000) <= 0 || std::chrono::steady_clock::now() > deadline) return "no answer";
      service.collect();
    }
    return line;
  }

  static pid_t child() { // the first one; 0: none
    std::ifstream list("/proc/thread-self/children");
    pid_t id = 0;
    list >> id;
    return id;
  }
  static bool hasChildren() { return child() != 0; }

  test::ScratchFolder folder;
};

TEST_F(Confined, ItRuns) { EXPECT_EQ(tries("none"), "none"); }

TEST_F(Confined, TheReportOfTheLayersMayGoToAFile) {
  const auto report = folder.path() / "report";
  const std::string command = std::string(STANDIN) + " " + confinementOption + " >" + report.string();
  EXPECT_EQ(std::system(command.c_str()), 0); // NOLINT(cert-env33-c): a test's own command
  std::string line;
  std::getline(std::ifstream(report), line);
  EXPECT_EQ(line, "no privileges");
}

// A socket takes the place of the terminal: what confines the process does not stop it from writing there.
TEST_F(Confined, ItReachesNoTerminal) {
  if (isSanitized) GTEST_SKIP() << "the sanitizer reports on standard error";
  int ends[2] = {};
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends), 0);
  const Descriptor terminal(ends[0]), user(ends[1]);
  std::cout << std::flush;
  std::string line;
  {
    const Instead output(STDOUT_FILENO, terminal), error(STDERR_FILENO, terminal);
    line = tries("write-terminal");
  }
  EXPECT_EQ(line, "written");
  char byte = 0;
  EXPECT_LT(read(user.number(), &byte, 1), 0) << "it has written to the terminal";
}

TEST_F(Confined, ItReadsFonts) { EXPECT_EQ(tries("read-fonts"), "it could"); }

struct ConfinedFiles : Confined {
  void SetUp() override {
    if (!kernelRestrictsFiles()) GTEST_SKIP() << "this kernel has no Landlock";
  }
};

TEST_F(ConfinedFiles, ItReadsNoOtherFile) { EXPECT_EQ(tries("read-passwords"), noAccess); }

TEST_F(ConfinedFiles, AFileThatConfiguresFontsMakesNoOtherOneReadable) {
  setenv("FONTCONFIG_FILE", "/etc/group", 1);
  EXPECT_EQ(tries("read-passwords"), noAccess);
  unsetenv("FONTCONFIG_FILE");
}

TEST_F(ConfinedFiles, ItDoesNotSeeTheDocumentsFolder) { EXPECT_EQ(tries("read-folder"), noAccess); }

TEST_F(ConfinedFiles, ItDoesNotOpenTheDocumentByItsName) { EXPECT_EQ(tries("read-document"), noAccess); }

TEST_F(Confined, ItWritesNoFile) {
  EXPECT_EQ(tries("write-file"), denied);
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "written"));
}

TEST_F(Confined, ItHasTheKernelSendNoSignal) { EXPECT_EQ(tries("signal-parent-by-descriptor"), denied); }

TEST_F(Confined, ItConnectsToNoSocket) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string name = folder.path() / "socket";
  ASSERT_LT(name.size(), sizeof address.sun_path);
  name.copy(address.sun_path, sizeof address.sun_path - 1);
  const Descriptor listener(socket(AF_UNIX, SOCK_STREAM, 0));
  ASSERT_EQ(bind(listener.number(), reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
  ASSERT_EQ(listen(listener.number(), 1), 0);
  EXPECT_EQ(tries("connect-socket"), denied);
}

TEST_F(Confined, ItConnectsToNoDisplay) { EXPECT_EQ(tries("connect-display"), denied); }

TEST_F(Confined, ItConnectsToNoNetwork) { EXPECT_EQ(tries("connect-network"), denied); }

TEST_F(Confined, ItExecutesNothing) { EXPECT_EQ(tries("execute"), denied); }

TEST_F(Confined, ItMakesNoProcesses) { EXPECT_EQ(tries("fork"), denied); }

TEST_F(Confined, ItSendsNoSignals) { EXPECT_EQ(tries("kill-parent"), denied); }

TEST_F(Confined, ItTracesNobody) { EXPECT_EQ(tries("trace-parent"), denied); }

TEST_F(Confined, ItMakesNoCode) { EXPECT_EQ(tries("make-code"), denied); }

TEST_F(Confined, ItTakesNoMoreMemoryThanItMay) {
  if (isSanitized) GTEST_SKIP() << "the address sanitizer reserves more than any limit";
  EXPECT_THAT(tries("allocate"), HasSubstr("it takes more memory than its process may have"));
}

// The limit does not count it.
TEST_F(Confined, ItMakesNoMemoryThatCouldBeShared) { EXPECT_EQ(tries("share"), denied); }

TEST_F(Confined, ItMakesNoMemoryThatGrowsLikeAStack) { EXPECT_EQ(tries("grow-down"), denied); }

TEST_F(Confined, ItTakesNoMoreMemoryUnderALowerLimitOfDescriptors) {
  if (isSanitized) GTEST_SKIP() << "the address sanitizer reserves more than any limit";
  const pid_t child = fork();
  if (child == 0) {
    const rlimit low{40, 40};
    _exit(setrlimit(RLIMIT_NOFILE, &low) == 0 && tries("allocate").ends_with("may have") ? 0 : 1);
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

TEST_F(Confined, ItIsEndedWhenItComputesTooLong) {
  EXPECT_THAT(tries("spin", std::chrono::milliseconds(200)), HasSubstr("spin.pdf: it takes longer than 1 second"));
}

TEST_F(Confined, ItIsEndedWhenItComputesWithoutARequest) {
  const auto file = folder.write("answer-and-spin.pdf", "document");
  Processes processes({STANDIN});
  const auto service = std::make_shared<Service>(file, processes.backend(file));
  EXPECT_EQ(answered(processes, *service, OpenRequest{file, ""}), "answered");
  EXPECT_TRUE(hasChildren());
  const Time deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (hasChildren() && std::chrono::steady_clock::now() < deadline) {
    pollfd ready{processes.descriptor(), POLLIN, 0};
    poll(&ready, 1, 60'000);
    service->collect();
  }
  EXPECT_FALSE(hasChildren());
}

// What it keeps of other pages may have taken the memory.
TEST_F(Confined, APageThatDoesNotFitIntoAUsedProcessIsReadByAnotherOne) {
  const auto file = folder.write("take-memory.pdf", "document");
  Processes processes({STANDIN});
  const auto service = std::make_shared<Service>(file, processes.backend(file));
  ASSERT_EQ(answered(processes, *service, OpenRequest{file, ""}), "answered");
  for (const int32_t page : {0, 1, 2})
    EXPECT_EQ(answered(processes, *service, PlainWordsRequest{page}), "answered") << page;
  const std::string takesMore = ": it takes more than 1024 megabytes (--document-memory)";
  EXPECT_EQ(answered(processes, *service, PlainWordsRequest{9}), file.string() + ": page 10" + takesMore);
  EXPECT_EQ(answered(processes, *service, PlainWordsRequest{9}),
            file.string() + ": page 10 is not read until the document is loaded again" + takesMore);
  EXPECT_EQ(answered(processes, *service, PlainWordsRequest{3}), "answered");
}

TEST_F(Confined, APageOfWhichAPartIsMissingForLackOfMemoryIsAnError) {
  if (isSanitized) GTEST_SKIP() << "the address sanitizer has an allocator of its own";
  const auto file = folder.write("take-memory.pdf", "document");
  Processes processes({STANDIN, size_t{256} << 20});
  const auto service = std::make_shared<Service>(file, processes.backend(file));
  ASSERT_EQ(answered(processes, *service, OpenRequest{file, ""}), "answered");
  EXPECT_EQ(answered(processes, *service, PlainWordsRequest{8}),
            file.string() + ": page 9: it takes more than 256 megabytes (--document-memory)");
}

TEST_F(Confined, ItIsEndedWhenItSaysNothing) {
  EXPECT_THAT(tries("say-nothing", std::chrono::milliseconds(50)),
              HasSubstr("say-nothing.pdf: its process failed: it does not go on"));
}

TEST_F(Confined, ItIsEndedWhenItAnswersGarbage) {
  EXPECT_THAT(tries("say-garbage"), HasSubstr("its process has answered wrongly"));
}

TEST_F(Confined, ItIsEndedWhenItAnswersForItsOwner) {
  EXPECT_THAT(tries("say-the-owner-has-no-memory"), HasSubstr("its process has answered wrongly"));
}

TEST_F(Confined, ItIsEndedWhenItAnswersTooMuch) {
  EXPECT_THAT(tries("say-too-much"), HasSubstr("its process has answered wrongly"));
}

TEST_F(Confined, ItIsEndedWhenItAnswersTwice) {
  EXPECT_THAT(tries("say-it-twice"), HasSubstr("its process has answered wrongly"));
}

TEST_F(Confined, ItIsEndedWhenItClosesItsSocket) { EXPECT_THAT(tries("close"), HasSubstr("its process failed")); }

TEST_F(Confined, ACrashIsTheDocumentsError) {
  EXPECT_THAT(tries("crash"), HasSubstr("crash.pdf: its process failed: it was ended: Aborted"));
}

// That the document is opened again each time does not make the next try the first one.
TEST_F(Confined, ACrashAfterOpeningIsTheErrorOfThatRequestAlone) {
  const auto file = folder.write("crash-later.pdf", "document");
  Processes processes({.program = STANDIN, .structureProgram = STANDIN});
  const auto service = std::make_shared<Service>(file, processes.backend(file));
  ASSERT_EQ(answered(processes, *service, OpenRequest{file, ""}), "answered");
  EXPECT_THAT(answered(processes, *service, StructureRequest{1}), HasSubstr("it was ended: Aborted"));
  EXPECT_THAT(answered(processes, *service, StructureRequest{1}), HasSubstr("it is not read until"));
  EXPECT_THAT(answered(processes, *service, AttachmentRequest{0}), HasSubstr("it was ended: Aborted"));
  EXPECT_THAT(answered(processes, *service, AttachmentRequest{1}),
              EndsWith("crash-later.pdf: its process failed: it was ended: Aborted"));
}

// The owner has checked the page: the command would end instead of leaving it out.
TEST_F(Confined, ThatTheRequestAboutAPageIsWrongIsAWrongAnswer) {
  const auto file = folder.write("take-memory.pdf", "document");
  Processes processes({STANDIN});
  const auto service = std::make_shared<Service>(file, processes.backend(file));
  ASSERT_EQ(answered(processes, *service, OpenRequest{file, ""}), "answered");
  EXPECT_THAT(answered(processes, *service, PlainWordsRequest{5}), HasSubstr("its process has answered wrongly"));
}

// What is asked for ahead does not decide how much memory the answers take.
TEST_F(Confined, LongAnswersAreAskedForAsTheyAreTaken) {
  const auto file = folder.write("take-memory.pdf", "document");
  Processes processes({STANDIN});
  const std::unique_ptr<Backend> backend = processes.backend(file);
  constexpr uint64_t orders = 8;
  for (uint64_t id = 0; id <= orders; ++id) {
    Orders order;
    order.push_back({id, Urgency::shown, id == 0 ? Request(OpenRequest{file, ""}) : Request(PlainWordsRequest{6})});
    backend->start(std::move(order));
    if (id == 0) {
      ASSERT_THAT(backend->await(0, Time::max()), testing::SizeIs(1));
    }
  }
  const auto answeredOnes = [&] { // of what is begun
    for (bool waits = true; waits;) {
      backend->setUrgency(orders, Urgency::shown); // goes on
      waits = false;
      for (uint64_t id = 1; id <= orders; ++id)
        waits = waits || backend->underWay(id);
    }
    return backend->take().size();
  };
  const size_t first = answeredOnes();
  EXPECT_GE(first, 4U) << "the fourth is beyond 64 MB";
  EXPECT_LE(first, 5U) << "two processes answer";
  EXPECT_EQ(first + answeredOnes(), orders);
}

// The next request would have to open the document again.
TEST_F(Confined, AProcessThatIsOpeningTheDocumentIsNotEndedWithItsRequest) {
  const auto file = folder.write("open-slowly.pdf", "document");
  Processes processes({STANDIN});
  const auto service = std::make_shared<Service>(file, processes.backend(file));
  ASSERT_EQ(answered(processes, *service, OpenRequest{file, ""}), "answered");
  const pid_t first = child();
  kill(first, SIGKILL);
  while (child() == first)
    service->collect();
  Ticket unwanted = service->ask(PlainWordsRequest{0}, Urgency::shown, [](Answer &) {});
  const pid_t second = child();
  ASSERT_NE(second, 0);
  unwanted.reset();
  EXPECT_EQ(answered(processes, *service, PlainWordsRequest{1}), "answered");
  EXPECT_EQ(child(), second);
}

} // namespace
