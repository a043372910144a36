// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// Where hits are on their pages: scrolls to them and outlines them.
#pragma once

#include "hits.h"
#include "tavrel/TavrelView.h"

/// What the positions of a list count: characters, or words of a version of word extraction. The table of highlight
/// lists does not tell; see learnUnits.
enum Units : int16_t { unitCharacters = 0, unitWordsInContentOrder = 1, unitWords = 2 };

/// A place in a document.
struct HitPlace {
  tavrel::Doc document;
  int32_t page;
  tavrel::TextRange range;
  Units units;
};

/// Scrolls the page that the view shows, as little as is needed, so that all of the hit is visible, with a margin if it
/// was not. Nothing happens if it covers nothing. False if the page cannot be read.
bool bringIntoSight(tavrel::PageView view, const HitPlace &hit);
/// Whether bringIntoSight would scroll nothing, also because the page cannot be read.
bool isInSight(tavrel::PageView view, const HitPlace &hit);
/// Outlines the hit on the page being drawn. Nothing happens if it covers nothing or the page cannot be read.
void outline(tavrel::PageView view, const HitPlace &hit);
/// Writes the line of text around a hit, of a long line what is near the hit, and where in it the words of the hit are.
void writeLine(const HitPlace &hit, tavrel::ListRow *row);
/// The units of a page's positions, found out by what has been painted on it: the selection of the same positions
/// in the same units is the same selection. Without such a selection, the given units. The ranges are those that are
/// shown of the page's hits.
Units learnUnits(tavrel::PageView view, tavrel::Doc document, int32_t page, const tavrel::TextRange *ranges,
                 uint32_t count, Units units);
