// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/textfield.h"

#include <Xm/TextF.h>
#include <Xm/Transfer.h>

#include <algorithm>
#include <utility>

#include "viewer/model/onelinetext.h"
#include "viewer/window/clipboard.h"
#include "viewer/window/motif.h"

namespace viewer {
namespace {

constexpr size_t longestText = 4096; // bytes: that of a file's name

} // namespace

TextField::TextField(::Widget field, Shows shows, unsigned number) : field_(field), shows_(shows), number_(number) {
  XtVaSetValues(field, XmNmaxLength, static_cast<int>(longestText), nullptr);
  XtAddCallback(field, const_cast<char *>(XmNmodifyVerifyCallback), verifyChange, this);
  if (shows == Shows::stars) XtAddCallback(field, const_cast<char *>(XmNconvertCallback), refuse, nullptr);
}

std::string TextField::text() const {
  if (shows_ == Shows::text) return textOf(field_);
  std::string all;
  for (const std::string &character : hidden_)
    all += character;
  return all;
}

void TextField::copy(::Time time) {
  if (shows_ == Shows::stars) return;
  char *selected = XmTextFieldGetSelection(field_);
  if (selected != nullptr && *selected != '\0') copyToClipboard(field_, selected, time);
  XtFree(selected);
}

void TextField::cut(::Time time) {
  if (shows_ == Shows::stars) return;
  copy(time);
  byUser([this] { XmTextFieldRemove(field_); });
}

// Replaces the selected text, or inserts at the cursor.
void TextField::insert(const std::string &text) {
  XmTextPosition left = 0, right = 0;
  if (XmTextFieldGetSelectionPosition(field_, &left, &right) == False || left == right)
    left = right = XmTextFieldGetInsertionPosition(field_);
  std::string_view lines = firstBytes(text, longestText);
  lines = lines.substr(0, lines.find_last_not_of("\r\n") + 1); // what is copied from a terminal often ends a line
  std::string fits = oneLine(lines);
  const size_t capacity = longestText - std::min(longestText, this->text().size());
  fits = std::string(firstBytes(fits, capacity + static_cast<size_t>(right - left)));
  if (!fits.empty()) byUser([&] { XmTextFieldReplace(field_, left, right, fits.data()); });
}

void TextField::selectAll(::Time time) { XmTextFieldSetSelection(field_, 0, XmTextFieldGetLastPosition(field_), time); }

void TextField::replace(const std::string &text) {
  byUser([&] { XmTextFieldSetString(field_, std::string(text).data()); });
  XmTextFieldSetInsertionPosition(field_, XmTextFieldGetLastPosition(field_));
}

void TextField::verifyChange(::Widget /*field*/, XtPointer self, XtPointer change) {
  guarded([&] { static_cast<TextField *>(self)->verify(*static_cast<XmTextVerifyCallbackStruct *>(change)); });
}

// Neither the primary selection nor a drag gets the stars.
void TextField::refuse(::Widget /*field*/, XtPointer /*data*/, XtPointer conversion) {
  static_cast<XmConvertCallbackStruct *>(conversion)->status = XmCONVERT_REFUSE;
}

void TextField::byUser(const std::function<void()> &change) {
  const bool before = std::exchange(byUser_, true);
  change();
  byUser_ = before;
}

EditHistory::State TextField::now() const {
  return {text(), static_cast<int>(XmTextFieldGetInsertionPosition(field_))};
}

void TextField::show(const std::optional<EditHistory::State> &state) {
  if (!state) return;
  undoing_ = true;
  XmTextFieldSetString(field_, std::string(state->text).data());
  XmTextFieldSetInsertionPosition(field_, state->cursor);
  undoing_ = false;
}

void TextField::verify(XmTextVerifyCallbackStruct &change) {
  const int length = change.text == nullptr || change.text->ptr == nullptr ? 0 : change.text->length;
  const std::string given = length == 0 ? "" : std::string(change.text->ptr, static_cast<size_t>(length));
  // Not longer than it was: the toolkit's text has no capacity for more. It has made it of characters.
  const std::string typed(firstBytes(oneLine(given), given.size()));
  if (!given.empty() && typed.empty()) { // the selected text stays
    change.doit = False;
    return;
  }
  const std::vector<std::string> characters = viewer::characters(typed);
  note(change, typed, characters.size());
  std::string shown = typed;
  if (shows_ == Shows::stars) {
    hide(change, characters);
    shown = std::string(characters.size(), '*');
  }
  if (length == 0) return;
  std::copy(shown.begin(), shown.end(), change.text->ptr);
  change.text->ptr[shown.size()] = '\0';
  change.text->length = static_cast<int>(shown.size());
}

void TextField::note(const XmTextVerifyCallbackStruct &change, const std::string &typed, size_t count) {
  using Kind = EditHistory::Kind;
  if (undoing_) return;
  if (change.event == nullptr && !byUser_) return history_.clear();
  const bool inserts = change.startPos == change.endPos && count == 1 && typed != " " && change.event != nullptr,
             deletes = count == 0 && change.endPos == change.startPos + 1 && change.event != nullptr;
  const bool follows = inserts ? change.startPos == next_ : change.endPos == next_ || change.startPos == next_;
  if (!follows) history_.separate();
  history_.note(now(), inserts ? Kind::typing : deletes ? Kind::deleting : Kind::other);
  next_ = change.startPos + static_cast<XmTextPosition>(count);
}

void TextField::hide(const XmTextVerifyCallbackStruct &change, const std::vector<std::string> &typed) {
  const auto begin = std::min(static_cast<size_t>(change.startPos), hidden_.size());
  const auto end = std::clamp(static_cast<size_t>(change.endPos), begin, hidden_.size());
  const auto at = hidden_.erase(hidden_.begin() + static_cast<std::ptrdiff_t>(begin),
                                hidden_.begin() + static_cast<std::ptrdiff_t>(end));
  hidden_.insert(at, typed.begin(), typed.end());
}

} // namespace viewer
