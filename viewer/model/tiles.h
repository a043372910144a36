// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The rendered pages: which ones are requested and kept, and what failed.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/document/service.h"
#include "viewer/model/cache.h"
#include "viewer/model/documents.h"
#include "viewer/model/words.h"

namespace viewer {

class Tiles : public DocumentKeeper {
public:
  Tiles(Documents &documents, StatusLine &status) : documents_(documents), status_(status) {}

  /// Requests the page in front, and its neighbours as far as all of them fit; with their words, where those are used.
  void request(bool neighbours);
  /// Requests page 1 of a document that will be open.
  void requestFirst(uint64_t document, host::Service &service, const host::PageSize &page, double dpi);
  /// Whether there is an image of the page in front as it is to be shown.
  bool hasFront() const;
  /// The error of the page in front, or empty.
  std::string error() const;
  /// To be called when a page is shown: the words of the pages used last are kept.
  void forgetWords(int32_t shown);
  /// Which words of an open document are kept.
  Words &words(const OpenDocument &document) { return words_[document.number]; }

  const PageCache &cache() const { return cache_; }

  static constexpr size_t cacheBytes = size_t{64} * 1024 * 1024;

  void opens(const OpenDocument &document) override;
  void isNotOpened(uint64_t number) override { dropImages(number); }
  void closes(const OpenDocument &document) override;

private:
  void dropImages(uint64_t number);
  void ask(const OpenDocument &document, const PageKey &key, host::Urgency urgency);
  void ask(host::Service &service, const PageKey &key, const host::PixelSize &size, host::Urgency urgency);
  void take(const PageKey &key, host::Answer &answer);
  std::string failureOf(const OpenDocument &document, const PageKey &key, const host::Answer &answer) const;
  void takeLate(uint64_t number, int32_t page);

  Documents &documents_;
  StatusLine &status_;
  PageCache cache_{cacheBytes};
  std::map<PageKey, host::Ticket> asked_;
  std::map<std::pair<uint64_t, int32_t>, std::string> errors_; ///< by document and page
  std::map<uint64_t, Words> words_;                            ///< by document
};

} // namespace viewer
