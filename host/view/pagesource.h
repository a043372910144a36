// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Where a page view has the images of pages from.
#pragma once

#include <functional>
#include <optional>
#include <variant>

#include "host/document/document.h"

namespace host {

/// A page's image: one that the source keeps, which is valid until the next call, or one that it gives away.
using SourceImage = std::variant<const Image *, Image>;

/// Returns a page's image; null where it is not rendered yet. A source that returns null invalidates the view when the
/// image is ready.
using PageSource = std::function<SourceImage(int32_t page, double dpi)>;

/// Renders pages when they are asked for, and keeps the last one: marks change more often than pages.
class RenderedPages {
public:
  explicit RenderedPages(Document &document) : document_(&document) {}
  const Image *operator()(int32_t page, double dpi) {
    if (!last_ || last_->page != page || last_->dpi != dpi) {
      last_.reset(); // its memory is free before the next one is rendered
      last_ = {document_->render(page, dpi), page, dpi};
    }
    return &last_->image;
  }

private:
  struct Rendered {
    Image image;
    int32_t page;
    double dpi;
  };
  Document *document_;
  std::optional<Rendered> last_;
};

} // namespace host
