// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Texts and images from the X resource database.
#include "host/view/desktop.h"

#include <X11/Intrinsic.h>
#include <X11/IntrinsicP.h>
#include <X11/Shell.h>
#include <X11/ShellP.h>
#include <X11/Xlib.h>
#include <X11/Xresource.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace host {
namespace {

struct ResourceClass {
  std::string name;
  XrmDatabase fallbacks = nullptr;
};

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

// Looked up with quarks: a key may contain spaces and dots, which a resource name as text cannot.
std::optional<std::string> lookUp(XrmDatabase database, const std::string &className, const char *name,
                                  const char *classOfName) {
  if (database == nullptr) return std::nullopt;
  XrmQuark names[] = {XrmStringToQuark(className.c_str()), XrmStringToQuark(name), NULLQUARK};
  XrmQuark classes[] = {names[0], XrmStringToQuark(classOfName), NULLQUARK};
  XrmRepresentation type = NULLQUARK;
  XrmValue value{};
  if (XrmQGetResource(database, names, classes, &type, &value) == 0 || value.addr == nullptr) return std::nullopt;
  return std::string(static_cast<const char *>(value.addr));
}

} // namespace

struct WindowSystem::State {
  ::Widget topLevel = nullptr;
  std::vector<ResourceClass> classes;
  std::set<std::string> texts; // nodes: a text that was returned never moves
  std::map<BitmapKey, Pixmap> bitmaps;

  const ResourceClass *classNamed(const char *name) const {
    const auto found = std::find_if(classes.begin(), classes.end(), [=](const auto &one) { return one.name == name; });
    return found == classes.end() ? nullptr : &*found;
  }

  // The class of the widget or of its nearest parent that has one: by its name or, because a shell without a parent has
  // the name of the program, by the class that its plug-in gave it. Null where none has one.
  const ResourceClass *classOf(::Widget widget) const {
    for (; widget != nullptr; widget = XtParent(widget)) {
      const ResourceClass *found = classNamed(XtName(widget));
      if (found == nullptr && XtIsApplicationShell(widget))
        found = classNamed(reinterpret_cast<ApplicationShellWidget>(widget)->application.c_class);
      if (found != nullptr) return found;
    }
    return nullptr;
  }

  std::vector<const ResourceClass *> classesFor(::Widget widget) const {
    if (const ResourceClass *only = classOf(widget)) return {only};
    std::vector<const ResourceClass *> all(classes.size());
    std::transform(classes.begin(), classes.end(), all.begin(), [](const ResourceClass &one) { return &one; });
    return all;
  }

  std::optional<std::string> find(::Widget widget, const char *name, const char *classOfName) const {
    const std::vector<const ResourceClass *> asked = classesFor(widget);
    XrmDatabase users = topLevel == nullptr ? nullptr : XtScreenDatabase(XtScreen(topLevel));
    for (const ResourceClass *one : asked)
      if (auto value = lookUp(users, one->name, name, classOfName)) return value;
    for (const ResourceClass *one : asked)
      if (auto value = lookUp(one->fallbacks, one->name, name, classOfName)) return value;
    return std::nullopt;
  }

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

WindowSystem::WindowSystem(tavrel::Widget topLevel) : state_(std::make_unique<State>()) {
  XrmInitialize();
  state_->topLevel = topLevel;
}

WindowSystem::~WindowSystem() {
  for (const auto &[name, bitmap] : state_->bitmaps)
    XFreePixmap(XtDisplay(state_->topLevel), bitmap);
  for (const ResourceClass &one : state_->classes)
    XrmDestroyDatabase(one.fallbacks);
}

tavrel::Widget WindowSystem::topLevel() const { return state_->topLevel; }

void WindowSystem::registerClass(const char *className, const char *const *lines) {
  if (className == nullptr || *className == '\0')
    throw HostError(tavrel::errBadArgument, "a resource class without a name");
  std::vector<ResourceClass> &classes = state_->classes;
  auto known = std::find_if(classes.begin(), classes.end(), [=](const auto &one) { return one.name == className; });
  if (known == classes.end()) known = classes.insert(known, ResourceClass{className});
  for (; lines != nullptr && *lines != nullptr; ++lines)
    XrmPutLineResource(&known->fallbacks, *lines);
}

const char *WindowSystem::text(tavrel::Widget widget, const char *key, const char *builtIn) {
  if (key == nullptr || *key == '\0') return builtIn;
  const auto found = state_->find(widget, key, key);
  return found ? state_->texts.insert(*found).first->c_str() : builtIn;
}

tavrel::Bitmap WindowSystem::bitmap(tavrel::Widget widget, const char *name, const char *className,
                                    const unsigned char *bits, uint32_t width, uint32_t height) {
  constexpr uint32_t largest = 0x7FFF; // the limit of the X protocol
  if (name == nullptr || className == nullptr) throw HostError(tavrel::errBadArgument, "a bitmap without a name");
  if (width > largest || height > largest) throw HostError(tavrel::errBadArgument, "a bitmap that is too large");
  if (state_->topLevel == nullptr) return 0;
  const ResourceClass *resourceClass = state_->classOf(widget);
  const BitmapKey key{resourceClass == nullptr ? std::string() : resourceClass->name,
                      name,
                      className,
                      width,
                      height,
                      bytesOf(bits, width, height)};
  if (const auto kept = state_->bitmaps.find(key); kept != state_->bitmaps.end()) return kept->second;

  Pixmap bitmap = 0;
  if (*name != '\0')
    if (const auto file = state_->find(widget, name, className)) bitmap = state_->load(*file);
  if (bitmap == 0 && bits != nullptr && width > 0 && height > 0) {
    ::Display *display = XtDisplay(state_->topLevel);
    bitmap = XCreateBitmapFromData(display, XDefaultRootWindow(display), reinterpret_cast<const char *>(bits), width,
                                   height);
  }
  if (bitmap != 0) state_->bitmaps.emplace(key, bitmap);
  return bitmap;
}

} // namespace host
