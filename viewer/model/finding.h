// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The find dialog's work: steps through the matches on a page, has the searcher look for the next page that has any,
// and marks them. Independent of what plug-ins mark.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "viewer/model/documents.h"
#include "viewer/model/moving.h"
#include "viewer/model/searcher.h"

namespace viewer {

/// The find dialog's contents.
struct FindRequest {
  std::string text;
  host::FindOptions options;
  bool operator==(const FindRequest &other) const {
    return text == other.text && options.matchCase == other.options.matchCase &&
           options.wholeWords == other.options.wholeWords;
  }
};

class Finding : public DocumentKeeper {
public:
  Finding(const Documents &documents, Moving &moving, Searcher &searcher, StatusLine &status, Changes &changes)
      : documents_(documents), moving_(moving), searcher_(searcher), status_(status), changes_(changes) {}

  const FindRequest &request() const { return request_; }
  void find(const FindRequest &request, bool backwards);
  void findAgain(bool backwards) { find(request_, backwards); }
  bool searching() const { return searching_; }
  /// Ends a search and removes its marks.
  void end();
  /// The outcome of the last search, for the dialog.
  const std::string &message() const { return message_; }

  /// Takes over the searcher's result, if there is one; if memory is exhausted, a further call does so.
  void collect();
  void showProgress();
  /// Marks the matches on a drawing of the document in front.
  void paint(host::Drawing &drawing) const;

  void opens(const OpenDocument & /*document*/) override { found_.reset(); }
  void closes(const OpenDocument &document) override;

private:
  struct FoundOnPage {
    host::ViewerDocument *document = nullptr;
    int32_t page = 0;
    std::vector<host::Found> found;
    size_t current = 0;
  };

  void stop();
  void take(SearchResult &result);
  void show(std::string line);

  const Documents &documents_;
  Moving &moving_;
  Searcher &searcher_;
  StatusLine &status_;
  Changes &changes_;
  FindRequest request_;
  std::optional<SearchResult> result_; ///< not taken over yet
  std::optional<FoundOnPage> found_;
  bool searching_ = false;
  bool wrapsAtOnce_ = false;
  std::string message_;
};

} // namespace viewer
