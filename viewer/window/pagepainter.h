// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Paints the page and its surroundings, with a text in its middle if there is one. It shows the last drawing, so that
// an exposure never calls a plug-in.
#pragma once

#include <Xm/Xm.h>

#include <string>

#include "viewer/model/place.h"
#include "viewer/model/screen.h"

namespace viewer {

class Toolkit;

class PagePainter {
public:
  /// @param area where it paints
  PagePainter(const Toolkit &toolkit, ::Widget area);
  ~PagePainter();
  PagePainter(const PagePainter &) = delete;
  PagePainter &operator=(const PagePainter &) = delete;

  /// @param page the position of the complete page on the area; not used without a document
  void paint(const Shown &shown, const Place &page, const std::string &note);

private:
  void paintPage(const Shown &shown, const Place &page);
  void paintNote(const std::string &note, const Place &page);
  void fill(Pixel pixel, int left, int top, int right, int bottom);
  Place areaPlace() const;

  const Toolkit &toolkit_;
  ::Widget area_;
  GC context_;
  Pixel background_, border_, noteColor_;
};

} // namespace viewer
