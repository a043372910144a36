// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// The current hit of each document, and the steps from hit to hit.
#pragma once

#include "tavrel/TavrelView.h"

/// To be called first.
void startSteps(tavrel::ExtensionID self);
/// Frees all memory.
void endSteps();

/// Makes the next hit (direction 1) or the one before (-1) the current one and shows it: the next one on the page shown
/// if there is one, else the first one of the next page with hits, to which the highlight plug-in jumps.
void step(tavrel::Doc document, int direction);
/// Whether there is a hit to step to.
bool canStep(tavrel::Doc document, int direction);
/// Makes the first hit of the page shown the current one, and scrolls to it.
void goToFirstHitOfPage(tavrel::Doc document);

/// Outlines the current hit on the page being drawn and shows its number on the status line. A page with hits that is
/// shown otherwise than by a step has its first hit as the current one. That of a new list is scrolled to.
void showCurrentHit(tavrel::PageView view);
/// To be called when a document is closed.
void forgetHits(tavrel::Doc document);
