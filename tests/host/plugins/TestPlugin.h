// What one plug-in of the loader's tests does differently from a good one.
#pragma once

#include "tavrel/plugin.h"

struct TestPlugin {
  const char *name;
  uint32_t mainResult = 1;
  uint32_t version = tavrel::handshakeVersion;
  uint32_t setupResult = 1;
  bool strangeCallback = false;   ///< hands back a function that is no callback
  void (*initialise)() = nullptr; ///< what it does besides
};

extern const TestPlugin testPlugin;
