// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The "TavrelView" table: each operation checks its handles and calls the part of the application that implements it.
#include "tavrel/TavrelView.h"

#include "host/kernel/table.h"
#include "host/view/application.h"
#include "host/view/tables.h"

namespace host {
namespace {

using tavrel::Atom, tavrel::Bool16, tavrel::Callback, tavrel::errBadArgument, tavrel::ExtensionID;
// The handles that plug-ins hold; the host's objects have the same names.
using DocHandle = tavrel::Doc;
using ViewHandle = tavrel::PageView;
using BarHandle = tavrel::ToolBar;
using ButtonHandle = tavrel::ToolButton;

Application &app() { return Application::current(); }

ViewerDocument &documentOf(DocHandle handle) { return app().documents().find(handle); }

// Null is accepted, and then nothing is done.
PageView *viewOf(ViewHandle handle) { return handle == nullptr ? nullptr : &app().views().find(handle); }
ToolBar *barOf(BarHandle handle) { return handle == nullptr ? nullptr : &app().findToolBar(handle); }

// Buttons live as long as the tool bar, also off it.
ToolBar &theBar() {
  ToolBar *bar = app().toolBar();
  if (bar == nullptr) throw HostError(tavrel::errBadHandle, "there is no tool bar");
  return *bar;
}
ToolButton &buttonOf(ButtonHandle handle) { return theBar().handles().find(handle); }

template <typename T> T &reference(T *pointer) {
  if (pointer == nullptr) throw HostError(errBadArgument, "a null pointer where the host writes or reads");
  return *pointer;
}

// ---- alerts, keys

int32_t showAlert(int32_t icon, const char *message, const char *first, const char *second, const char *third,
                  int32_t beep) {
  Alert alert;
  alert.icon = icon;
  alert.message = message == nullptr ? "" : message;
  const char *labels[] = {first, second, third};
  std::transform(std::begin(labels), std::end(labels), alert.buttons.begin(),
                 [](const char *label) { return label == nullptr ? std::nullopt : std::optional<std::string>(label); });
  alert.beep = beep != 0;
  return app().alert(alert);
}

uint32_t modifierKeys() {
  const Application *application = Application::find();
  return application == nullptr ? 0 : application->modifierKeys;
}

// ---- documents

DocHandle frontDoc() {
  Application *application = Application::find();
  return application == nullptr ? nullptr : application->documents().handle(application->front());
}

tavrel::ModelDoc modelDoc(DocHandle document) { return modelDocs().handle(documentOf(document).model.get()); }

ViewHandle pageView(DocHandle document) { return app().views().handle(documentOf(document).view.get()); }

void registerNotification(int32_t selector, ExtensionID extension, Callback callback, void *clientData) {
  Runtime::current().extensions.require(extension);
  app().registerNotification(selector, registrationOf(callback, clientData));
}

Bool16 hasAuxDataHandler(Atom type) {
  const Application *application = Application::find();
  return application != nullptr && application->auxData.has(type) ? 1 : 0;
}

Bool16 registerAuxDataHandler(ExtensionID extension, Atom type, const tavrel::AuxDataHandler *handler) {
  return app().auxData.add(extension, type, handler) ? 1 : 0;
}

Bool16 unregisterAuxDataHandler(ExtensionID extension, Atom type, const tavrel::AuxDataHandler *handler) {
  Application *application = Application::find();
  return application != nullptr && application->auxData.remove(extension, type, handler) ? 1 : 0;
}

// ---- page views

DocHandle docOfView(ViewHandle handle) {
  const PageView *view = viewOf(handle);
  return view == nullptr ? nullptr : app().documents().handle(app().documentOf(*view));
}

void visibleRect(ViewHandle handle, tavrel::DeviceRect *visible) {
  if (PageView *view = viewOf(handle)) reference(visible) = view->visible();
}

int32_t pageNum(ViewHandle handle) {
  const PageView *view = viewOf(handle);
  return view == nullptr ? 0 : view->page();
}

void fetchDrawColor(ViewHandle handle, tavrel::ColorValue *color) {
  if (const PageView *view = viewOf(handle)) reference(color) = view->drawColor();
}

void applyDrawColor(ViewHandle handle, const tavrel::ColorValue *color) {
  if (PageView *view = viewOf(handle)) view->setDrawColor(reference(color));
}

void beginBatch(ViewHandle handle) {
  if (PageView *view = viewOf(handle)) view->batches().begin();
}

void endBatch(ViewHandle handle) {
  if (PageView *view = viewOf(handle)) view->batches().end();
}

void showPage(ViewHandle handle, int32_t page) {
  PageView *view = viewOf(handle);
  if (view == nullptr) return;
  view->showPage(page);
  // A plug-in turns to a page when it has changed what it shows there.
  if (!view->drawing() && !view->invalid()) view->invalidate();
}

void scrollToPoint(ViewHandle handle, int16_t x, int16_t y) {
  if (PageView *view = viewOf(handle)) view->scrollTo(x, y);
}

// A view is always drawn completely, so the area is ignored.
void refreshArea(ViewHandle handle, const tavrel::DeviceRect * /*area*/) {
  if (PageView *view = viewOf(handle)) view->refresh();
}

void registerPageDrawProc(Callback callback, void *clientData) {
  app().registerPageDraw(registrationOf(callback, clientData));
}

void pageTransform(ViewHandle handle, tavrel::FixedMatrix *matrix) {
  if (PageView *view = viewOf(handle)) reference(matrix) = view->transform();
}

void paintSelection(ViewHandle handle, tavrel::TextSelection selection) {
  if (PageView *view = viewOf(handle)) view->paint(selections().find(selection));
}

void outlineSelection(ViewHandle handle, tavrel::TextSelection selection) {
  if (PageView *view = viewOf(handle)) view->outline(selections().find(selection));
}

tavrel::TextSelection paintedSelection(ViewHandle handle, uint32_t index) {
  const PageView *view = viewOf(handle);
  return view == nullptr ? nullptr : view->painted(index);
}

Bool16 isInWindow(ViewHandle handle) {
  const PageView *view = viewOf(handle);
  return view != nullptr && view->inWindow() ? 1 : 0;
}

void highlightText(ViewHandle handle, tavrel::TextSelection selection) {
  if (PageView *view = viewOf(handle)) view->highlight(selections().find(selection));
}

// ---- the tool bar

BarHandle toolBar() {
  const Application *application = Application::find();
  return application == nullptr ? nullptr : application->toolBarHandle();
}

ButtonHandle findButton(BarHandle handle, Atom name) {
  ToolBar *bar = barOf(handle);
  return bar == nullptr ? nullptr : bar->handles().handle(bar->find(name));
}

void insertButton(BarHandle handle, ButtonHandle button, Bool16 before, ButtonHandle beside) {
  if (ToolBar *bar = barOf(handle))
    bar->insert(buttonOf(button), before != 0, beside == nullptr ? nullptr : &buttonOf(beside));
}

Bool16 hasSpace(BarHandle handle, int32_t buttons, int32_t separators) {
  const ToolBar *bar = barOf(handle);
  return bar != nullptr && bar->hasSpace(buttons, separators) ? 1 : 0;
}

void updateButtonStates(BarHandle handle) {
  if (ToolBar *bar = barOf(handle)) bar->updateStates();
}

ButtonHandle createButton(Atom name, tavrel::Bitmap icon, int32_t reserved1, int32_t reserved2) {
  if (reserved1 != 0 || reserved2 != 0) throw HostError(errBadArgument, "reserved arguments of a button are not 0");
  Runtime::current().atoms.name(name); // throws for an unknown atom
  ToolBar &bar = theBar();
  return bar.handles().handle(&bar.create(name, icon, Runtime::current().running()));
}

void attachAction(ButtonHandle button, Callback callback, void *clientData) {
  theBar().attachAction(buttonOf(button), registrationOf(callback, clientData));
}

void attachEnabledTest(ButtonHandle button, Callback callback, void *clientData) {
  theBar().attachTest(buttonOf(button), registrationOf(callback, clientData));
}

void attachTip(ButtonHandle button, const char *text) { buttonOf(button).tip = text == nullptr ? "" : text; }

void attachKey(ButtonHandle button, const char *key) {
  buttonOf(button).setKey(key == nullptr ? "" : key);
  theBar().changed();
}

void attachLabel(ButtonHandle button, const char *text) {
  buttonOf(button).label = text == nullptr ? "" : text;
  theBar().changed();
}

void setAttribute(ButtonHandle button, int32_t attribute) {
  if (attribute != tavrel::buttonInternal && attribute != tavrel::buttonAlsoInBrowser)
    throw HostError(errBadArgument, "no button attribute " + std::to_string(attribute));
  buttonOf(button).attributes.insert(attribute);
  theBar().changed(); // the button may become visible
}

void detachButton(ButtonHandle button) { theBar().detach(buttonOf(button)); }

// ---- status line

void setStatusText(ExtensionID extension, const char *text) {
  Runtime::current().extensions.require(extension);
  app().setStatusText(extension, text == nullptr ? "" : text);
}

// ---- open parameters, files, auxiliary data, pages

const char *openParameters(DocHandle handle) {
  ViewerDocument &document = documentOf(handle);
  document.parametersRead = true;
  return document.parameters.empty() ? nullptr : document.parameters.c_str();
}

const char *file(DocHandle handle) { return documentOf(handle).file.c_str(); }

Bool16 attachAuxData(DocHandle handle, Atom type, const void *data, uint32_t length) {
  documentOf(handle); // throws for an unknown handle
  // A copy: a handler may not change the bytes of the caller.
  const auto *bytes = static_cast<const char *>(length == 0 ? nullptr : &reference(static_cast<const char *>(data)));
  const std::vector<char> copy(bytes, bytes + length);
  return app().auxData.deliver(type, copy, handle) ? 1 : 0;
}

int32_t pageCount(ViewHandle handle) {
  const PageView *view = viewOf(handle);
  return view == nullptr ? 0 : app().documentOf(*view)->model->pageCount();
}

void markPages(ExtensionID extension, DocHandle handle, const int32_t *pages, uint32_t count) {
  Runtime::current().extensions.require(extension);
  app().markPages(extension, documentOf(handle), {count == 0 ? nullptr : &reference(pages), count});
}

// ---- lists

void setList(ExtensionID extension, DocHandle handle, const char *title, uint32_t rows, Callback row, Callback chosen) {
  Runtime::current().extensions.require(extension);
  PluginList list;
  list.title = title == nullptr ? "" : title;
  list.rows = rows;
  if (rows > 0) {
    list.row = registrationOf(row, nullptr);
    list.chosen = registrationOf(chosen, nullptr);
  }
  documentOf(handle).lists.set(extension, std::move(list));
  app().notifyStatus();
}

void setListRow(ExtensionID extension, DocHandle handle, uint32_t row) {
  Runtime::current().extensions.require(extension);
  documentOf(handle).lists.setRow(extension, row == tavrel::noRow ? std::nullopt : std::optional(row));
  app().notifyStatus();
}

Table build() {
  namespace View = ::TavrelView;
  Table table("TavrelView", View::operations);
  table.provide<showAlert>(View::Alert);
  table.provideBare<frontDoc>(View::GetFrontDoc);
  table.provideBare<toolBar>(View::GetToolBar);
  table.provide<registerNotification>(View::RegisterNotification);
  table.provide<modelDoc>(View::DocGetModelDoc);
  table.provide<pageView>(View::DocGetPageView);
  table.provide<docOfView>(View::PageViewGetDoc);
  table.provide<visibleRect>(View::PageViewGetVisibleRect);
  table.provide<pageNum>(View::PageViewGetPageNum);
  table.provide<fetchDrawColor>(View::PageViewFetchDrawColor);
  table.provide<applyDrawColor>(View::PageViewApplyDrawColor);
  table.provide<beginBatch>(View::PageViewBeginBatch);
  table.provide<endBatch>(View::PageViewEndBatch);
  table.provide<showPage>(View::PageViewShowPage);
  table.provide<scrollToPoint>(View::PageViewScrollToPoint);
  table.provide<refreshArea>(View::PageViewRefreshArea);
  table.provide<registerPageDrawProc>(View::RegisterPageDrawProc);
  table.provide<pageTransform>(View::PageViewGetPageTransform);
  table.provideBare<modifierKeys>(View::GetModifierKeyState);
  table.provide<findButton>(View::ToolBarFindButton);
  table.provide<insertButton>(View::ToolBarInsertButton);
  table.provide<hasSpace>(View::ToolBarHasSpace);
  table.provide<updateButtonStates>(View::ToolBarUpdateButtonStates);
  table.provide<createButton>(View::ToolButtonCreate);
  table.provide<attachAction>(View::ToolButtonAttachAction);
  table.provide<attachEnabledTest>(View::ToolButtonAttachEnabledTest);
  table.provide<attachTip>(View::ToolButtonAttachTip);
  table.provide<paintSelection>(View::PageViewPaintSelection);
  table.provide<highlightText>(View::PageViewHighlightText);
  table.provideBare<hasAuxDataHandler>(View::HasAuxDataHandler);
  table.provide<registerAuxDataHandler>(View::RegisterAuxDataHandler);
  table.provideBare<unregisterAuxDataHandler>(View::UnregisterAuxDataHandler);
  table.provide<setAttribute>(View::ToolButtonSetAttribute);
  table.provide<detachButton>(View::ToolButtonDetach);
  table.provide<setStatusText>(View::SetStatusText);
  table.provide<openParameters>(View::DocGetOpenParameters);
  table.provide<file>(View::DocGetFile);
  table.provide<attachAuxData>(View::DocAttachAuxData);
  table.provide<pageCount>(View::PageViewGetPageCount);
  table.provide<markPages>(View::DocMarkPages);
  table.provide<outlineSelection>(View::PageViewOutlineSelection);
  table.provide<paintedSelection>(View::PageViewGetPaintedSelection);
  table.provide<isInWindow>(View::PageViewIsInWindow);
  table.provide<attachKey>(View::ToolButtonAttachKey);
  table.provide<attachLabel>(View::ToolButtonAttachLabel);
  table.provide<setList>(View::DocSetList);
  table.provide<setListRow>(View::DocSetListRow);
  return table;
}

} // namespace

tavrel::HFT viewTable() {
  static Table table = build();
  return table.entries();
}

} // namespace host
