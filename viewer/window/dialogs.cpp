// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Each dialog is created when it is shown and destroyed when it is closed.
#include "viewer/window/dialogs.h"

#include <X11/Shell.h>
#include <Xm/FileSB.h>
#include <Xm/MessageB.h>
#include <Xm/Protocols.h>
#include <Xm/SelectioB.h>
#include <Xm/Text.h>
#include <Xm/TextF.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <vector>

#include "viewer/window/mainwindow.h"
#include "viewer/window/messagesymbol.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

void setTitle(::Widget dialog, const std::string &title) {
  const MotifString text(title);
  XtVaSetValues(dialog, XmNdialogTitle, static_cast<XmString>(text), nullptr);
}

// Breaks long lines: a message box is as wide as its longest line.
std::string wrapped(const std::string &text) {
  constexpr size_t longest = 60;
  std::string result = text;
  size_t lineStart = 0, space = std::string::npos;
  for (size_t i = 0; i < result.size(); ++i) {
    if (result[i] == ' ') space = i;
    if (result[i] == '\n') lineStart = i + 1;
    if (i - lineStart < longest || i < lineStart || space == std::string::npos || space < lineStart) continue;
    result[space] = '\n';
    lineStart = space + 1;
  }
  return result;
}

void destroy(::Widget dialog) { XtDestroyWidget(XtParent(dialog)); }

// Destroys a dialog however it is closed, by a button or by the window manager.
void destroyWhenUnmapped(::Widget dialog) {
  whenever(dialog, XmNunmapCallback, [dialog](const XEvent *) { destroy(dialog); });
}

void hide(::Widget dialog, unsigned char child) {
  if (::Widget part = XmMessageBoxGetChild(dialog, child)) XtUnmanageChild(part);
}

unsigned char typeOf(int32_t icon) {
  switch (icon) {
  case tavrel::alertError:
    return XmDIALOG_ERROR;
  case tavrel::alertQuestion:
    return XmDIALOG_QUESTION;
  case tavrel::alertNote:
    return XmDIALOG_INFORMATION;
  default:
    return XmDIALOG_MESSAGE;
  }
}

// The three buttons of a message box, from left to right.
struct Slot {
  const char *label, *callback;
  unsigned char child;
};
const Slot slots[] = {{XmNokLabelString, XmNokCallback, XmDIALOG_OK_BUTTON},
                      {XmNcancelLabelString, XmNcancelCallback, XmDIALOG_CANCEL_BUTTON},
                      {XmNhelpLabelString, XmNhelpCallback, XmDIALOG_HELP_BUTTON}};

// The typed characters; the field shows a star for each of them.
class Hidden {
public:
  void verify(XmTextVerifyCallbackStruct &change) {
    const auto begin = std::min(static_cast<size_t>(change.startPos), characters_.size());
    const auto end = std::clamp(static_cast<size_t>(change.endPos), begin, characters_.size());
    std::vector<std::string> typed;
    for (int i = 0; change.text->ptr != nullptr && i < change.text->length; ++i) {
      const char c = change.text->ptr[i];
      constexpr unsigned char continues = 0x80, kind = 0xC0;
      if ((static_cast<unsigned char>(c) & kind) == continues && !typed.empty())
        typed.back() += c;
      else
        typed.emplace_back(1, c);
    }
    std::fill_n(change.text->ptr, typed.size(), '*');
    change.text->length = static_cast<int>(typed.size());
    const auto at = characters_.erase(characters_.begin() + static_cast<std::ptrdiff_t>(begin),
                                      characters_.begin() + static_cast<std::ptrdiff_t>(end));
    characters_.insert(at, typed.begin(), typed.end());
  }
  std::string text() const {
    std::string all;
    for (const std::string &character : characters_)
      all += character;
    return all;
  }

private:
  std::vector<std::string> characters_;
};

void hideTyped(::Widget /*field*/, XtPointer hidden, XtPointer change) {
  static_cast<Hidden *>(hidden)->verify(*static_cast<XmTextVerifyCallbackStruct *>(change));
}

} // namespace

int32_t Dialogs::alert(const host::Alert &alert) {
  char name[] = "alert";
  ::Widget box = XmCreateMessageDialog(window_.toolkit().shell(), name, nullptr, 0);
  const MotifString message(wrapped(alert.message));
  XtVaSetValues(box, XmNdialogType, typeOf(alert.icon), XmNmessageString, static_cast<XmString>(message),
                XmNdialogStyle, XmDIALOG_FULL_APPLICATION_MODAL, nullptr);
  showSymbol(box, alert.icon, window_.toolkit().scale());
  setTitle(box, "Tavrel");

  const auto count =
      std::count_if(alert.buttons.begin(), alert.buttons.end(), [](const auto &label) { return label.has_value(); });
  int32_t answer = 0, last = 0;
  bool answered = false;
  for (size_t i = 0; i < alert.buttons.size(); ++i) {
    const bool onlyWayOut = count == 0 && i == 0;
    if (!alert.buttons[i] && !onlyWayOut) {
      hide(box, slots[i].child);
      continue;
    }
    const int32_t number = onlyWayOut ? 0 : static_cast<int32_t>(i) + 1;
    last = number;
    const MotifString label(alert.buttons[i].value_or("OK"));
    XtVaSetValues(box, slots[i].label, static_cast<XmString>(label), nullptr);
    whenever(box, slots[i].callback, [&answer, &answered, number](const XEvent *) {
      answer = number;
      answered = true;
    });
  }
  whenever(box, XmNunmapCallback, [&answered, &answer, &last](const XEvent *) {
    if (answered) return;
    answer = last;
    answered = true;
  });
  XtManageChild(box);
  if (alert.beep) XBell(XtDisplay(box), 0);
  window_.loop([&] { return answered; });
  if (!answered) answer = last; // the viewer ends
  answered = true;
  destroy(box);
  return answer;
}

void Dialogs::askPassword(const std::string &question, const std::function<void(const std::string &)> &take) {
  char name[] = "password";
  ::Widget box = XmCreatePromptDialog(window_.toolkit().shell(), name, nullptr, 0);
  const MotifString text(question);
  XtVaSetValues(box, XmNselectionLabelString, static_cast<XmString>(text), XmNdialogStyle,
                XmDIALOG_FULL_APPLICATION_MODAL, nullptr);
  setTitle(box, "Password");
  XtUnmanageChild(XmSelectionBoxGetChild(box, XmDIALOG_HELP_BUTTON));
  ::Widget field = XmSelectionBoxGetChild(box, XmDIALOG_TEXT);
  const auto hidden = std::make_shared<Hidden>();
  XtAddCallback(field, const_cast<char *>(XmNmodifyVerifyCallback), hideTyped, hidden.get());
  whenever(box, XmNokCallback, [box, hidden, take](const XEvent *) {
    const std::string password = hidden->text();
    destroy(box);
    take(password);
  });
  whenever(box, XmNcancelCallback, [box, hidden](const XEvent *) { destroy(box); });
  destroyWhenUnmapped(box);
  XtManageChild(box);
}

void Dialogs::askFile(const std::function<void(const std::string &)> &take) {
  char name[] = "openFile";
  ::Widget box = XmCreateFileSelectionDialog(window_.toolkit().shell(), name, nullptr, 0);
  const std::string directory = directory_.empty() ? std::filesystem::current_path().string() : directory_;
  const MotifString pattern("*.pdf"), shown(directory), open("Open");
  XtVaSetValues(box, XmNdirectory, static_cast<XmString>(shown), XmNpattern, static_cast<XmString>(pattern),
                XmNokLabelString, static_cast<XmString>(open), XmNdialogStyle, XmDIALOG_FULL_APPLICATION_MODAL,
                nullptr);
  setTitle(box, "Open");
  XtUnmanageChild(XmFileSelectionBoxGetChild(box, XmDIALOG_HELP_BUTTON));
  ::Widget field = XmFileSelectionBoxGetChild(box, XmDIALOG_TEXT);
  whenever(box, XmNokCallback, [this, box, field, take](const XEvent *) {
    char *chosen = XmTextFieldGetString(field);
    const std::string file = chosen == nullptr ? "" : chosen;
    XtFree(chosen);
    if (file.empty() || file.back() == '/') return;
    directory_ = std::filesystem::path(file).parent_path();
    destroy(box);
    take(file);
  });
  whenever(box, XmNcancelCallback, [box](const XEvent *) { destroy(box); });
  destroyWhenUnmapped(box);
  XtManageChild(box);
}

void Dialogs::showInformation(const std::string &title, const std::string &text) {
  if (const auto open = informations_->find(title); open != informations_->end()) {
    XRaiseWindow(XtDisplay(open->second), XtWindow(XtParent(open->second)));
    return;
  }
  char name[] = "information";
  ::Widget box = XmCreateInformationDialog(window_.toolkit().shell(), name, nullptr, 0);
  const MotifString message(wrapped(text));
  XtVaSetValues(box, XmNmessageString, static_cast<XmString>(message), XmNdialogStyle, XmDIALOG_MODELESS, nullptr);
  showSymbol(box, tavrel::alertNote, window_.toolkit().scale());
  setTitle(box, title);
  hide(box, XmDIALOG_CANCEL_BUTTON);
  hide(box, XmDIALOG_HELP_BUTTON);
  whenever(box, XmNokCallback, [box](const XEvent *) { destroy(box); });
  destroyWhenUnmapped(box);
  (*informations_)[title] = box;
  whenever(box, XmNdestroyCallback,
           [title, informations = informations_](const XEvent *) { informations->erase(title); });
  XtManageChild(box);
}

} // namespace viewer
