// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What the page area shows: the last drawing of the page in front, or its outline while it is being rendered.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "viewer/model/documents.h"
#include "viewer/model/finding.h"
#include "viewer/model/tiles.h"

namespace viewer {

struct Shown {
  std::optional<host::Drawing> drawing; ///< none: the outline is shown
  bool document = false;                ///< whether a document is open
  int32_t page = 0;
  double dpi = 0;
  int pageWidth = 0, pageHeight = 0; ///< of the complete page, in pixels
  int scrollX = 0, scrollY = 0;      ///< at the time of the drawing
};

class Screen : public DocumentKeeper {
public:
  Screen(host::Application &app, const Documents &documents, Tiles &tiles, const Finding &finding, StatusLine &status,
         Changes &changes);
  ~Screen() override;
  Screen(const Screen &) = delete;
  Screen &operator=(const Screen &) = delete;

  /// Whether draw() has something to do now: not during a call of a plug-in, nor while the outline of a page that is
  /// being rendered is shown.
  bool needsDrawing() const;
  /// Draws the page in front, unless a plug-in is being called; true if there is something new to show.
  bool draw();
  /// Adds what plug-ins have highlighted (PageViewHighlightText) to the drawing shown, also during a call of a plug-in;
  /// true if there is something new to show. The drawing itself stays, and no plug-in is called.
  bool showHighlights();
  /// Called when the page in front is invalid or its highlights have changed, during the call of the plug-in.
  std::function<void()> pageListener;
  const Shown &shown() const { return shown_; }
  /// Since when the window has been waiting for the page in front.
  std::optional<std::chrono::steady_clock::time_point> waitingSince() const { return waitingSince_; }

  // It belonged to another page.
  void opens(const OpenDocument & /*document*/) override { waitingSince_.reset(); }
  void frontChanged() override { waitingSince_.reset(); }

private:
  void drawPage(PageWindow &drawn);
  void reportOffPage(const host::Drawing &drawing);
  bool outlineIsShown() const;

  host::Application &app_;
  const Documents &documents_;
  Tiles &tiles_;
  const Finding &finding_;
  StatusLine &status_;
  Changes &changes_;
  Shown shown_;
  uint64_t shownDocument_ = 0;                   ///< the number of the document drawn
  std::vector<host::MarkedArea> highlights_;     ///< on the drawing shown
  std::optional<host::Image> withoutHighlights_; ///< the drawing without highlights, if it has any
  std::optional<std::chrono::steady_clock::time_point> waitingSince_;
  std::string offPageLine_;
};

} // namespace viewer
