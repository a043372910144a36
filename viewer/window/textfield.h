// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A text field of the toolkit whose changes are checked before they happen, and can be undone.
#pragma once

#include <Xm/Xm.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "viewer/model/edithistory.h"

namespace viewer {

enum class Shows {
  text,
  stars, ///< one for each character; nothing of the field is copied, neither the text nor the stars
};

class TextField {
public:
  /// For an XmTextField, which must not be destroyed before this object. The number tells it from another one of the
  /// same address.
  TextField(::Widget field, Shows shows, unsigned number);
  TextField(const TextField &) = delete;
  TextField &operator=(const TextField &) = delete;

  unsigned number() const { return number_; }
  std::string text() const; ///< also behind stars
  void copy(::Time time);
  void cut(::Time time);
  /// Replaces the selected text, or inserts at the cursor. The text may be any bytes.
  void insert(const std::string &text);
  /// Replaces all of it.
  void replace(const std::string &text);
  void selectAll(::Time time);
  void undo() { show(history_.undo(now())); }
  void redo() { show(history_.redo(now())); }

private:
  static void verifyChange(::Widget field, XtPointer self, XtPointer change);
  static void refuse(::Widget field, XtPointer data, XtPointer conversion);
  void byUser(const std::function<void()> &change);
  EditHistory::State now() const;
  void show(const std::optional<EditHistory::State> &state);
  void verify(XmTextVerifyCallbackStruct &change);
  void note(const XmTextVerifyCallbackStruct &change, const std::string &typed, size_t count);
  void hide(const XmTextVerifyCallbackStruct &change, const std::vector<std::string> &typed);

  ::Widget field_;
  Shows shows_;
  unsigned number_;
  std::vector<std::string> hidden_; ///< the characters behind the stars
  EditHistory history_;
  XmTextPosition next_ = -1; ///< where typing continues
  bool byUser_ = false, undoing_ = false;
};

} // namespace viewer
