// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Does on a signal, and on exit() or quick_exit(), what destructors do otherwise. Output files and the private display
// register here.
#include "tools/cleanup.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace tools {
namespace {

constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};

// A signal may come at any moment: the name is complete whenever `fileSet` is set.
char file[4096];
volatile sig_atomic_t fileSet = 0;
volatile pid_t program = 0;

void undo() {
  if (fileSet != 0) unlink(file);
  if (program != 0) kill(program, SIGTERM);
}

void undoAndDie(int signal) {
  undo();
  std::signal(signal, SIG_DFL);
  raise(signal);
}

void watch() {
  static const bool once = [] {
    for (const int signal : signals) {
      struct sigaction action {};
      sigaction(signal, nullptr, &action);
      if (action.sa_handler == SIG_IGN) continue; // the parent process ignores it (nohup)
      action.sa_handler = undoAndDie;
      sigaction(signal, &action, nullptr);
    }
    return std::atexit(undo) == 0 && std::at_quick_exit(undo) == 0;
  }();
  static_cast<void>(once);
}

} // namespace

void removeWhenKilled(const char *path) {
  watch();
  fileSet = 0;
  if (path == nullptr || std::strlen(path) >= sizeof file) return;
  std::strcpy(file, path);
  fileSet = 1;
}

void endWhenKilled(pid_t child) {
  watch();
  program = child;
}

} // namespace tools
