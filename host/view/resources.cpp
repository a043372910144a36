// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/view/resources.h"

#include <X11/IntrinsicP.h>
#include <X11/Shell.h>
#include <X11/ShellP.h>
#include <X11/Xresource.h>

#include <algorithm>

#include "host/kernel/error.h"

namespace host {
namespace {

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

struct Resources::Class {
  std::string name;
  XrmDatabase fallbacks = nullptr;
};

Resources::Resources(tavrel::Widget topLevel) : topLevel_(topLevel) { XrmInitialize(); }

Resources::~Resources() {
  for (const Class &one : classes_)
    XrmDestroyDatabase(one.fallbacks);
}

void Resources::registerClass(const char *className, const char *const *lines) {
  if (className == nullptr || *className == '\0')
    throw HostError(tavrel::errBadArgument, "a resource class without a name");
  auto known = std::find_if(classes_.begin(), classes_.end(), [=](const Class &one) { return one.name == className; });
  if (known == classes_.end()) known = classes_.insert(known, Class{className});
  for (; lines != nullptr && *lines != nullptr; ++lines)
    XrmPutLineResource(&known->fallbacks, *lines);
}

const Resources::Class *Resources::classNamed(const char *name) const {
  const auto found = std::find_if(classes_.begin(), classes_.end(), [=](const Class &one) { return one.name == name; });
  return found == classes_.end() ? nullptr : &*found;
}

const Resources::Class *Resources::nearest(tavrel::Widget widget) const {
  for (; widget != nullptr; widget = XtParent(widget)) {
    const Class *found = classNamed(XtName(widget));
    if (found == nullptr && XtIsApplicationShell(widget))
      found = classNamed(reinterpret_cast<ApplicationShellWidget>(widget)->application.c_class);
    if (found != nullptr) return found;
  }
  return nullptr;
}

std::string Resources::classOf(tavrel::Widget widget) const {
  const Class *found = nearest(widget);
  return found == nullptr ? std::string() : found->name;
}

std::optional<std::string> Resources::find(tavrel::Widget widget, const char *name, const char *classOfName) const {
  std::vector<const Class *> asked;
  if (const Class *only = nearest(widget))
    asked.push_back(only);
  else
    std::transform(classes_.begin(), classes_.end(), std::back_inserter(asked), [](const Class &one) { return &one; });
  XrmDatabase users = topLevel_ == nullptr ? nullptr : XtScreenDatabase(XtScreen(topLevel_));
  for (const Class *one : asked)
    if (auto value = lookUp(users, one->name, name, classOfName)) return value;
  for (const Class *one : asked)
    if (auto value = lookUp(one->fallbacks, one->name, name, classOfName)) return value;
  return std::nullopt;
}

} // namespace host
