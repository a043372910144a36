// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Progress on a terminal: lines scroll, the bar stays below them. A pipe or a file gets only the lines.
#include "tools/progress.h"

#include <unistd.h>

#include <algorithm>

namespace tools {

Progress::Progress(FILE *stream) : stream_(stream), terminal_(isatty(fileno(stream)) != 0) {}

Progress::~Progress() { clear(); }

void Progress::print(const std::string &line) {
  clear();
  std::fprintf(stream_, "%s\n", line.c_str());
}

void Progress::show(int done, int total) {
  if (!terminal_ || total <= 0) return;
  constexpr int width = 40;
  const int filled = static_cast<int>(int64_t{width} * std::clamp(done, 0, total) / total);
  const std::string bar =
      std::string(static_cast<size_t>(filled), '#') + std::string(static_cast<size_t>(width - filled), '-');
  std::fprintf(stream_, "\r[%s] %d/%d", bar.c_str(), done, total);
  std::fflush(stream_);
  shown_ = true;
}

void Progress::clear() {
  if (!shown_) return;
  std::fputs("\r\033[K", stream_);
  std::fflush(stream_);
  shown_ = false;
}

} // namespace tools
