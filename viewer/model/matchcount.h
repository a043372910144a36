// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// How many matches of Find the document in front has, and which of them is the current one. All pages are searched for
// that, one after the other, once a match has been found and while its document is in front.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "viewer/model/finding.h"

namespace viewer {

class MatchCount : public DocumentKeeper {
public:
  MatchCount(const Documents &documents, const Finding &finding, Changes &changes)
      : documents_(documents), finding_(finding), changes_(changes) {}

  /// "3 of 17"; empty without a current match, and until all pages have been searched.
  std::string number() const;
  /// "Counting, 40 of 80 pages" until then; empty otherwise.
  std::string progress() const;
  /// Continues with what has been answered. If memory is exhausted, a further call does so.
  void collect();

  void closes(const OpenDocument &document) override;
  void frontChanged() override { collect(); }

private:
  bool isCurrent() const;
  bool isComplete() const { return counts_.size() == static_cast<size_t>(pages_); }
  void begin(const OpenDocument &document);
  void end();
  void ask();

  const Documents &documents_;
  const Finding &finding_;
  Changes &changes_;
  uint64_t document_ = 0; ///< that is being counted; 0: none
  FindRequest request_;
  std::shared_ptr<host::Service> service_;
  int32_t pages_ = 0;
  std::vector<size_t> counts_; ///< of the pages that have been searched
  std::optional<host::Answer> answer_;
  host::Ticket ticket_;
};

} // namespace viewer
