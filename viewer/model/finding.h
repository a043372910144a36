// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The find dialog's work: steps through the matches on a page, has the next page looked for that has any, and marks
// them. Independent of what plug-ins mark. It is long because stepping, searching, showing and marking share the
// matches that have been found.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "viewer/model/documents.h"
#include "viewer/model/moving.h"
#include "viewer/model/search.h"

namespace viewer {

/// The match that is marked as the current one, and where it is on its page: in pixels, at the page's resolution.
struct CurrentMatch {
  int32_t page = 0;
  size_t index = 0; ///< on its page
  double left = 0, top = 0, right = 0, bottom = 0;
};

class Finding : public DocumentKeeper {
public:
  Finding(const Documents &documents, Moving &moving, StatusLine &status, Changes &changes)
      : documents_(documents), moving_(moving), status_(status), changes_(changes) {}

  const FindRequest &request() const { return request_; }
  void find(const FindRequest &request, bool backwards);
  void findAgain(bool backwards) { find(request_, backwards); }
  bool searching() const { return search_.has_value(); }
  /// Ends a search and removes its marks.
  void end();
  /// The outcome of the last search, for the dialog.
  const std::string &message() const { return message_; }

  /// That has the match found last, in front or not; null where nothing has been found.
  const host::ViewerDocument *document() const { return found_ ? found_->document : nullptr; }
  /// Of the document in front; nothing where nothing has been found.
  std::optional<CurrentMatch> current() const;

  /// Continues the search with what has been answered; if memory is exhausted, a further call does so.
  void collect();
  /// Marks the matches on a drawing of the document in front.
  void paint(host::Drawing &drawing) const;

  void closes(const OpenDocument &document) override;

private:
  struct FoundOnPage {
    host::ViewerDocument *document = nullptr;
    int32_t page = 0;
    std::vector<host::Found> found;
    size_t current = 0;
  };

  void stop();
  void take(Search::Result &result);
  void show(std::string line);

  const Documents &documents_;
  Moving &moving_;
  StatusLine &status_;
  Changes &changes_;
  FindRequest request_;
  std::optional<Search> search_;
  uint64_t searchedDocument_ = 0;
  bool wrapsAtOnce_ = false; ///< the search begins beyond an end of the document
  std::optional<FoundOnPage> found_;
  std::string message_;
};

} // namespace viewer
