// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// All calls into plug-ins. The host opens its own frame around the call, closes the frames that the plug-in left open,
// and reports a failure in one line.
#pragma once

#include <tuple>
#include <type_traits>

#include "host/kernel/error.h"
#include "tavrel/hft.h"

namespace host {

/// A call as messages name it: the plug-in and its function ("the page-draw procedure").
struct PluginCall {
  tavrel::ExtensionID extension;
  const char *what;
};

/// Calls body(argument) inside a frame of the host. False if the plug-in raised, or is retired and was not called.
/// Throws errFrames, and calls nothing, when calls are nested too deeply.
bool runInPlugin(const PluginCall &call, void (*body)(void *), void *argument);

/// Calls a plug-in's function; a call that fails gives R(), that is 0 or null.
template <typename R, typename... P, typename... A>
R callPlugin(const PluginCall &call, R (*function)(P...), A... arguments) {
  static_assert((std::is_trivially_destructible_v<P> && ...), "a raise skips the arguments' destructors");
  struct Pending {
    R (*function)(P...);
    std::tuple<P...> arguments;
    std::conditional_t<std::is_void_v<R>, char, R> result;
  };
  Pending pending{function, std::tuple<P...>(arguments...), {}};
  const auto body = [](void *memory) {
    auto &inner = *static_cast<Pending *>(memory);
    if constexpr (std::is_void_v<R>)
      std::apply(inner.function, inner.arguments);
    else
      inner.result = std::apply(inner.function, inner.arguments);
  };
  const bool returned = runInPlugin(call, body, &pending);
  if constexpr (!std::is_void_v<R>) return returned ? pending.result : R();
}

} // namespace host
