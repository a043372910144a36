// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The handlers of auxiliary data. The application owns the only list.
#include "host/view/auxdata.h"

#include <limits>

namespace host {
namespace {

constexpr uint32_t recordVersion = 8; // the value of AuxDataHandler::size on every machine

} // namespace

bool AuxData::add(tavrel::ExtensionID extension, tavrel::Atom type, const tavrel::AuxDataHandler *handler) {
  if (handler == nullptr || handler->size != recordVersion)
    throw HostError(tavrel::errBadArgument, "a handler of auxiliary data of a size that the host does not know");
  const Runtime &runtime = Runtime::current();
  runtime.extensions.require(extension);
  runtime.atoms.name(type);
  runtime.callbacks.owner(handler->perform);
  if (registered(type, {extension, handler})) return false;
  handlers_[type].push_back({extension, handler});
  return true;
}

bool AuxData::remove(tavrel::ExtensionID extension, tavrel::Atom type, const tavrel::AuxDataHandler *handler) noexcept {
  const auto found = handlers_.find(type);
  if (found == handlers_.end() || std::erase(found->second, Handler{extension, handler}) == 0) return false;
  if (found->second.empty()) handlers_.erase(found);
  return true;
}

void AuxData::retire(tavrel::ExtensionID extension) noexcept {
  for (auto &[type, list] : handlers_)
    std::erase_if(list, [=](const Handler &handler) { return handler.extension == extension; });
  std::erase_if(handlers_, [](const auto &ofType) { return ofType.second.empty(); });
}

bool AuxData::registered(tavrel::Atom type, const Handler &handler) const noexcept {
  const auto found = handlers_.find(type);
  return found != handlers_.end() &&
         std::find(found->second.begin(), found->second.end(), handler) != found->second.end();
}

bool AuxData::deliver(tavrel::Atom type, std::span<const char> bytes, tavrel::Doc document) const {
  if (bytes.size() > std::numeric_limits<uint32_t>::max())
    throw HostError(tavrel::errBadArgument, "auxiliary data of more than four gigabytes");
  const auto found = handlers_.find(type);
  if (found == handlers_.end()) return false;
  // A copy: handlers may be registered during a call, which are not asked, and unregistered, whose records may be
  // freed.
  const std::vector<Handler> asked = found->second;
  return std::any_of(asked.begin(), asked.end(), [&](const Handler &handler) {
    if (!registered(type, handler)) return false;
    return callPlugin({handler.extension, "the handler of auxiliary data"},
                      tavrel::functionOf<tavrel::AuxDataProc>(handler.record->perform), type,
                      static_cast<const void *>(bytes.data()), static_cast<uint32_t>(bytes.size()), document) != 0;
  });
}

} // namespace host
