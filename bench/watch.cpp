// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Starts a viewer on an otherwise empty display and reads the root window, about once a millisecond, until the viewer's
// page or its hits are visible. Called by bench/viewers, which starts the display.
//
//   watch settled PICTURE MS COMMAND...   waits until the screen has not changed for MS, writes it to PICTURE (PPM) and
//                                         prints the page's box and how many pixels of text and of hits it has
//   watch shown   PICTURE MS COMMAND...   waits until the text of PICTURE's page is shown on white
//   watch hits    PICTURE MS COMMAND...   waits until half of the coloured pixels of PICTURE's page are shown
//
// The latter two print the milliseconds from just before exec and the kilobytes that the viewer and what it started
// have resident MS later. The viewer is killed afterwards, and its windows are destroyed when this program ends.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <map>
#include <stdexcept>
#include <string>
#include <sys/ipc.h>
#include <sys/prctl.h>
#include <sys/shm.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds timeout{30000};

struct Rectangle {
  int x = 0, y = 0, width = 0, height = 0;
  bool contains(int px, int py) const { return px >= x && px < x + width && py >= y && py < y + height; }
};

/// The pixels of a part of the screen, 0xRRGGBB.
struct Picture {
  Rectangle part;
  std::vector<uint32_t> pixels;
  uint32_t at(int x, int y) const { return pixels[size_t(y - part.y) * size_t(part.width) + size_t(x - part.x)]; }
};

int lowest(uint32_t pixel) { return int(std::min({pixel >> 16 & 255, pixel >> 8 & 255, pixel & 255})); }
int highest(uint32_t pixel) { return int(std::max({pixel >> 16 & 255, pixel >> 8 & 255, pixel & 255})); }
bool isDark(uint32_t pixel) { return highest(pixel) < 96; }
bool isWhite(uint32_t pixel) { return lowest(pixel) >= 250; }
bool isColoured(uint32_t pixel) { return highest(pixel) - lowest(pixel) > 60; }

class ScreenView {
public:
  ScreenView() {
    if (display_ == nullptr) throw std::runtime_error("no display");
    const int screen = DefaultScreen(display_);
    bounds_ = {0, 0, DisplayWidth(display_, screen), DisplayHeight(display_, screen)};
    if (XShmQueryExtension(display_) == 0 || DefaultDepth(display_, screen) != 24)
      throw std::runtime_error("needs a display of 24 bits with MIT-SHM");
    segment_.shmid = shmget(IPC_PRIVATE, size_t(bounds_.width) * size_t(bounds_.height) * 4, IPC_CREAT | 0600);
    segment_.shmaddr = static_cast<char *>(shmat(segment_.shmid, nullptr, 0));
    if (segment_.shmid < 0 || segment_.shmaddr == reinterpret_cast<char *>(-1)) throw std::runtime_error("no memory");
    segment_.readOnly = False;
    XShmAttach(display_, &segment_);
    XSync(display_, False);
    shmctl(segment_.shmid, IPC_RMID, nullptr); // removed when the last process detaches
  }
  ScreenView(const ScreenView &) = delete;
  ~ScreenView() {
    shmdt(segment_.shmaddr);
    XCloseDisplay(display_);
  }

  Rectangle bounds() const { return bounds_; }

  Picture take(const Rectangle &part) {
    XImage *image = XShmCreateImage(display_, DefaultVisual(display_, DefaultScreen(display_)), 24, ZPixmap,
                                    segment_.shmaddr, &segment_, unsigned(part.width), unsigned(part.height));
    if (image == nullptr || image->bits_per_pixel != 32) throw std::runtime_error("needs 32 bits for a pixel");
    XShmGetImage(display_, DefaultRootWindow(display_), image, part.x, part.y, AllPlanes);
    Picture picture{part, std::vector<uint32_t>(size_t(part.width) * size_t(part.height))};
    std::memcpy(picture.pixels.data(), segment_.shmaddr, picture.pixels.size() * sizeof(uint32_t));
    for (uint32_t &pixel : picture.pixels)
      pixel &= 0xFFFFFF;
    XFree(image); // only the structure: the segment owns the pixels
    return picture;
  }

  /// How many windows are visible. Motif leaves an InputOnly window, which is not counted.
  unsigned windows() {
    ::Window root = 0, parent = 0, *children = nullptr;
    unsigned count = 0, visible = 0;
    XQueryTree(display_, DefaultRootWindow(display_), &root, &parent, &children, &count);
    for (unsigned i = 0; i < count; ++i) {
      XWindowAttributes attributes{};
      if (XGetWindowAttributes(display_, children[i], &attributes) != 0 && attributes.c_class == InputOutput &&
          attributes.map_state == IsViewable)
        ++visible;
    }
    if (children != nullptr) XFree(children);
    return visible;
  }

private:
  Display *display_ = XOpenDisplay(nullptr);
  Rectangle bounds_;
  XShmSegmentInfo segment_{};
};

/// The box around the largest connected white area: a page, without the gaps between and around pages.
Rectangle pageOf(const Picture &picture) {
  const int width = picture.part.width, height = picture.part.height;
  std::vector<bool> visited(picture.pixels.size());
  std::vector<int> left;
  Rectangle largest;
  size_t most = 0;
  const auto visit = [&](int x, int y) {
    const size_t index = size_t(y) * size_t(width) + size_t(x);
    if (visited[index] || !isWhite(picture.pixels[index])) return;
    visited[index] = true;
    left.push_back(int(index));
  };
  for (int start = 0; start < width * height; ++start) {
    size_t count = 0;
    int x0 = width, y0 = height, x1 = 0, y1 = 0;
    visit(start % width, start / width);
    for (; !left.empty(); ++count) {
      const int x = left.back() % width, y = left.back() / width;
      left.pop_back();
      x0 = std::min(x0, x), y0 = std::min(y0, y), x1 = std::max(x1, x), y1 = std::max(y1, y);
      if (x > 0) visit(x - 1, y);
      if (x + 1 < width) visit(x + 1, y);
      if (y > 0) visit(x, y - 1);
      if (y + 1 < height) visit(x, y + 1);
    }
    if (count > most) most = count, largest = {x0, y0, x1 - x0 + 1, y1 - y0 + 1};
  }
  return largest;
}

struct Point {
  int x, y;
};

/// Pixels of the reference that are of a kind, and how many of them may differ on the screen.
struct Group {
  bool (*kind)(uint32_t);
  std::vector<Point> points;
  size_t mayMiss;

  /// Tests the points within `picture`. On a part of the screen, false is final and true is not.
  bool holds(const Picture &picture) const {
    size_t missing = 0;
    for (const Point &point : points)
      if (picture.part.contains(point.x, point.y) && !kind(picture.at(point.x, point.y)) && ++missing > mayMiss)
        return false;
    return true;
  }
};

std::vector<Point> pointsOf(const Picture &picture, const Rectangle &page, bool (*kind)(uint32_t)) {
  std::vector<Point> points;
  for (int y = page.y; y < page.y + page.height; ++y)
    for (int x = page.x; x < page.x + page.width; ++x)
      if (kind(picture.at(x, y))) points.push_back({x, y});
  return points;
}

/// The white pixels of the page that are at most two away from one of its dark ones.
std::vector<Point> whiteAround(const Picture &picture, const Rectangle &page, const std::vector<Point> &dark) {
  std::vector<bool> near(picture.pixels.size());
  for (const Point &point : dark)
    for (int y = point.y - 2; y <= point.y + 2; ++y)
      for (int x = point.x - 2; x <= point.x + 2; ++x)
        if (page.contains(x, y)) near[size_t(y) * size_t(picture.part.width) + size_t(x)] = true;
  std::vector<Point> points = pointsOf(picture, page, isWhite);
  std::erase_if(points, [&](const Point &point) {
    return !near[size_t(point.y) * size_t(picture.part.width) + size_t(point.x)];
  });
  return points;
}

class Criterion {
public:
  explicit Criterion(std::vector<Group> groups) : groups_(std::move(groups)) {
    int x0 = INT32_MAX, y0 = INT32_MAX, x1 = 0, y1 = 0;
    std::map<int, size_t> inBand;
    for (const Group &group : groups_) {
      if (group.points.size() < 20) throw std::runtime_error("the picture has nothing to wait for");
      for (const Point &point : group.points) {
        x0 = std::min(x0, point.x), y0 = std::min(y0, point.y);
        x1 = std::max(x1, point.x), y1 = std::max(y1, point.y);
        ++inBand[point.y / bandHeight];
      }
    }
    bounds_ = {x0, y0, x1 - x0 + 1, y1 - y0 + 1};
    const auto fullest = std::max_element(inBand.begin(), inBand.end(),
                                          [](const auto &one, const auto &other) { return one.second < other.second; });
    const int top = std::max(y0, fullest->first * bandHeight);
    band_ = {x0, top, bounds_.width, std::min(bandHeight, y1 + 1 - top)};
  }

  /// Reads only a few rows first, so that the server has time for the viewer.
  bool holds(ScreenView &screen) const { return holds(screen.take(band_)) && holds(screen.take(bounds_)); }

private:
  static constexpr int bandHeight = 16;
  std::vector<Group> groups_;
  Rectangle bounds_, band_;

  bool holds(const Picture &picture) const {
    return std::all_of(groups_.begin(), groups_.end(), [&](const Group &group) { return group.holds(picture); });
  }
};

Criterion shown(const Picture &reference) {
  const Rectangle page = pageOf(reference);
  std::vector<Point> dark = pointsOf(reference, page, isDark);
  std::vector<Point> white = whiteAround(reference, page, dark);
  const size_t darkCount = dark.size(), whiteCount = white.size();
  return Criterion({{isDark, std::move(dark), darkCount / 100}, {isWhite, std::move(white), whiteCount / 100}});
}

Criterion hits(const Picture &reference) {
  std::vector<Point> coloured = pointsOf(reference, pageOf(reference), isColoured);
  const size_t count = coloured.size();
  return Criterion({{isColoured, std::move(coloured), count / 2}});
}

void write(const char *path, const Picture &picture) {
  FILE *file = std::fopen(path, "wb");
  if (file == nullptr) throw std::runtime_error(std::string("cannot write ") + path);
  std::fprintf(file, "P6\n%d %d\n255\n", picture.part.width, picture.part.height);
  for (const uint32_t pixel : picture.pixels)
    for (const int shift : {16, 8, 0})
      std::fputc(int(pixel >> shift & 255), file);
  if (std::fclose(file) != 0) throw std::runtime_error(std::string("cannot write ") + path);
}

/// A picture that was written by `write`.
Picture read(const char *path, const Rectangle &bounds) {
  FILE *file = std::fopen(path, "rb");
  if (file == nullptr) throw std::runtime_error(std::string("cannot read ") + path);
  Picture picture;
  bool right = std::fscanf(file, "P6 %d %d 255", &picture.part.width, &picture.part.height) == 2 &&
               std::fgetc(file) == '\n' && picture.part.width == bounds.width && picture.part.height == bounds.height;
  for (int left = right ? bounds.width * bounds.height : 0; left > 0; --left) {
    uint32_t pixel = 0;
    for (int channel = 0; channel < 3; ++channel) {
      const int value = std::fgetc(file);
      right = right && value != EOF;
      pixel = pixel << 8 | uint32_t(value & 255);
    }
    picture.pixels.push_back(pixel);
  }
  std::fclose(file);
  if (!right) throw std::runtime_error(std::string(path) + " is not a picture of this screen");
  return picture;
}

/// The parents of all processes.
std::map<pid_t, pid_t> processes() {
  std::map<pid_t, pid_t> parents;
  DIR *folder = opendir("/proc");
  while (const dirent *entry = readdir(folder)) {
    const pid_t process = std::atoi(entry->d_name);
    if (process == 0) continue;
    FILE *file = std::fopen(("/proc/" + std::to_string(process) + "/status").c_str(), "r");
    if (file == nullptr) continue; // has just ended
    char line[256];
    int parent = 0;
    while (std::fgets(line, sizeof line, file) != nullptr)
      if (std::sscanf(line, "PPid: %d", &parent) == 1) parents[process] = parent;
    std::fclose(file);
  }
  closedir(folder);
  return parents;
}

std::vector<pid_t> descendants() {
  const std::map<pid_t, pid_t> parents = processes();
  std::vector<pid_t> found = {getpid()};
  for (size_t i = 0; i < found.size(); ++i)
    for (const auto &[process, parent] : parents)
      if (parent == found[i]) found.push_back(process);
  found.erase(found.begin());
  return found;
}

long residentKilobytes() {
  long sum = 0;
  for (const pid_t process : descendants()) {
    FILE *file = std::fopen(("/proc/" + std::to_string(process) + "/status").c_str(), "r");
    if (file == nullptr) continue;
    char line[256];
    long kilobytes = 0;
    while (std::fgets(line, sizeof line, file) != nullptr)
      if (std::sscanf(line, "VmRSS: %ld", &kilobytes) == 1) sum += kilobytes;
    std::fclose(file);
  }
  return sum;
}

class Viewer {
public:
  explicit Viewer(char **command) : started_(Clock::now()), process_(fork()) {
    if (process_ < 0) throw std::runtime_error("cannot fork");
    if (process_ > 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setpgid(0, 0);
    dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    execvp(command[0], command);
    std::perror(command[0]);
    _exit(127);
  }
  Viewer(const Viewer &) = delete;
  ~Viewer() {
    // Its child processes may have separate groups. This process is the subreaper: it becomes the parent of orphans.
    do {
      for (const pid_t process : descendants())
        kill(process, SIGKILL);
    } while (waitpid(-1, nullptr, 0) > 0);
  }

  double age() const { return std::chrono::duration<double, std::milli>(Clock::now() - started_).count(); }

  void mustLive() const {
    siginfo_t information{};
    if (waitid(P_PID, id_t(process_), &information, WEXITED | WNOHANG | WNOWAIT) != 0 || information.si_pid != 0)
      throw std::runtime_error("the viewer has ended");
    if (age() > double(timeout.count())) throw std::runtime_error("timed out");
  }

private:
  Clock::time_point started_;
  pid_t process_;
};

void settle(ScreenView &screen, const char *path, milliseconds quiet, char **command) {
  const Picture empty = screen.take(screen.bounds());
  const Viewer viewer(command);
  Picture last = empty;
  for (Clock::time_point since = Clock::now(); last.pixels == empty.pixels || Clock::now() - since < quiet;) {
    std::this_thread::sleep_for(milliseconds(20));
    viewer.mustLive();
    Picture now = screen.take(screen.bounds());
    if (now.pixels == last.pixels) continue;
    last = std::move(now);
    since = Clock::now();
  }
  write(path, last);
  const Rectangle page = pageOf(last);
  std::printf("page %dx%d+%d+%d, %zu dark, %zu coloured\n", page.width, page.height, page.x, page.y,
              pointsOf(last, page, isDark).size(), pointsOf(last, page, isColoured).size());
}

void measure(ScreenView &screen, const Criterion &criterion, milliseconds later, char **command) {
  if (criterion.holds(screen)) throw std::runtime_error("the picture is shown before the viewer is started");
  const Viewer viewer(command);
  while (!criterion.holds(screen)) {
    std::this_thread::sleep_for(milliseconds(1));
    viewer.mustLive();
  }
  const double time = viewer.age();
  std::this_thread::sleep_for(later);
  viewer.mustLive();
  std::printf("%.1f %ld\n", time, residentKilobytes());
}

void awaitNoMoreWindowsThan(unsigned count, ScreenView &screen) {
  for (const Clock::time_point since = Clock::now(); screen.windows() > count;) {
    if (Clock::now() - since > timeout) throw std::runtime_error("the viewer's windows stay");
    std::this_thread::sleep_for(milliseconds(1));
  }
}

} // namespace

int main(int count, char **arguments) {
  const std::map<std::string, Criterion (*)(const Picture &)> criteria = {{"shown", shown}, {"hits", hits}};
  const std::string what = count > 4 ? arguments[1] : "";
  const auto criterion = criteria.find(what);
  if (what != "settled" && criterion == criteria.end()) {
    std::fputs("usage: watch settled|shown|hits PICTURE MILLISECONDS COMMAND...\n", stderr);
    return 2;
  }
  const char *path = arguments[2];
  const milliseconds wait(std::atoi(arguments[3]));
  char **command = arguments + 4;
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  XSetErrorHandler([](Display *, XErrorEvent *) { return 0; }); // a window may be destroyed during a query
  try {
    ScreenView screen;
    const unsigned windows = screen.windows();
    if (what == "settled")
      settle(screen, path, wait, command);
    else
      measure(screen, criterion->second(read(path, screen.bounds())), wait, command);
    awaitNoMoreWindowsThan(windows, screen);
  } catch (const std::exception &error) {
    std::fprintf(stderr, "watch: %s\n", error.what());
    return 1;
  }
}
