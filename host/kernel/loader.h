// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Finds plug-ins, starts them in the order of sdk/tavrel/plugin.h, and ends them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host/kernel/runtime.h"
#include "tavrel/plugin.h"

namespace host {

/// The handshake version that this host offers.
inline constexpr uint32_t offeredHandshake = 0x00020000;

enum class PluginState { refused, handshaken, exported, initialised, unloaded };

struct Plugin {
  std::filesystem::path file;
  std::string name;    ///< the file's until the handshake, then the plug-in's own
  std::string version; ///< empty where the library carries none
  tavrel::ExtensionID extension = hostExtension;
  PluginState state = PluginState::refused;
  std::string reason; ///< why it was refused, else empty
  tavrel::HandshakeRecord record{};
  void *library = nullptr;
};

class PluginLoader {
public:
  explicit PluginLoader(Runtime &runtime) : runtime_(runtime) {}
  ~PluginLoader(); ///< unloads
  PluginLoader(const PluginLoader &) = delete;
  PluginLoader &operator=(const PluginLoader &) = delete;

  /// Loads every *.so of the directories, in order of the files' names; of several of one name only that of the first
  /// directory. A directory that is not there has none. Reports each plug-in that fails, with its reason, and continues
  /// with the others.
  void load(const std::vector<std::filesystem::path> &directories);
  /// Ends the plug-ins one after the other, in the order of unloadorder.h: the clients of a table before the plug-in
  /// that offers it, and apart from that the one loaded last first. For each, its servers are removed and their destroy
  /// procedures called, then its unload callback, then everything is retired that it registered; after that nothing of
  /// it is called. So the state of the plug-in is unchanged when its destroy procedures run. After a callback that
  /// raises the next plug-in follows. Libraries stay mapped, because a function of a plug-in may have been handed to
  /// the C library.
  void unload();

  const std::vector<Plugin> &plugins() const { return plugins_; }

private:
  void open(const std::filesystem::path &file);
  void shakeHands(Plugin &plugin, tavrel::PluginMain entry);
  void runPhase(tavrel::Callback tavrel::HandshakeRecord::*callback, const char *what, PluginState from,
                PluginState to);
  void refuse(Plugin &plugin, const std::string &reason);
  void end(Plugin &plugin);

  Runtime &runtime_;
  std::vector<Plugin> plugins_;
};

/// The word for a plug-in's state: "running".
const char *describe(PluginState state);

/// The folder of installed plug-ins, for the program with that path: the configured folder relative to the program's,
/// so that an installation can be moved. The configured absolute folder if the path is empty, because it could not be
/// read, or if the folders of the installation were configured as absolute paths.
std::filesystem::path systemPluginDirectory(const std::filesystem::path &program);

/// The folders that are searched for plug-ins, all of these: the directory given, if any; those of TAVREL_PLUGIN_PATH,
/// separated by colons; the user's, ~/.local/lib/tavrel/plugins, if HOME is an absolute path; that of installed
/// plug-ins. No folder below the current one, unless a user names it. The plug-ins of a build tree are in none of the
/// last two: ./run and the tests name their folder in TAVREL_PLUGIN_PATH.
std::vector<std::filesystem::path> pluginDirectories(const std::filesystem::path &given);

} // namespace host
