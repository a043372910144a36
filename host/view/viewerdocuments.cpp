// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/viewerdocuments.h"

#include <algorithm>
#include <iterator>

namespace host {

bool ViewerDocument::mark(tavrel::ExtensionID extension, std::span<const int32_t> pages) {
  std::vector<int32_t> marked;
  std::copy_if(pages.begin(), pages.end(), std::back_inserter(marked),
               [&](int32_t page) { return page >= 0 && page < model->pageCount(); });
  std::sort(marked.begin(), marked.end());
  marked.erase(std::unique(marked.begin(), marked.end()), marked.end());
  const auto before = markedPages.find(extension);
  if (before == markedPages.end() ? marked.empty() : before->second == marked) return false;
  if (marked.empty())
    markedPages.erase(extension);
  else
    markedPages[extension] = std::move(marked);
  return true;
}

ViewerDocument &ViewerDocuments::add(std::unique_ptr<ViewerDocument> document) {
  ViewerDocument &added = *document;
  all_.push_back(std::move(document));
  try {
    handles_.add(&added);
    if (added.view) views_.add(added.view.get());
  } catch (...) {
    remove(added);
    throw;
  }
  return added;
}

void ViewerDocuments::remove(ViewerDocument &document) noexcept {
  handles_.remove(&document);
  if (document.view) views_.remove(document.view.get());
  std::erase_if(all_, [&](const auto &one) { return one.get() == &document; });
}

void ViewerDocuments::bringToFront(ViewerDocument &document) {
  const auto found = std::find_if(all_.begin(), all_.end(), [&](const auto &one) { return one.get() == &document; });
  if (found != all_.end()) std::rotate(found, found + 1, all_.end());
}

ViewerDocument *ViewerDocuments::documentOf(const PageView &view) const {
  const auto found = std::find_if(all_.begin(), all_.end(), [&](const auto &one) { return one->view.get() == &view; });
  return found == all_.end() ? nullptr : found->get();
}

void ViewerDocuments::beforeCall() {
  for (const auto &document : all_)
    if (document->view) document->view->batches().expectCall();
  for (const auto &document : all_)
    if (document->view) document->view->batches().beforeCall();
}

void ViewerDocuments::afterCall() noexcept {
  for (const auto &document : all_)
    if (document->view) document->view->batches().afterCall();
}

size_t ViewerDocuments::retire(tavrel::ExtensionID extension) noexcept {
  size_t removed = 0;
  for (const auto &document : all_)
    removed += document->markedPages.erase(extension) + document->lists.retire(extension);
  return removed;
}

} // namespace host
