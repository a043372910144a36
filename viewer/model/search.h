// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A search of a document for the next page that has a text, page by page, from one on. Destroying it ends the search.
#pragma once

#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/document/service.h"

namespace viewer {

/// What is searched for.
struct FindRequest {
  std::string text; ///< UTF-8
  host::FindOptions options;
  bool operator==(const FindRequest &other) const {
    return text == other.text && options.matchCase == other.options.matchCase &&
           options.wholeWords == other.options.wholeWords;
  }
};

class Search {
public:
  /// The first page with the text, in the direction of the search.
  struct Result {
    int32_t page = 0;
    std::vector<host::Found> found; ///< empty: the text is not in the document
    bool wrapped = false;           ///< the search passed an end of the document
    std::string error;
    std::vector<int32_t> unread; ///< pages that could not be read, in the order of the search
  };

  /// The document has `pages`; the search begins with `first` of them.
  Search(std::shared_ptr<host::Service> service, FindRequest request, int32_t first, int32_t pages, bool backwards);
  Search(const Search &) = delete;
  Search &operator=(const Search &) = delete;
  ~Search() = default;

  /// Continues with what has been answered: the result, once there is one, else null. If memory is exhausted, a further
  /// call does it.
  Result *proceed();
  const FindRequest &request() const { return request_; }
  bool backwards() const { return backwards_; }
  int32_t searched() const { return searched_; } ///< how many pages
  int32_t pages() const { return pages_; }

private:
  struct Page {
    int32_t number = 0;
    host::Ticket ticket = {};
    std::optional<host::Answer> answer = {};
  };
  void ask();
  bool take(Page &page);

  std::shared_ptr<host::Service> service_;
  FindRequest request_;
  int32_t first_, pages_;
  bool backwards_;
  int32_t asked_ = 0, searched_ = 0;
  std::list<Page> underWay_; ///< in the order in which they are searched
  std::vector<int32_t> unread_;
  std::optional<Result> result_;
};

} // namespace viewer
