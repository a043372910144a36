// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// How highlight files arrive: the auxiliary-data channel, and the reader of the file.
//
// A highlight file is 8-bit text, written by a search engine:
//
//   <?xml version="1.0"?>
//   <XML>
//   <Body Units="characters" color="#FF0000" mode="active" version="2">
//   <highlights>
//   <loc pg="3" pos="120" len="6"/>
//   </highlights>
//   </Body>
//   </XML>
//
// It is read word by word. Unknown words are skipped without a report. Pages count from 0.
#pragma once

#include "tavrel/TavrelView.h"
#include "tavrel/types.h"

struct HLL;

/// The plug-in's handler record; the host keeps its address.
extern tavrel::AuxDataHandler auxDataRec;

/// Registers the plug-in as handler of "tavrelglt" and "xml" and has the buttons shown. The result is that of "xml".
tavrel::Bool16 gltRegisterAuxdata();

/// Removes the registrations. The result is that of the last one removed, 1 when there was none.
tavrel::Bool16 gltUnregisterAuxdata();

/// Called by the host with auxiliary data. 1 when it is of one of the two types and has a document, also when the file
/// could not be read.
tavrel::Bool16 gltAuxdataPerformProc(tavrel::Atom type, const void *data, uint32_t length, tavrel::Doc document);

/// The procedures that the reader of a file registers with its list: they do nothing.
void auxGLTJumpNotification(tavrel::Doc document, HLL *list, uint32_t code, void *userData);
void auxGLTNewNotification(tavrel::Doc document, HLL *list, void *userData);

/// The module's debug print: prints nothing.
int32_t dbgprintf(const char *format, ...);

/// Reads a highlight file and registers its list for the document. 0 when nothing was registered.
tavrel::Bool16 registerGLT(tavrel::Doc document, const void *data, uint32_t length);

/// Three pairs of hexadecimal digits, without a '#' before them; missing digits are 0. Converts `text` to upper case up
/// to the first character that is no digit, for which the result is 0.
tavrel::Bool16 ParseRGB(char *text, uint16_t *red, uint16_t *green, uint16_t *blue);

/// At most four hexadecimal digits, the leftmost the least significant. 0 for a null text.
tavrel::Bool16 HexToInt(const char *text, uint16_t *value);

/// The difference of the first characters that differ without regard to case, 0 for equal strings.
int16_t gltstricmp(const char *a, const char *b);

/// 1 when every character is a decimal digit, also for an empty string.
tavrel::Bool16 isallnum(const char *text);
