// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Texts and images from the X resource database.
#include "host/view/desktop.h"

#include <X11/Intrinsic.h>
#include <X11/Xlib.h>

#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <tuple>

#include "host/view/resources.h"

namespace host {
namespace {

// Requests for a bitmap with equal keys get the same one. Plug-ins use the same names for different images, so the key
// contains the bits.
struct BitmapKey {
  std::string resourceClass; ///< of the widget; empty: none
  std::string name, classOfName;
  uint32_t width, height;
  std::string bits; ///< the built-in ones
  bool operator<(const BitmapKey &other) const {
    const auto all = [](const BitmapKey &key) {
      return std::tie(key.resourceClass, key.name, key.classOfName, key.width, key.height, key.bits);
    };
    return all(*this) < all(other);
  }
};

std::string bytesOf(const unsigned char *bits, uint32_t width, uint32_t height) {
  if (bits == nullptr) return {};
  return {reinterpret_cast<const char *>(bits), size_t{height} * ((width + 7) / 8)};
}

} // namespace

struct WindowSystem::State {
  explicit State(::Widget topLevelWidget) : topLevel(topLevelWidget), resources(topLevelWidget) {}

  ::Widget topLevel;
  Resources resources;
  std::set<std::string> texts; // nodes: a text that was returned never moves
  std::map<BitmapKey, Pixmap> bitmaps;

  Pixmap load(const std::string &file) const {
    unsigned width = 0, height = 0;
    int hotX = 0, hotY = 0;
    Pixmap bitmap = 0;
    ::Display *display = XtDisplay(topLevel);
    if (XReadBitmapFile(display, XDefaultRootWindow(display), file.c_str(), &width, &height, &bitmap, &hotX, &hotY) ==
        BitmapSuccess)
      return bitmap;
    std::fprintf(stderr, "tavrel: %s: cannot be read as a bitmap file\n", file.c_str());
    return 0;
  }
};

WindowSystem::WindowSystem(tavrel::Widget topLevel) : state_(std::make_unique<State>(topLevel)) {}

WindowSystem::~WindowSystem() {
  for (const auto &[name, bitmap] : state_->bitmaps)
    XFreePixmap(XtDisplay(state_->topLevel), bitmap);
}

tavrel::Widget WindowSystem::topLevel() const { return state_->topLevel; }

void WindowSystem::registerClass(const char *className, const char *const *lines) {
  state_->resources.registerClass(className, lines);
}

const char *WindowSystem::text(tavrel::Widget widget, const char *key, const char *builtIn) {
  if (key == nullptr || *key == '\0') return builtIn;
  const auto found = state_->resources.find(widget, key, key);
  return found ? state_->texts.insert(*found).first->c_str() : builtIn;
}

tavrel::Bitmap WindowSystem::bitmap(tavrel::Widget widget, const char *name, const char *className,
                                    const unsigned char *bits, uint32_t width, uint32_t height) {
  constexpr uint32_t largest = 0x7FFF; // the limit of the X protocol
  if (name == nullptr || className == nullptr) throw HostError(tavrel::errBadArgument, "a bitmap without a name");
  if (width > largest || height > largest) throw HostError(tavrel::errBadArgument, "a bitmap that is too large");
  if (state_->topLevel == nullptr) return 0;
  const BitmapKey key{state_->resources.classOf(widget), name, className, width, height, bytesOf(bits, width, height)};
  if (const auto kept = state_->bitmaps.find(key); kept != state_->bitmaps.end()) return kept->second;

  Pixmap bitmap = 0;
  if (*name != '\0')
    if (const auto file = state_->resources.find(widget, name, className)) bitmap = state_->load(*file);
  if (bitmap == 0 && bits != nullptr && width > 0 && height > 0) {
    ::Display *display = XtDisplay(state_->topLevel);
    bitmap = XCreateBitmapFromData(display, XDefaultRootWindow(display), reinterpret_cast<const char *>(bits), width,
                                   height);
  }
  if (bitmap != 0) state_->bitmaps.emplace(key, bitmap);
  return bitmap;
}

} // namespace host
