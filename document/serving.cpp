// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "document/serving.h"

#include <malloc.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <charconv>
#include <cstring>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "document/exhaustion.h"
#include "host/document/channel.h"
#include "host/document/documenterror.h"
#include "host/document/process.h"
#include "host/document/sanitized.h"
#include "host/document/wire.h"

namespace document {
namespace {

enum ExitStatus { exitDone = 0, exitInvalidRequest = 1, exitUsage = 2 };

std::optional<size_t> number(const char *text) {
  size_t value = 0;
  const char *end = text + std::strlen(text);
  const auto [stop, error] = std::from_chars(text, end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

// Under the address sanitizer there is no limit: it reserves terabytes.
size_t memoryLimit(size_t asked) { return host::isSanitized ? 0 : asked; }

// The layers that a process like this one would have: such a process could not write to a file what it has.
std::optional<Layers> layersOfAnother() {
  enum Bit { privileges = 1, resources = 2, files = 4, calls = 8 };
  const pid_t other = fork();
  if (other == 0) {
    const Layers own = confine({});
    _exit((own.privileges ? privileges : 0) | (own.resources ? resources : 0) | (own.files ? files : 0) |
          (own.calls ? calls : 0));
  }
  int status = 0;
  if (other < 0 || waitpid(other, &status, 0) != other || !WIFEXITED(status)) return std::nullopt;
  const int bits = WEXITSTATUS(status);
  return Layers{(bits & privileges) != 0, (bits & resources) != 0, (bits & files) != 0, (bits & calls) != 0};
}

// A line for each layer.
int report() {
  const std::optional<Layers> found = layersOfAnother();
  if (!found) return exitUsage;
  const Layers &layers = *found;
  const auto line = [](bool inForce, const char *what, const char *reason) {
    std::string text = inForce ? what : std::string(what) + ": not in force" + reason;
    text += "\n";
    return write(STDOUT_FILENO, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  };
  const bool written = line(layers.privileges, "no privileges", "") &&
                       line(layers.resources, "limits of memory, descriptors and files", "") &&
                       line(layers.files, "no files but fonts (Landlock)", ": this kernel has none") &&
                       line(layers.calls, "no programs, processes, sockets and signals (seccomp)", "");
  return written ? exitDone : exitUsage;
}

class Server {
public:
  /// `memory` is the limit, in bytes.
  Server(const Answerer &answerer, const Layers &layers, size_t memory)
      : answerer_(answerer), isConfined_(layers.files || layers.calls), memory_(memory) {}

  int run() {
    for (;;) {
      giveMemoryBackIfIdle();
      host::Received received = channel_.await();
      if (received.what == host::Received::ended) return exitDone;
      const auto request = received.what == host::Received::message ? host::requestIn(received.content) : std::nullopt;
      if (!request) return exitInvalidRequest;
      if (const auto *open = std::get_if<host::OpenRequest>(&*request)) file_ = open->file;
      const std::string lastWords = messageOf(host::Answer{noMemory()});
      const LastWords scope(lastWords, memory_);
      if (!channel_.send(messageOf(answer(*request, std::move(received.descriptor))))) return exitDone;
    }
  }

private:
  // What has been kept for the next answer (main.cpp), unless that is asked for soon.
  void giveMemoryBackIfIdle() const {
    constexpr int soon = 500; // milliseconds
    pollfd ready{channel_.socket(), POLLIN, 0};
    if (poll(&ready, 1, soon) == 0) malloc_trim(0);
  }
  std::string messageOf(const host::Answer &answer) const {
    try {
      return host::messageOf(answer);
    } catch (const std::length_error &) {
      const std::string line = host::nameInMessage(file_) + ": a page has too much text";
      return host::messageOf(host::Answer{host::Failure{tavrel::errDocument, line}});
    } catch (const std::bad_alloc &) {
      return host::messageOf(host::Answer{noMemory()});
    }
  }
  host::Failure noMemory() const {
    return {tavrel::errDocument, host::nameInMessage(file_) + ": it takes more memory than its process may have",
            host::DocumentError::tooMuchMemory};
  }
  host::Answer answer(const host::Request &request, host::Descriptor passed) {
    host::Answer answer;
    try {
      answer = answerer_(request, std::move(passed));
    } catch (const std::bad_alloc &) {
      answer = {host::Failure{tavrel::errNoMemory, {}}};
    }
    if (auto *opened = std::get_if<host::Opened>(&answer.value)) opened->isConfined = isConfined_;
    if (auto *failure = std::get_if<host::Failure>(&answer.value);
        failure != nullptr && failure->code == tavrel::errNoMemory)
      *failure = noMemory();
    return answer;
  }

  const Answerer &answerer_;
  const bool isConfined_;
  const size_t memory_;
  std::filesystem::path file_;
  host::Channel channel_{host::Descriptor(host::documentSocket), host::Channel::Takes::descriptors};
};

int statusOf(int argc, char **argv, const Answerer &answerer) {
  if (argc == 2 && argv[1] == std::string_view(host::confinementOption)) return report();
  const std::optional<size_t> memory = argc == 2 ? number(argv[1]) : std::nullopt;
  if (!memory) return exitUsage;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const Layers layers = confine({memoryLimit(*memory)});
  return Server(answerer, layers, *memory).run();
}

} // namespace

// At once: what libraries do at a usual end, like looking for leaks, may be denied.
void serve(int argc, char **argv, const Answerer &answerer) { _exit(statusOf(argc, argv, answerer)); }

} // namespace document
