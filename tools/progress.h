// The lines of a command that works through pages, and below them, on a terminal, how far it is.
#pragma once

#include <cstdio>
#include <string>

namespace tools {

class Progress {
public:
  explicit Progress(FILE *stream);
  ~Progress(); ///< the bar goes
  Progress(const Progress &) = delete;
  Progress &operator=(const Progress &) = delete;

  /// Says a line.
  void say(const std::string &line);
  /// Moves the bar to done of total; nothing where the stream is no terminal.
  void show(int done, int total);
  /// Takes the bar away, for whatever else is to be said.
  void clear();

private:
  FILE *stream_;
  bool terminal_;
  bool shown_ = false;
};

} // namespace tools
