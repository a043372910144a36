// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/passworddialog.h"

#include <Xm/SelectioB.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "viewer/window/dialogbox.h"
#include "viewer/window/motif.h"
#include "viewer/window/toolkit.h"

namespace viewer {
namespace {

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

void askForPassword(Toolkit &toolkit, const std::string &question,
                    const std::function<void(const std::string &)> &take) {
  char name[] = "password";
  ::Widget box = XmCreatePromptDialog(toolkit.shell(), name, nullptr, 0);
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
    destroyDialog(box);
    take(password);
  });
  whenever(box, XmNcancelCallback, [box, hidden](const XEvent *) { destroyDialog(box); });
  destroyWhenUnmapped(box);
  XtManageChild(box);
}

} // namespace viewer
