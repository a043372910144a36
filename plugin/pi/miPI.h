// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The plug-in's lifecycle: the callbacks that the handshake gives to the host, the notifications, and the global data.
#pragma once

#include "tavrel/types.h"

/// One zero-filled block from the export callback to the unload callback.
struct GlobalData {
  tavrel::Widget shell;
  tavrel::Bitmap prevBitmap;
  tavrel::Bitmap nextBitmap;
  tavrel::ToolButton prevButton;
  tavrel::ToolButton nextButton;
  uint16_t buttonsShown;
};

/// Null until the export callback; keeps its value after the unload callback, when nothing reads it any more.
extern GlobalData *gData;

/// Allocates `gData` and offers the service table. 0 only when memory is exhausted.
uint32_t ExtensionExportHFTs();

/// Makes the shell, registers the notifications and the auxiliary-data handler. 0 without a shell, and then nothing is
/// registered; else the result of the handler's registration.
uint32_t ExtensionInit();

/// Destroys the shell, releases the bitmaps, frees `gData` and unregisters the handler, whose result it returns.
uint32_t ExtensionTerm();

/// Registers the three callbacks below, for as long as the plug-in is loaded.
void miPIRegisterForNotifications();

/// Does nothing: the highlights of a new document arrive as auxiliary data.
void miPIDocDidOpen(tavrel::Doc document, void *clientData);

/// Unregisters the document's highlights.
void miPIDocDidClose(tavrel::Doc document, void *clientData);

/// Moves the current position to the page being drawn, if that page has highlights, and has its marks painted.
void miPIPageViewDraw(tavrel::PageView view, void *clientData);
