// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Pages as files. Encoding takes as long as rendering and may happen on other threads. Writing is fast: all files are
// written on the caller's thread, in page order, and no page is written after one that fails.
#include "tools/pagewriter.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <utility>

#include "tools/failure.h"
#include "tools/output.h"
#include "tools/png.h"

namespace tools {
namespace {

std::string counted(size_t count, const char *noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string alsoOffPage(size_t count) {
  return count == 0 ? "" : ", " + std::to_string(count) + " outside of the page not marked";
}

} // namespace

PageWriter::PageWriter(std::filesystem::path directory, double dpi, int32_t pageCount)
    : directory_(std::move(directory)), dpi_(dpi), pageCount_(pageCount), progress_(stdout) {}

void PageWriter::write(host::Drawing &&drawing, std::string status) {
  Page page{drawing.page, drawing.marks, drawing.offPage, std::move(status)};
  if (workers_ == nullptr) {
    put(page, pngOf(drawing.image, dpi_));
    return;
  }
  const auto pixels = static_cast<double>(drawing.image.pixels.size());
  waiting_.push_back({std::move(page), pixels,
                      workers_->order([image = std::move(drawing.image), dpi = dpi_] { return pngOf(image, dpi); })});
  pixelsWaiting_ += pixels;
  const auto isReady = [](const Waiting &one) {
    return one.png.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
  };
  while (!waiting_.empty() &&
         (isReady(waiting_.front()) || waiting_.size() > 2 * workers_->threads() || pixelsWaiting_ > mostPixelsWaiting))
    putFirst();
}

void PageWriter::finish() {
  workers_ = nullptr;
  while (!waiting_.empty())
    putFirst();
}

void PageWriter::putFirst() {
  Waiting first = std::move(waiting_.front());
  waiting_.pop_front();
  pixelsWaiting_ -= first.pixels;
  try {
    put(first.page, first.png.get());
  } catch (...) {
    waiting_.clear();
    throw;
  }
}

void PageWriter::put(const Page &page, const std::optional<std::string> &png) {
  char name[32];
  std::snprintf(name, sizeof name, "page-%04d.png", page.number + 1);
  const std::filesystem::path path = directory_ / name;
  makeDirectories(directory_);
  OutputFile file(path);
  if (!png) throw CommandFailure(exitOutput, path.string() + ": cannot be written as PNG");
  file.write(*png);
  file.commit();
  pages_ += page.marks > 0 ? 1 : 0;
  hits_ += page.marks;
  offPage_ += page.offPage;
  progress_.print(label(page.number) + counted(page.marks, "hit") + alsoOffPage(page.offPage) + " -> " + path.string() +
                  (page.status.empty() ? "" : " (" + page.status + ")"));
  progress_.show(page.number + 1, pageCount_);
}

void PageWriter::reportOffPage(const host::Drawing &drawing) {
  while (!waiting_.empty()) // their lines come first
    putFirst();
  offPage_ += drawing.offPage;
  progress_.print(label(drawing.page) + counted(drawing.offPage, "hit") + " outside of the page, not marked");
}

std::string PageWriter::label(int32_t page) const {
  return "page " + std::to_string(page + 1) + " of " + std::to_string(pageCount_) + ": ";
}

std::string PageWriter::summary() const {
  return counted(pages_, "page") + " marked, " + counted(hits_, "hit") + alsoOffPage(offPage_);
}

} // namespace tools
