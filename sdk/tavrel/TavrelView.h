// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// The "TavrelView" table: viewer documents, page views, the tool bar, alerts, notifications, auxiliary data, the status
// line, the scroll bar and the lists beside the page. Version 0x00050001 ends with ToolButtonDetach, 0x00050002 with
// SetStatusText, 0x00050003 with DocMarkPages, 0x00050004 has all operations below; 0x00050005 has no further ones, but
// notifyPageAwaited and the mark of a ListRow. A host provides all five.
//
// Null is accepted as page view or tool bar: the operation then does nothing and returns 0 or null. Any other unknown
// handle raises. Tags: see Kernel.h.
#pragma once

#include "tavrel/hft.h"

extern tavrel::HFT gTavrelViewHFT;

namespace tavrel {

/// Notifications, called as void(Doc document, void *clientData).
enum Notification : int32_t {
  notifyDocDidOpen = 4,
  notifyDocDidClose = 8,
  /// Since version 0x00050004: a user has chosen a page that plug-ins have marked (DocMarkPages). It is shown; a
  /// plug-in that knows what the page is marked for may scroll to it.
  notifyMarkedPageChosen = 16,
  /// Since version 0x00050005: another page of the document is shown, but its picture is still being rendered. The
  /// page-draw procedures are called when it is there; what a plug-in says of the page need not wait for that.
  notifyPageAwaited = 32
};
using DocNotifyProc = void (*)(Doc document, void *clientData);

/// Called for every page drawn, while it is drawn; the page view is the one that draws.
using PageDrawProc = void (*)(PageView view, void *clientData);

/// Tool button callbacks. The enabled test answers 1 or 0.
using ButtonActionProc = void (*)(ToolButton button, void *clientData);
using ButtonTestProc = Bool16 (*)(ToolButton button, void *clientData);

/// Receives auxiliary data for a document. The bytes are borrowed until it returns; 1 means that it handled them.
using AuxDataProc = Bool16 (*)(Atom type, const void *data, uint32_t length, Doc document);

/// How a plug-in handles auxiliary data. The plug-in owns the record; the host keeps its address.
struct AuxDataHandler {
  uint32_t size;    ///< 8, on every machine: the version of the record
  Callback perform; ///< an AuxDataProc
};

/// Flags of GetModifierKeyState.
enum ModifierKey : uint32_t { modifierShift = 1, modifierControl = 2, modifierAlt = 4 };

/// Attributes of a tool button. A viewer that is embedded in another window, as in a web browser, shows only the
/// buttons that have buttonAlsoInBrowser; a viewer in a window of its own shows all.
enum ButtonAttribute : int32_t { buttonInternal = 1, buttonAlsoInBrowser = 2 };

/// The versions that end with SetStatusText and with DocMarkPages, the one with all operations, and the newest.
inline constexpr uint32_t tavrelViewStatusVersion = 0x00050002;
inline constexpr uint32_t tavrelViewMarksVersion = 0x00050003;
inline constexpr uint32_t tavrelViewListsVersion = 0x00050004;
inline constexpr uint32_t tavrelViewVersion = 0x00050005;

/// A row of a list beside the page (DocSetList).
struct ListRow {
  int32_t page;   ///< the page that it belongs to; -1: none
  char text[248]; ///< in UTF-8, with a terminating 0
  /// Since version 0x00050005: the bytes of the text that the row is listed for, which are emphasised; a length of 0:
  /// none.
  uint16_t markStart, markLength;
};
/// Writes what a row shows. The host calls it when a row becomes visible, perhaps several times, and has cleared it.
/// Meanwhile an operation that needs a page which has not been read yet raises at once; what is written then is not
/// shown, and the host calls again when the page has been read.
using ListRowProc = void (*)(Doc document, uint32_t row, ListRow *out);
/// Called when the user has chosen a row.
using ListChosenProc = void (*)(Doc document, uint32_t row);
/// No row of a list.
inline constexpr uint32_t noRow = UINT32_MAX;

/// Icons of an alert.
enum AlertIcon : int32_t { alertNone = 0, alertError = 1, alertQuestion = 2, alertNote = 3 };

} // namespace tavrel

// clang-format off
#define TAVREL_VIEW_OPERATIONS(OPERATION)                                                                              \
  /* Shows a modal alert with up to three buttons (null: none) and returns the number of the one pressed, from 1;      \
     beep 1 sounds the bell. [raises] */                                                                               \
  OPERATION(0, Alert, int32_t(int32_t icon, const char *message, const char *first, const char *second,                \
                              const char *third, int32_t beep))                                                        \
  /* The viewer document in front, or null. [no-raise] */                                                              \
  OPERATION(1, GetFrontDoc, Doc())                                                                                     \
  /* The tool bar, or null. [no-raise] */                                                                              \
  OPERATION(2, GetToolBar, ToolBar())                                                                                  \
  /* Registers a callback (DocNotifyProc) for every such event, after the callbacks registered before. A second        \
     registration of the same callback and data is ignored. [raises] */                                                \
  OPERATION(3, RegisterNotification, void(int32_t selector, ExtensionID extension, Callback callback,                  \
                                          void *clientData))                                                           \
  /* The document model of a viewer document. [raises] [borrowed until it closes] */                                   \
  OPERATION(4, DocGetModelDoc, ModelDoc(Doc document))                                                                 \
  /* The page view of a viewer document, or null. [raises] [borrowed until it closes] */                               \
  OPERATION(5, DocGetPageView, PageView(Doc document))                                                                 \
  /* The document shown in a page view, or null. [raises] */                                                           \
  OPERATION(6, PageViewGetDoc, Doc(PageView view))                                                                     \
  /* The visible area of the page, in device units. [raises] */                                                        \
  OPERATION(7, PageViewGetVisibleRect, void(PageView view, DeviceRect *visible))                                       \
  /* The number of the page shown; while a page is drawn, of that page. 0 for no view. [raises] */                     \
  OPERATION(8, PageViewGetPageNum, int32_t(PageView view))                                                             \
  /* Copies the drawing colour to color. [raises] */                                                                   \
  OPERATION(9, PageViewFetchDrawColor, void(PageView view, ColorValue *color))                                         \
  /* Sets the drawing colour. [raises] */                                                                              \
  OPERATION(10, PageViewApplyDrawColor, void(PageView view, const ColorValue *color))                                  \
  /* Opens a batch of changes: nothing is drawn before the outermost one is closed. [raises] */                        \
  OPERATION(11, PageViewBeginBatch, void(PageView view))                                                               \
  /* Closes a batch. [raises] when none is open */                                                                     \
  OPERATION(12, PageViewEndBatch, void(PageView view))                                                                 \
  /* Shows a page, from its upper left. The page already shown stays where it is and is redrawn, but not in a call by   \
     a page-draw procedure. [raises] when there is no such page */                                                      \
  OPERATION(13, PageViewShowPage, void(PageView view, int32_t page))                                                   \
  /* Scrolls so that the device point (x, y) becomes the upper left of the visible area, as far as the page            \
     reaches. [raises] */                                                                                              \
  OPERATION(14, PageViewScrollToPoint, void(PageView view, int16_t x, int16_t y))                                      \
  /* Requests a redraw of an area; null is the complete view. Marks of PageViewHighlightText are removed. [raises] */  \
  OPERATION(15, PageViewRefreshArea, void(PageView view, const DeviceRect *area))                                      \
  /* Registers a callback (PageDrawProc) for every page drawn, after the callbacks registered before. A second         \
     registration of the same callback and data is ignored. [raises] */                                                \
  OPERATION(16, RegisterPageDrawProc, void(Callback callback, void *clientData))                                       \
  /* The matrix from page space to device space. [raises] */                                                           \
  OPERATION(17, PageViewGetPageTransform, void(PageView view, FixedMatrix *matrix))                                    \
  /* The modifier keys held down, as flags (ModifierKey). [no-raise] */                                                \
  OPERATION(18, GetModifierKeyState, uint32_t())                                                                       \
  /* The button of that name on a tool bar, or null. [raises] */                                                       \
  OPERATION(19, ToolBarFindButton, ToolButton(ToolBar bar, Atom name))                                                 \
  /* Puts a button next to another: before it (1), after it (0); without a reference, at the end. A button already     \
     on the tool bar moves there. [raises] */                                                                          \
  OPERATION(20, ToolBarInsertButton, void(ToolBar bar, ToolButton button, Bool16 before, ToolButton reference))        \
  /* Whether there is space for that many more buttons and separators. [raises] */                                     \
  OPERATION(21, ToolBarHasSpace, Bool16(ToolBar bar, int32_t buttons, int32_t separators))                             \
  /* Calls every button's enabled test again. [raises] */                                                              \
  OPERATION(22, ToolBarUpdateButtonStates, void(ToolBar bar))                                                          \
  /* A button, on no tool bar yet; the two further arguments are 0. The icon stays the caller's. A name that is        \
     taken gives the button that has it. [raises] [borrowed until the plug-in ends whose callback was attached last,   \
     or that made it] */                                                                                               \
  OPERATION(23, ToolButtonCreate, ToolButton(Atom name, Bitmap icon, int32_t reserved1, int32_t reserved2))            \
  /* Sets what a press calls (ButtonActionProc). [raises] */                                                           \
  OPERATION(24, ToolButtonAttachAction, void(ToolButton button, Callback callback, void *clientData))                  \
  /* Sets the test of whether the button is enabled (ButtonTestProc). [raises] */                                      \
  OPERATION(25, ToolButtonAttachEnabledTest, void(ToolButton button, Callback callback, void *clientData))             \
  /* Sets the help text; it is copied. [raises] */                                                                     \
  OPERATION(26, ToolButtonAttachTip, void(ToolButton button, const char *text))                                        \
  /* Marks a selection on the page being drawn, in the drawing colour; text stays readable on any background.          \
     [raises] when nothing is being drawn or another page is */                                                        \
  OPERATION(27, PageViewPaintSelection, void(PageView view, TextSelection selection))                                  \
  /* Marks a selection at once on the page as it is on the screen, in the host's selection colour, #B4D5FE, without a  \
     call of page-draw procedures. A second call for it removes the mark. The mark lasts until the page is redrawn,    \
     which shows only what page-draw procedures paint. A selection that they have painted is not marked twice: its     \
     page is redrawn. A selection on a page that is not on the screen is ignored. [raises] */                          \
  OPERATION(28, PageViewHighlightText, void(PageView view, TextSelection selection))                                   \
  /* Whether any handler is registered for a type of auxiliary data. [no-raise] */                                     \
  OPERATION(29, HasAuxDataHandler, Bool16(Atom type))                                                                  \
  /* Registers a handler; 0 when this record is already registered for the type. [raises] */                           \
  OPERATION(30, RegisterAuxDataHandler, Bool16(ExtensionID extension, Atom type, const AuxDataHandler *handler))       \
  /* Removes a handler; 0 when it was not registered. [no-raise] */                                                    \
  OPERATION(31, UnregisterAuxDataHandler, Bool16(ExtensionID extension, Atom type, const AuxDataHandler *handler))     \
  /* Sets an attribute of a button (ButtonAttribute). [raises] */                                                      \
  OPERATION(32, ToolButtonSetAttribute, void(ToolButton button, int32_t attribute))                                    \
  /* Removes a button from its tool bar; the button stays valid. [raises] */                                           \
  OPERATION(33, ToolButtonDetach, void(ToolButton button))                                                             \
  /* Sets a plug-in's text on the status line, in UTF-8; it is copied. Null or empty: none. Each plug-in has its own   \
     text. [raises] */                                                                                                 \
  OPERATION(34, SetStatusText, void(ExtensionID extension, const char *text))                                          \
  /* The parameters after the document's name when it was opened ("page=3&xml=hits.xml"), or null. [raises] [borrowed  \
     until it closes] */                                                                                               \
  OPERATION(35, DocGetOpenParameters, const char *(Doc document))                                                      \
  /* The document's file, as an absolute path. [raises] [borrowed until it closes] */                                  \
  OPERATION(36, DocGetFile, const char *(Doc document))                                                                \
  /* Passes auxiliary data of a type to its handlers, one after the other until one handles it; 0 when none does. The  \
     bytes are copied. [raises] */                                                                                     \
  OPERATION(37, DocAttachAuxData, Bool16(Doc document, Atom type, const void *data, uint32_t length))                  \
  /* How many pages there are. [raises] */                                                                             \
  OPERATION(38, PageViewGetPageCount, int32_t(PageView view))                                                          \
  /* Sets the pages that a plug-in marks on the scroll bar of a document; pages that do not exist are ignored. Each    \
     plug-in has its own marked pages; an empty list removes them. [raises] */                                         \
  OPERATION(39, DocMarkPages, void(ExtensionID extension, Doc document, const int32_t *pages, uint32_t count))          \
  /* Draws a line in the drawing colour around a selection on the page being drawn, above all marks: around its words   \
     on each line of text. [raises] when nothing is being drawn or another page is */                                  \
  OPERATION(40, PageViewOutlineSelection, void(PageView view, TextSelection selection))                                \
  /* The n-th selection, from 0, that page-draw procedures have painted (PageViewPaintSelection) on the page drawn     \
     last, or being drawn; null after the last one. [raises] [borrowed as DocModel.h says] */                          \
  OPERATION(41, PageViewGetPaintedSelection, TextSelection(PageView view, uint32_t index))                             \
  /* Whether a window shows the view, and may be smaller than the page. A view that pages are only drawn with, to      \
     files for instance, is as large as the page. [raises] */                                                          \
  OPERATION(42, PageViewIsInWindow, Bool16(PageView view))                                                             \
  /* Gives a button a key, as X translations have it: "<Key>F3", "Shift<Key>F3"; modifiers are Ctrl, Shift, Alt and     \
     Meta. It is copied. Null or empty: none. A user may choose another one (share/Tavrel.ad), and what the viewer     \
     itself has on a key goes first. [raises] */                                                                       \
  OPERATION(43, ToolButtonAttachKey, void(ToolButton button, const char *key))                                         \
  /* Sets a button's short text, for menus, in UTF-8; it is copied. Null or empty: its help text. [raises] */          \
  OPERATION(44, ToolButtonAttachLabel, void(ToolButton button, const char *text))                                      \
  /* Sets the list that a plug-in shows beside the page of a document, for places in it, in place of its earlier one:  \
     a short title, the number of rows, what they show (ListRowProc), what follows when one is chosen (ListChosenProc). \
     No rows: no list. The viewer shows one list at a time, that of the plug-in loaded first. [raises] */              \
  OPERATION(45, DocSetList, void(ExtensionID extension, Doc document, const char *title, uint32_t rows, Callback row,  \
                                 Callback chosen))                                                                     \
  /* Sets the current row of that list, which stays visible; noRow for none. [raises] when there is no such row */     \
  OPERATION(46, DocSetListRow, void(ExtensionID extension, Doc document, uint32_t row))
// clang-format on

namespace TavrelView {
using namespace tavrel;
using tavrel::Atom; // X has an Atom, too
#define TAVREL_VIEW_DECLARE(...) TAVREL_OPERATION(gTavrelViewHFT, __VA_ARGS__)
TAVREL_VIEW_OPERATIONS(TAVREL_VIEW_DECLARE)
#undef TAVREL_VIEW_DECLARE
inline constexpr ListedOperation operations[] = {TAVREL_VIEW_OPERATIONS(TAVREL_LISTED)};
} // namespace TavrelView
