// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// The current hit of each document, and the steps from hit to hit.
#pragma once

#include "tavrel/TavrelView.h"

/// To be called first; the callbacks are those of the list of hits, for DocSetList.
void startSteps(tavrel::ExtensionID self, tavrel::Callback row, tavrel::Callback chosen);
/// Frees all memory.
void endSteps();

/// Makes the next hit (direction 1) or the one before (-1) the current one and shows it: the next one on the page shown
/// if there is one, else the first one of the next page with hits, to which the highlight plug-in jumps.
void step(tavrel::Doc document, int direction);
/// Whether there is a hit to step to.
bool canStep(tavrel::Doc document, int direction);
/// Makes the first hit of the page shown the current one, and scrolls to it.
void goToFirstHitOfPage(tavrel::Doc document);

/// Shows the number of the current hit of the page shown, which may not be drawn yet.
void showNumber(tavrel::Doc document);
/// Outlines the current hit on the page being drawn and shows its number on the status line. A page with hits that is
/// shown otherwise than by a step has its first hit as the current one. That of a new list is scrolled to.
void showCurrentHit(tavrel::PageView view);
/// What a row of the list of hits shows: the line of text around a hit.
void writeRow(tavrel::Doc document, uint32_t row, tavrel::ListRow *out);
/// Makes the hit of a row the current one and shows it.
void goToRow(tavrel::Doc document, uint32_t row);

/// To be called when a document is closed.
void forgetHits(tavrel::Doc document);
