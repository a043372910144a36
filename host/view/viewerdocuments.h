// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The open documents of the application, and their order.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/document/document.h"
#include "host/kernel/handles.h"
#include "host/view/lists.h"
#include "host/view/pageview.h"

namespace host {

/// An open document and the view on it.
struct ViewerDocument {
  std::filesystem::path file;
  std::unique_ptr<Document> model;
  std::unique_ptr<PageView> view; ///< null for a document that is not shown
  std::string parameters;         ///< those after the file's name when it was opened: "page=3"
  bool parametersRead = false;    ///< by a plug-in
  /// What plug-ins have marked (DocMarkPages), in order of page, none empty.
  std::map<tavrel::ExtensionID, std::vector<int32_t>> markedPages;
  Lists lists; ///< beside the page

  /// Sets what a plug-in marks; pages that the document does not have are ignored. False where nothing changes.
  bool mark(tavrel::ExtensionID extension, std::span<const int32_t> pages);
};

class ViewerDocuments {
public:
  /// Adds one in front of all others. Where that throws, it is not added.
  ViewerDocument &add(std::unique_ptr<ViewerDocument> document);
  void remove(ViewerDocument &document) noexcept;
  /// Null without any document.
  ViewerDocument *front() const { return all_.empty() ? nullptr : all_.back().get(); }
  void bringToFront(ViewerDocument &document);
  /// The document that a view shows, or null.
  ViewerDocument *documentOf(const PageView &view) const;

  Handles<tavrel::Doc, ViewerDocument> &handles() { return handles_; }
  Handles<tavrel::PageView, PageView> &views() { return views_; }

  // Around a call into a plug-in, for every view.
  void beforeCall();
  void afterCall() noexcept;
  /// Removes what a plug-in shows beside the pages. Returns how much that was.
  size_t retire(tavrel::ExtensionID extension) noexcept;

private:
  std::vector<std::unique_ptr<ViewerDocument>> all_; ///< the front one is last
  Handles<tavrel::Doc, ViewerDocument> handles_{"document"};
  Handles<tavrel::PageView, PageView> views_{"page view"};
};

} // namespace host
