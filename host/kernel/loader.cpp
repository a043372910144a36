// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The plug-in loader. Owns the list of plug-ins and their state; a program makes one after its tables are registered.
#include "host/kernel/loader.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>

#include "host/kernel/plugincall.h"
#include "host/kernel/versionnote.h"

namespace host {
namespace {

namespace fs = std::filesystem;

// By name: plug-ins load in a fixed order, and a file of an earlier directory hides one of the same name in a later
// one.
std::map<fs::path, fs::path> librariesIn(const std::vector<fs::path> &directories) {
  std::map<fs::path, fs::path> files;
  for (const fs::path &directory : directories) {
    std::error_code ignored; // a directory that is not there has no plug-ins
    for (fs::directory_iterator entry(directory, ignored), end; !ignored && entry != end; entry.increment(ignored))
      if (entry->path().extension() == ".so") files.emplace(entry->path().filename(), entry->path());
  }
  return files;
}

std::string hexadecimal(uint32_t value) {
  std::ostringstream text;
  text << "0x" << std::hex << value;
  return text.str();
}

// Whether a callback, if there is one, was made by this very plug-in.
bool isOwn(const Runtime &runtime, tavrel::ExtensionID extension, tavrel::Callback callback) {
  try {
    return callback == nullptr || runtime.callbacks.owner(callback) == extension;
  } catch (const HostError &) {
    return false;
  }
}

// dlerror puts the file before its reason; the line that is printed has it already.
std::string openError(const fs::path &file) {
  const char *text = dlerror();
  std::string reason = text == nullptr ? "cannot be opened" : text;
  if (const std::string prefix = file.string() + ": "; reason.starts_with(prefix)) reason.erase(0, prefix.size());
  return reason;
}

// Delays the reports about a plug-in during a call: if the call fails, the first one is its reason and is not printed.
class DelayedReports {
public:
  explicit DelayedReports(Runtime &runtime)
      : runtime_(runtime), reporter_([this](const std::string &line) { lines_.push_back(line); }) {
    runtime_.reporter.swap(reporter_);
  }
  ~DelayedReports() {
    runtime_.reporter.swap(reporter_);
    for (const std::string &line : lines_)
      runtime_.report(line);
  }
  DelayedReports(const DelayedReports &) = delete;
  DelayedReports &operator=(const DelayedReports &) = delete;

  /// Removes and returns the first report, which is then not printed; empty where there is none.
  std::string take() {
    if (lines_.empty()) return {};
    std::string first = lines_.front();
    lines_.erase(lines_.begin());
    return first;
  }

private:
  Runtime &runtime_;
  std::function<void(const std::string &line)> reporter_;
  std::vector<std::string> lines_;
};

// Calls a plug-in that is being loaded. If the call fails and was reported, the report is the reason.
template <typename Function, typename... A>
uint32_t ask(Runtime &runtime, Plugin &plugin, const char *what, Function function, A... arguments) {
  DelayedReports reports(runtime);
  const uint32_t result = callPlugin({plugin.extension, what}, function, arguments...);
  if (result != 0) return result;
  plugin.reason = reports.take();
  if (const std::string prefix = plugin.name + ": "; plugin.reason.starts_with(prefix))
    plugin.reason.erase(0, prefix.size());
  return result;
}

} // namespace

void PluginLoader::load(const std::vector<fs::path> &directories) {
  for (const auto &[name, file] : librariesIn(directories))
    open(file);
  using Record = tavrel::HandshakeRecord;
  runPhase(&Record::exportTables, "the export callback", PluginState::handshaken, PluginState::exported);
  runPhase(&Record::importTables, "the import callback", PluginState::exported, PluginState::exported);
  runPhase(&Record::initialise, "the initialisation callback", PluginState::exported, PluginState::initialised);
}

void PluginLoader::open(const fs::path &file) {
  Plugin &plugin = plugins_.emplace_back();
  plugin.file = file;
  plugin.name = file.filename().string();
  plugin.extension = runtime_.extensions.add(plugin.name);
  // Absolute: dlopen searches the system's directories for a bare name.
  plugin.library = dlopen(fs::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (plugin.library == nullptr) return refuse(plugin, openError(fs::absolute(file)));
  const auto same = std::find_if(plugins_.begin(), plugins_.end(),
                                 [&](const Plugin &other) { return other.library == plugin.library; });
  if (&*same != &plugin) return refuse(plugin, "is the same library as " + same->file.string());
  plugin.version = versionOf(plugin.library);
  void *symbol = dlsym(plugin.library, "main");
  if (symbol == nullptr) return refuse(plugin, "has no entry point `main`");
  shakeHands(plugin, reinterpret_cast<tavrel::PluginMain>(symbol));
}

void PluginLoader::shakeHands(Plugin &plugin, tavrel::PluginMain entry) {
  uint32_t version = 0;
  void *setup = nullptr;
  if (ask(runtime_, plugin, "the entry point", entry, offeredHandshake, &version, &setup) == 0)
    return refuse(plugin, "its entry point failed");
  if (version != offeredHandshake) return refuse(plugin, "has handshake version " + hexadecimal(version));
  if (setup == nullptr) return refuse(plugin, "has no set-up procedure");

  tavrel::SetupRecord record{version, plugin.extension, kernelTable(), nullptr};
  if (ask(runtime_, plugin, "the set-up procedure", reinterpret_cast<tavrel::SetupProc>(setup), version, &record) == 0)
    return refuse(plugin, "its set-up failed; perhaps it needs a table that this host does not have");
  if (record.handshake == nullptr || !isOwn(runtime_, plugin.extension, record.handshake))
    return refuse(plugin, "has no handshake callback");

  const auto handshake = tavrel::functionOf<tavrel::HandshakeProc>(record.handshake);
  if (ask(runtime_, plugin, "the handshake callback", handshake, version, &plugin.record) == 0)
    return refuse(plugin, "its handshake failed");
  for (const tavrel::Callback callback :
       {plugin.record.exportTables, plugin.record.importTables, plugin.record.initialise, plugin.record.unload})
    if (!isOwn(runtime_, plugin.extension, callback)) return refuse(plugin, "gave a callback that it did not create");
  if (!runtime_.atoms.known(plugin.record.name)) return refuse(plugin, "gave no name");
  plugin.name = runtime_.atoms.name(plugin.record.name);
  runtime_.extensions.rename(plugin.extension, plugin.name);
  plugin.state = PluginState::handshaken;
}

void PluginLoader::runPhase(tavrel::Callback tavrel::HandshakeRecord::*callback, const char *what, PluginState from,
                            PluginState to) {
  for (Plugin &plugin : plugins_) {
    if (plugin.state != from) continue;
    const tavrel::Callback step = plugin.record.*callback;
    if (step == nullptr || ask(runtime_, plugin, what, tavrel::functionOf<tavrel::LifecycleProc>(step)) != 0)
      plugin.state = to;
    else
      refuse(plugin, std::string(what) + " failed");
  }
}

void PluginLoader::refuse(Plugin &plugin, const std::string &reason) {
  plugin.state = PluginState::refused;
  if (plugin.reason.empty()) plugin.reason = reason;
  runtime_.retire(plugin.extension);
  runtime_.report("plug-in " + plugin.file.string() + ": " + reason);
}

PluginLoader::~PluginLoader() {
  try {
    unload();
  } catch (const std::exception &error) { // memory is exhausted
    std::fprintf(stderr, "tavrel: the plug-ins were not all unloaded: %s\n", error.what());
  }
}

void PluginLoader::unload() {
  for (;;) {
    std::vector<tavrel::ExtensionID> running;
    for (const Plugin &plugin : plugins_)
      if (plugin.state == PluginState::initialised) running.push_back(plugin.extension);
    if (running.empty()) break;
    const tavrel::ExtensionID next = nextToEnd(running, runtime_.tables.uses());
    end(*std::find_if(plugins_.begin(), plugins_.end(),
                      [=](const Plugin &plugin) { return plugin.extension == next; }));
  }
  // Plug-ins that failed to start are retired already; no plug-in that could call their tables runs any more.
  for (const Plugin &plugin : plugins_)
    runtime_.tables.retire(plugin.extension, runtime_.callbacks);
}

// Errors of a plug-in are reported here, so that the other plug-ins are ended, too.
void PluginLoader::end(Plugin &plugin) {
  plugin.state = PluginState::unloaded;
  try {
    runtime_.tables.closeServers(plugin.extension);
    const tavrel::Callback step = plugin.record.unload;
    if (step != nullptr &&
        callPlugin({plugin.extension, "the unload callback"}, tavrel::functionOf<tavrel::LifecycleProc>(step)) == 0)
      runtime_.report("plug-in " + plugin.file.string() + ": the unload callback failed");
  } catch (const std::exception &error) {
    runtime_.report("plug-in " + plugin.file.string() + ": " + error.what());
  }
  runtime_.tables.retire(plugin.extension, runtime_.callbacks);
  runtime_.retire(plugin.extension);
}

const char *describe(PluginState state) {
  switch (state) {
  case PluginState::refused:
    return "failed";
  case PluginState::handshaken:
  case PluginState::exported:
    return "starting";
  case PluginState::initialised:
    return "running";
  case PluginState::unloaded:
    return "ended";
  }
  return "";
}

fs::path systemPluginDirectory(const fs::path &program) {
  const std::string fromProgram = TAVREL_PLUGINS_FROM_PROGRAM;
  if (fromProgram.empty() || !program.is_absolute()) return TAVREL_INSTALLED_PLUGINS;
  return (program.parent_path() / fromProgram).lexically_normal();
}

std::vector<fs::path> pluginDirectories(const fs::path &given) {
  std::vector<fs::path> directories;
  if (!given.empty()) directories.push_back(given);
  if (const char *path = std::getenv("TAVREL_PLUGIN_PATH"); path != nullptr) {
    std::istringstream parts(path);
    for (std::string part; std::getline(parts, part, ':');)
      if (!part.empty()) directories.emplace_back(part);
  }
  if (const char *home = std::getenv("HOME"); home != nullptr && *home == '/')
    directories.push_back(fs::path(home) / ".local/lib/tavrel/plugins");
  std::error_code unreadable; // the path is empty then
  directories.push_back(systemPluginDirectory(fs::read_symlink("/proc/self/exe", unreadable)));
  return directories;
}

} // namespace host
