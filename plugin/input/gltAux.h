// How highlight files come in: the auxiliary-data channel, and the reader of the file.
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
// It is read word by word, forgivingly: what is not known is skipped, and nothing is reported. Pages count from 0.
#pragma once

#include "tavrel/TavrelView.h"
#include "tavrel/types.h"

struct HLL;

/// The plug-in's handler record; the host keeps its address.
extern tavrel::AuxDataHandler auxDataRec;

/// Registers the plug-in as handler of "tavrelglt" and "xml" and has the buttons shown. The result is that of "xml".
tavrel::Bool16 gltRegisterAuxdata();

/// Takes the registrations back. The result is that of the last one taken back, 1 when there was none.
tavrel::Bool16 gltUnregisterAuxdata();

/// Called by the host with auxiliary data. 1 when it was of one of the two types and has a document, whatever came
/// of it.
tavrel::Bool16 gltAuxdataPerformProc(tavrel::Atom type, const void *data, uint32_t length, tavrel::Doc document);

/// What the reader of a file gives the registry as its procedures: a file wants to know nothing.
void auxGLTJumpNotification(tavrel::Doc document, HLL *list, uint32_t code, void *userData);
void auxGLTNewNotification(tavrel::Doc document, HLL *list, void *userData);

/// The module's debug print: prints nothing.
int32_t dbgprintf(const char *format, ...);

/// Reads a highlight file and registers its list for the document. 0 when nothing was registered.
tavrel::Bool16 registerGLT(tavrel::Doc document, const void *data, uint32_t length);

/// Three pairs of hexadecimal digits, without a mark in front; what is missing is 0. Turns `text` into upper case as
/// far as it gets. 0 on a character that is no digit.
tavrel::Bool16 ParseRGB(char *text, uint16_t *red, uint16_t *green, uint16_t *blue);

/// At most four hexadecimal digits, the leftmost the least significant. 0 for a null text.
tavrel::Bool16 HexToInt(const char *text, uint16_t *value);

/// The difference of the first characters that differ without regard to case, 0 for equal strings.
int16_t gltstricmp(const char *a, const char *b);

/// 1 when every character is a decimal digit, also for an empty string.
tavrel::Bool16 isallnum(const char *text);
