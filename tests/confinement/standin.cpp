// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A document process that a hostile file has taken over: it is confined like the real one, and then tries what the name
// of the document says. Its answer to the first request is a failure whose line tells how that went.
#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>
#include <map>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "document/serving.h"
#include "host/document/process.h"
#include "host/document/wire.h"

namespace {

namespace fs = std::filesystem;

// "" for success, else the reason.
std::string resultOf(bool succeeded) { return succeeded ? "" : std::strerror(errno); }

std::string opens(const fs::path &file, int flags) { return resultOf(open(file.c_str(), flags, 0600) >= 0); }

std::string connects(const fs::path &name) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  name.native().copy(address.sun_path, sizeof address.sun_path - 1);
  const int made = socket(AF_UNIX, SOCK_STREAM, 0);
  return resultOf(made >= 0 && connect(made, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0);
}

std::string connectsToTheNetwork() {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(9);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const int made = socket(AF_INET, SOCK_STREAM, 0);
  return resultOf(made >= 0 && (connect(made, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0 ||
                                errno == ECONNREFUSED)); // it was asked
}

std::string forks() {
  const pid_t child = fork();
  if (child == 0) _exit(0);
  return resultOf(child > 0);
}

std::string executes() {
  execl("/bin/true", "true", nullptr);
  return resultOf(false);
}

std::string allocates() {
  std::vector<char *> blocks;
  constexpr size_t block = size_t{64} << 20, blocksWanted = 64; // 4 GiB together
  while (blocks.size() < blocksWanted) {
    auto *made = static_cast<char *>(std::malloc(block));
    if (made == nullptr) return resultOf(false);
    std::memset(made, 1, block);
    blocks.push_back(made);
  }
  return "";
}

// Memory that other processes could have, too.
std::string shares() {
  return resultOf(mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0) != MAP_FAILED);
}

// Memory that the kernel takes for a stack.
std::string growsDown() {
  return resultOf(mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_GROWSDOWN, -1, 0) !=
                  MAP_FAILED);
}

std::string makesCode() {
  return resultOf(mmap(nullptr, 4096, PROT_READ | PROT_WRITE | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0) !=
                  MAP_FAILED);
}

void sends(const std::string &bytes) {
  for (std::string_view rest = bytes; !rest.empty();) {
    const ssize_t sent = write(host::documentSocket, rest.data(), rest.size());
    if (sent <= 0) return;
    rest.remove_prefix(static_cast<size_t>(sent));
  }
}

[[noreturn]] void spins() {
  for (volatile unsigned turns = 0;;)
    turns = turns + 1;
}

[[noreturn]] void sleeps() {
  for (;;)
    poll(nullptr, 0, 1000);
}

std::string tries(const fs::path &document) {
  const fs::path folder = document.parent_path();
  const std::map<std::string, std::function<std::string()>> attempts = {
      {"none", [] { return std::string("none"); }},
      {"write-terminal",
       [] {
         const bool isWritten = write(STDERR_FILENO, "hostile", 7) == 7 && write(STDOUT_FILENO, "hostile", 7) == 7;
         return std::string(isWritten ? "written" : "not written");
       }},
      {"read-fonts", [] { return opens("/usr/share/fonts", O_RDONLY); }},
      {"read-passwords", [] { return opens("/etc/passwd", O_RDONLY); }},
      {"read-folder", [&] { return opens(folder, O_RDONLY | O_DIRECTORY); }},
      {"read-document", [&] { return opens(document, O_RDONLY); }},
      {"write-file", [&] { return opens(folder / "written", O_WRONLY | O_CREAT); }},
      {"connect-socket", [&] { return connects(folder / "socket"); }},
      {"connect-display", [] { return connects("/tmp/.X11-unix/X0"); }},
      {"connect-network", connectsToTheNetwork},
      {"execute", executes},
      {"fork", forks},
      {"signal-parent-by-descriptor", [] { return resultOf(fcntl(host::documentSocket, F_SETOWN, getppid()) == 0); }},
      {"kill-parent", [] { return resultOf(kill(getppid(), 0) == 0); }},
      {"trace-parent", [] { return resultOf(ptrace(PTRACE_ATTACH, getppid(), nullptr, nullptr) == 0); }},
      {"allocate", allocates},
      {"share", shares},
      {"grow-down", growsDown},
      {"make-code", makesCode},
      {"spin", []() -> std::string { spins(); }},
      {"answer-and-spin",
       []() -> std::string {
         sends(host::messageOf(host::Answer{host::Opened{1, {}}})), spins();
       }},
      {"say-nothing", []() -> std::string { sleeps(); }},
      {"say-garbage", [] { return sends(std::string(64, 'x')), std::string(); }},
      {"say-too-much",
       [] {
         host::WireHeader header;
         header.size = UINT32_MAX;
         return sends(std::string(reinterpret_cast<char *>(&header), sizeof header)), std::string();
       }},
      {"say-it-twice",
       [] {
         const std::string answer = host::messageOf(host::Answer{host::Failure{tavrel::errDocument, "twice"}});
         return sends(answer + answer), std::string();
       }},
      {"say-the-owner-has-no-memory",
       [] {
         return sends(host::messageOf(host::Answer{host::Failure{tavrel::errNoMemory, "none"}})), std::string();
       }},
      {"close", [] { return close(host::documentSocket), sleeps(), std::string(); }},
      {"crash", [] { return abort(), std::string(); }}};
  return attempts.at(document.stem())();
}

// Each page takes as much memory as there is, for as long as the process lives; the pages 8 and 9 take more.
host::Answer takesMemory(const host::PlainWordsRequest &request) {
  static bool isFull = false;
  if (request.page == 5) return {host::Failure{tavrel::errBadPage, "there is no such page"}};
  if (request.page == 6) { // 20 MB
    return {host::PagePlainWords{request.page, {std::u32string(5 << 20, U'a')}}};
  }
  if (request.page == 8) { // goes on without the memory, as libraries do
    for (void *volatile made = &isFull; made != nullptr;)
      made = std::malloc(size_t{16} << 20);
    return {host::PagePlainWords{request.page, {U"read"}}};
  }
  if (std::exchange(isFull, true) || request.page == 9) throw std::bad_alloc();
  return {host::PagePlainWords{request.page, {U"read"}}};
}

} // namespace

int main(int argc, char **argv) {
  document::serve(argc, argv, [](const host::Request &request, const host::Descriptor & /*passed*/) {
    if (const auto *words = std::get_if<host::PlainWordsRequest>(&request)) return takesMemory(*words);
    const auto *open = std::get_if<host::OpenRequest>(&request);
    if (open == nullptr) abort();
    if (open->file.stem() == "open-slowly") poll(nullptr, 0, 400);
    if (open->file.stem() == "crash-later" || open->file.stem() == "take-memory" || open->file.stem() == "open-slowly")
      return host::Answer{host::Opened{10, {}}};
    const std::string reason = tries(open->file);
    return host::Answer{host::Failure{tavrel::errDocument, reason.empty() ? "it could" : reason}};
  });
}
