// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The find dialog's work: steps through the matches on a page, has the next page looked for that has any, and marks
// them. Independent of what plug-ins mark.
#pragma once

#include <list>
#include <optional>
#include <string>
#include <vector>

#include "viewer/model/documents.h"
#include "viewer/model/moving.h"

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

  /// Continues the search with what has been answered; if memory is exhausted, a further call does so.
  void collect();
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

  // A page that is being searched.
  struct Looked {
    int32_t page = 0;
    host::Ticket ticket = {};
    std::optional<host::Answer> answer = {};
  };
  struct Search {
    uint64_t document = 0;
    bool backwards = false;
    bool wrapsAtOnce = false; ///< it begins beyond an end of the document
    int32_t first = 0, pages = 0;
    int32_t asked = 0, searched = 0; ///< how many pages
    std::list<Looked> looked = {};   ///< in the order in which they are searched
  };

  void stop();
  void ask();
  void take(Looked &last, bool nowhere);
  void show(std::string line);

  const Documents &documents_;
  Moving &moving_;
  StatusLine &status_;
  Changes &changes_;
  FindRequest request_;
  std::optional<Search> search_;
  std::optional<FoundOnPage> found_;
  std::string message_;
};

} // namespace viewer
