// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Auxiliary data: bytes that belong to a document and that some plug-in understands.
#pragma once

#include <map>
#include <span>
#include <vector>

#include "host/view/registration.h"
#include "tavrel/TavrelView.h"

namespace host {

class AuxData {
public:
  /// False when this record is already registered for the type. The plug-in owns the record. Throws errBadArgument for
  /// a record of another size, errBadHandle for one without a callback.
  bool add(tavrel::ExtensionID extension, tavrel::Atom type, const tavrel::AuxDataHandler *handler);
  /// False when it was not registered.
  bool remove(tavrel::ExtensionID extension, tavrel::Atom type, const tavrel::AuxDataHandler *handler) noexcept;
  /// Removes all handlers of a plug-in.
  void retire(tavrel::ExtensionID extension) noexcept;
  bool has(tavrel::Atom type) const noexcept { return handlers_.contains(type); }

  /// Asks the handlers of the type in the order of their registration until one has handled the bytes. A handler that
  /// is unregistered meanwhile is not asked, and its record not read.
  bool deliver(tavrel::Atom type, std::span<const char> bytes, tavrel::Doc document) const;

private:
  struct Handler {
    tavrel::ExtensionID extension;
    const tavrel::AuxDataHandler *record;
    bool operator==(const Handler &) const = default;
  };
  bool registered(tavrel::Atom type, const Handler &handler) const noexcept;

  std::map<tavrel::Atom, std::vector<Handler>> handlers_; ///< no list is empty
};

} // namespace host
