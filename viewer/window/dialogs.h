// The dialogs that ask or tell one thing: alerts, a password, a file, a text to read.
#pragma once

#include <Xm/Xm.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "host/view/alerts.h"

namespace viewer {

class MainWindow;

class Dialogs {
public:
  explicit Dialogs(MainWindow &window) : window_(window) {}
  Dialogs(const Dialogs &) = delete;
  Dialogs &operator=(const Dialogs &) = delete;

  /// Shows an alert, handles events until it is answered, and gives the number of the button, from 1; 0 where there was
  /// none. Closed without an answer, it is answered with its last button.
  int32_t alert(const host::Alert &alert);
  /// Asks for a password; `take` gets it, unless the dialog is cancelled.
  void askPassword(const std::string &question, const std::function<void(const std::string &password)> &take);
  void askFile(const std::function<void(const std::string &file)> &take);
  /// Shows a text to read; the one that is shown already under that title comes to front instead.
  void tell(const std::string &title, const std::string &text);

private:
  MainWindow &window_;
  std::string directory_; ///< where the last file was chosen
  /// Those on the screen, by their titles. Shared with the widgets, which the toolkit destroys later than this object.
  std::shared_ptr<std::map<std::string, ::Widget>> informations_ = std::make_shared<std::map<std::string, ::Widget>>();
};

} // namespace viewer
