// What tests see of a running viewer: after every change a line of JSON with all of the model and the places of what
// can be pressed, to a socket on which a test listens. It only tells; tests press real buttons and keys.
#pragma once

#include <filesystem>
#include <string>

namespace viewer {

class MainWindow;

class TestSocket {
public:
  /// Throws host::HostError where nobody listens.
  TestSocket(MainWindow &window, const std::filesystem::path &path);
  ~TestSocket();
  TestSocket(const TestSocket &) = delete;
  TestSocket &operator=(const TestSocket &) = delete;

  /// Tells the state, if it is another one than before.
  void tell();

private:
  MainWindow &window_;
  int socket_;
  std::string last_;
};

} // namespace viewer
