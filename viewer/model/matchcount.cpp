// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/matchcount.h"

#include <numeric>
#include <utility>

namespace viewer {
namespace {

size_t countOf(const host::Answer &answer) {
  const auto *matches = std::get_if<host::PageMatches>(&answer.value);
  return matches == nullptr ? 0 : matches->found.size(); // a damaged page has no text
}

} // namespace

bool MatchCount::isCurrent() const {
  const OpenDocument *document = documents_.frontDocument();
  return document != nullptr && document->number == document_ && finding_.request() == request_;
}

void MatchCount::begin(const OpenDocument &document) {
  end();
  request_ = finding_.request();
  pages_ = document.document->model->pageCount();
  counts_.reserve(static_cast<size_t>(pages_));
  service_ = document.service;
  document_ = document.number;
}

void MatchCount::end() {
  document_ = 0;
  ticket_ = {};
  answer_.reset();
  service_.reset();
  counts_.clear();
}

void MatchCount::closes(const OpenDocument &document) {
  if (document.number == document_) end();
}

// While another document is in front, what has been counted is kept, and no further page is asked for.
void MatchCount::collect() {
  const host::ViewerDocument *found = finding_.document();
  const OpenDocument *document = found == nullptr ? nullptr : documents_.find(found);
  if (document == nullptr) return end();
  if (document->number != document_ || !(finding_.request() == request_)) begin(*document);
  if (answer_) {
    counts_.push_back(countOf(*answer_)); // does not allocate
    answer_.reset();
    ticket_ = {};
    changes_.note(partFind);
  }
  if (isCurrent()) ask();
}

void MatchCount::ask() {
  const auto page = static_cast<int32_t>(counts_.size());
  if (ticket_ || page >= pages_) return;
  ticket_ = service_->ask(host::MatchesRequest{page, request_.text, request_.options}, host::Urgency::searched,
                          [this](host::Answer &answer) { answer_ = std::move(answer); });
}

std::string MatchCount::number() const {
  const std::optional<CurrentMatch> current = finding_.current();
  if (!current || !isCurrent() || !isComplete()) return "";
  const auto end = counts_.begin() + current->page;
  const size_t before = std::accumulate(counts_.begin(), end, size_t{0});
  return std::to_string(before + current->index + 1) + " of " +
         std::to_string(std::accumulate(end, counts_.end(), before));
}

std::string MatchCount::progress() const {
  if (!finding_.current() || !isCurrent() || isComplete()) return "";
  return "Counting, " + std::to_string(counts_.size()) + " of " + std::to_string(pages_) + " pages";
}

} // namespace viewer
