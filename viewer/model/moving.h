// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Turning pages, scrolling and zooming in the document in front, and the window's size. Without a document nothing is
// done.
#pragma once

#include "viewer/model/documents.h"
#include "viewer/model/scrollscale.h"

namespace viewer {

class Moving : public DocumentKeeper {
public:
  Moving(const Documents &documents, StatusLine &status, Changes &changes)
      : documents_(documents), status_(status), changes_(changes) {}

  void setWindow(int width, int height, int margin);
  int windowWidth() const { return windowWidth_; }
  int windowHeight() const { return windowHeight_; }

  /// The number is clamped to the existing pages.
  void goToPage(int32_t page);
  /// Turns by that many pages.
  void turn(int32_t pages);
  /// Scrolls by pixels; at an end of the page it turns the page.
  void scroll(int dx, int dy);
  /// Scrolls by pixels and stays on the page.
  void drag(int dx, int dy);
  /// Scrolls by a page of the window, up (-1) or down (1).
  void scrollWindow(int direction);
  /// The scroll bar, whose value is the position of the window's upper edge in the document.
  Slider slider() const;
  /// Goes to the position of a value that a user has set; the last one is the end of the document. The current
  /// position's own value changes nothing.
  /// @param size of the slider that was moved
  void setSlider(int value, int size);

  double zoom() const; ///< 1 is 100 %
  void zoomBy(int steps);
  void setZoom(double zoom);
  Fit fit() const { return window() == nullptr ? fit_ : window()->fit(); }
  void setFit(Fit fit);

  /// The resolution at which a document that is opened now is shown at first.
  double firstDpi(host::Document &document) const;

  void opens(const OpenDocument &document) override;
  void replaces(const OpenDocument &before, const OpenDocument &now) override;
  void frontChanged() override;

private:
  PageWindow *window() const { return documents_.window(); }
  void fitToWindow(PageWindow &shown) const;
  void fitAtFirst(PageWindow &shown) const;

  const Documents &documents_;
  StatusLine &status_;
  Changes &changes_;
  Fit fit_ = Fit::width; ///< of the next document
  int windowWidth_ = 0, windowHeight_ = 0, margin_ = 0;
};

} // namespace viewer
