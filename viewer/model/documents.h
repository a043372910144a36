// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The open documents, in their order, and which one is in front. It is longer than others because every owner asks it
// about the document in front.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "viewer/model/changes.h"
#include "viewer/model/opendocument.h"
#include "viewer/model/statusline.h"

namespace viewer {

class Documents {
public:
  Documents(host::Application &app, StatusLine &status, Changes &changes);
  ~Documents();
  Documents(const Documents &) = delete;
  Documents &operator=(const Documents &) = delete;

  std::vector<DocumentKeeper *> keepers; ///< called in this order
  double screenDpi = 96;                 ///< the resolution of 100 %; to be set before the first document is open

  /// Opens a document in front. If it throws, the document may be open nevertheless, see find(): then a plug-in has
  /// failed when it was notified.
  /// @param document its `document` and `window` are set here
  void add(std::unique_ptr<host::Document> model, OpenDocument document);
  /// The document opened last takes the place of another one, which is closed, also where closing it throws.
  void replace(const OpenDocument &before);
  void closeFront();
  void closeAll();
  void bringToFront(size_t index);
  /// The message on the status line is kept.
  void bringToFront(const OpenDocument &document);

  /// In the order in which they were opened.
  const std::vector<host::ViewerDocument *> &all() const { return order_; }
  size_t frontIndex() const;
  host::ViewerDocument *front() const { return app_.front(); }
  host::PageView *view() const { return front() == nullptr ? nullptr : front()->view.get(); }
  PageWindow *window() const;
  /// Null for a document that is not open, or no longer.
  const OpenDocument *find(const host::ViewerDocument *document) const;
  const OpenDocument *find(uint64_t number) const;
  template <typename Predicate> const OpenDocument *findIf(const Predicate &predicate) const {
    const auto found = std::find_if(open_.begin(), open_.end(), [&](const auto &one) { return predicate(*one); });
    return found == open_.end() ? nullptr : found->get();
  }
  const OpenDocument *frontDocument() const { return find(front()); }

  // Of the document in front; without one, none and the first.
  int32_t pageCount() const;
  int32_t page() const;
  std::vector<int32_t> markedPages() const;
  std::string title() const;

  std::vector<std::shared_ptr<host::Service>> services() const;
  /// Reports once that a document's file has changed.
  void reportChanged(uint64_t number);

private:
  void prepare(host::ViewerDocument &document);
  void close(const OpenDocument &document);
  void showFront();

  host::Application &app_;
  StatusLine &status_;
  Changes &changes_;
  std::vector<std::unique_ptr<OpenDocument>> open_;
  std::vector<host::ViewerDocument *> order_;
};

} // namespace viewer
