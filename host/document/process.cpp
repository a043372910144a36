// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>
#include <system_error>
#include <vector>

#include "host/document/sanitized.h"
#include "host/kernel/error.h"

namespace host {
namespace {

namespace fs = std::filesystem;

// What it needs to find fonts, and what the sanitizers read. The rest is not passed on.
constexpr const char *passedOn[] = {"HOME",
                                    "LANG",
                                    "LC_ALL",
                                    "LC_CTYPE",
                                    "TZ",
                                    "XDG_CACHE_HOME",
                                    "XDG_CONFIG_HOME",
                                    "XDG_DATA_HOME",
                                    "FONTCONFIG_FILE",
                                    "FONTCONFIG_PATH",
                                    "ASAN_OPTIONS",
                                    "LSAN_OPTIONS",
                                    "UBSAN_OPTIONS"};

std::vector<std::string> environmentPassedOn() {
  std::vector<std::string> all;
  for (const char *name : passedOn)
    if (const char *value = std::getenv(name)) all.push_back(std::string(name) + "=" + value);
  return all;
}

// Where a program may be: beside the directory of this one, or where it is installed.
std::vector<fs::path> placesOf(const fs::path &name) {
  std::vector<fs::path> places;
  const fs::path relative = TAVREL_LIBEXEC_FROM_PROGRAM;
  std::error_code unreadable;
  const fs::path self = fs::read_symlink("/proc/self/exe", unreadable);
  if (!self.empty() && relative.is_relative())
    places.push_back((self.parent_path() / relative / name).lexically_normal());
  if (fs::path installed = fs::path(TAVREL_INSTALLED_LIBEXEC) / name; places.empty() || places.front() != installed)
    places.push_back(std::move(installed));
  return places;
}

[[noreturn]] void fail(const fs::path &program, int error) {
  std::string reason = program.string() + " cannot be started: " + std::generic_category().message(error);
  const std::vector<fs::path> places = placesOf(program.filename());
  if (error == ENOENT && places.size() > 1 && program == places.back())
    reason += "; nor is it in " + places.front().parent_path().string();
  throw HostError(tavrel::errGeneric, reason);
}

// How a process is started: it has nothing but its socket, not even a terminal to write to, no signal is blocked or
// ignored, and keys pressed in a terminal do not end it.
class Start {
public:
  explicit Start(int socket) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawnattr_init(&attributes_);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
      if (standard != STDERR_FILENO || !isSanitized) // whose reports go there
        posix_spawn_file_actions_addopen(&actions_, standard, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_adddup2(&actions_, socket, documentSocket);
    posix_spawn_file_actions_addclosefrom_np(&actions_, documentSocket + 1);
    sigset_t all, none;
    sigfillset(&all);
    sigemptyset(&none);
    posix_spawnattr_setsigdefault(&attributes_, &all);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);
  }
  Start(const Start &) = delete;
  Start &operator=(const Start &) = delete;
  ~Start() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&actions_);
  }

  pid_t operator()(const fs::path &program, size_t memory) const {
    std::vector<std::string> environment = environmentPassedOn();
    std::vector<char *> variables;
    variables.reserve(environment.size() + 1);
    for (std::string &variable : environment)
      variables.push_back(variable.data());
    variables.push_back(nullptr);
    std::string name = program.filename();
    std::string limit = std::to_string(memory);
    char *const arguments[] = {name.data(), limit.data(), nullptr};
    pid_t id = 0;
    const int error = posix_spawn(&id, program.c_str(), &actions_, &attributes_, arguments, variables.data());
    if (error != 0) fail(program, error);
    return id;
  }

private:
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
};

struct SocketPair {
  Descriptor own, other;
};

SocketPair socketPair(const fs::path &program) {
  int ends[2] = {};
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) fail(program, errno);
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

// The first place where it is, or else the last one.
fs::path found(const char *name) {
  const std::vector<fs::path> places = placesOf(name);
  std::error_code unreadable;
  return fs::exists(places.front(), unreadable) ? places.front() : places.back();
}

} // namespace

fs::path documentProgram() { return found("tavrel-document"); }
fs::path structureProgram() { return found("tavrel-structure"); }

DocumentProcess::DocumentProcess(const fs::path &program, size_t memory) : channel_(Descriptor()) {
  SocketPair pair = socketPair(program);
  id_ = Start(pair.other.number())(program, memory);
  channel_ = Channel(std::move(pair.own));
}

DocumentProcess::~DocumentProcess() { end(nullptr); }

void DocumentProcess::end(int *status) {
  if (id_ == 0) return;
  kill(id_, SIGKILL);
  while (waitpid(id_, status, 0) < 0 && errno == EINTR) {
  }
  id_ = 0;
}

std::chrono::nanoseconds DocumentProcess::used() const {
  clockid_t clock{};
  timespec time{};
  if (clock_getcpuclockid(id_, &clock) != 0 || clock_gettime(clock, &time) != 0) return {};
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::string DocumentProcess::reasonOfEnd() {
  int status = 0;
  end(&status);
  if (WIFSIGNALED(status)) return std::string("it was ended: ") + strsignal(WTERMSIG(status));
  return "it ended with status " + std::to_string(WEXITSTATUS(status));
}

} // namespace host
