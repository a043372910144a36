// The find dialog: what to look for, how, and what became of it. It stays open while the reader looks.
#pragma once

#include <Xm/Xm.h>

#include <string>

#include "viewer/model/session.h"

namespace viewer {

class MainWindow;

class FindDialog {
public:
  explicit FindDialog(MainWindow &window) : window_(window) {}
  FindDialog(const FindDialog &) = delete;
  FindDialog &operator=(const FindDialog &) = delete;

  void open();
  void close();
  bool isOpen() const;
  /// Brings the message up to date.
  void update();
  /// Looks for what the dialog says.
  void find(bool backwards);

private:
  void build();

  MainWindow &window_;
  ::Widget form_ = nullptr, field_ = nullptr, case_ = nullptr, words_ = nullptr, message_ = nullptr;
  std::string shownMessage_;
};

} // namespace viewer
