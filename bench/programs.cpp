// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The commands as processes, in comparison with similar programs and the same document.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/measure.h"

extern char **environ;

namespace bench {
namespace {

namespace fs = std::filesystem;

// Runs a program to its end and discards its output. False if it fails.
bool run(std::vector<std::string> words) {
  std::vector<char *> arguments;
  for (std::string &word : words)
    arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  const bool started = posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  int status = 1;
  return started && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// A directory that is removed at the end.
struct Scratch {
  fs::path path;
  Scratch() {
    std::string name = (fs::temp_directory_path() / "bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error(name + ": cannot be made");
    path = name;
  }
  ~Scratch() {
    std::error_code ignored;
    fs::remove_all(path, ignored);
  }
  Scratch(const Scratch &) = delete;
  Scratch &operator=(const Scratch &) = delete;
};

fs::path scratch() {
  static const Scratch directory;
  return directory.path;
}

using Command = std::vector<std::string>;

void measureProgram(const std::string &line, const std::string &column, const Command &command,
                    const Command &before = {}) {
  measureOnce("programs", line, column, [command, before](benchmark::State &state) {
    if (!before.empty() && !run(before)) return state.SkipWithError("has no hits to show");
    for (auto _ : state)
      if (!run(command)) return state.SkipWithError("failed");
  });
}

} // namespace

void measurePrograms(const std::string &documents) {
  const std::string tavrel = (fs::read_symlink("/proc/self/exe").parent_path() / "tavrel").string();
  const std::string middling = documents + "/gnuplot.pdf", large = documents + "/octave.pdf";
  const std::string hits = scratch() / "hits.xml", out = scratch() / "out";
  fs::create_directories(out);

  const std::string pages = "311 pages as PNG, 100 dpi";
  measureProgram(pages, "ours", {tavrel, "render", middling, hits, "--pages", "all", "--dpi", "100", "--out", out},
                 {tavrel, "hits", middling, "plot", "-o", hits});
  measureProgram(pages, "mutool draw", {"mutool", "draw", "-q", "-r", "100", "-o", out + "/p%d.png", middling});

  const std::string words = "1,158 pages searched";
  measureProgram(words, "ours", {tavrel, "hits", large, "matrix", "-o", hits});
  measureProgram(words, "pdftotext -bbox", {"pdftotext", "-bbox", large, out + "/words.html"});
}

} // namespace bench
