// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The rendered pages: which ones are requested and kept, and what failed.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "viewer/model/cache.h"
#include "viewer/model/documents.h"

namespace viewer {

class Tiles : public DocumentKeeper {
public:
  Tiles(const Documents &documents, Renderer &renderer, StatusLine &status)
      : documents_(documents), renderer_(renderer), status_(status) {}

  /// Requests the page in front, and its neighbours as far as all of them fit.
  void request(bool neighbours);
  /// Takes over a page, completely or, if memory is exhausted, not at all.
  void take(RenderedPage &page);
  /// Whether there is an image of the page in front as it is to be shown.
  bool hasFront() const;
  /// The error of the page in front, or empty.
  std::string error() const;
  /// To be called when a page is shown or its words are read. The words of a page take a hundred times the memory of
  /// its text: those of the most recently shown pages are kept.
  void forgetWords(int32_t shown);

  const PageCache &cache() const { return cache_; }

  static constexpr size_t cacheBytes = size_t{64} * 1024 * 1024;

  void opens(const OpenDocument &document) override;
  void closes(const OpenDocument &document) override;

private:
  const Documents &documents_;
  Renderer &renderer_;
  StatusLine &status_;
  PageCache cache_{cacheBytes};
  std::map<std::pair<uint64_t, int32_t>, std::string> errors_; ///< by document and page
  std::map<uint64_t, std::vector<int32_t>>
      withWords_; ///< a document's pages whose words are kept, the last one shown last
};

} // namespace viewer
