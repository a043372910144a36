// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The plug-in as it is shipped: the shared library's exports and dependencies, and that a host that has a `main`, too,
// gets the plug-in's.
#include <dlfcn.h>
#include <elf.h>
#include <gtest/gtest.h>
#include <link.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <set>

#include "tavrel/plugin.h"

using namespace tavrel;

namespace {

/// A shared library as a file, read without a loader.
class LibraryFile {
public:
  explicit LibraryFile(const char *path) {
    std::ifstream file(path, std::ios::binary);
    bytes_.assign(std::istreambuf_iterator<char>(file), {});
    if (bytes_.size() < sizeof(ElfW(Ehdr))) return;
    const auto *header = at<ElfW(Ehdr)>(0);
    for (unsigned i = 0; i < header->e_shnum; ++i)
      readSection(*at<ElfW(Shdr)>(header->e_shoff + i * sizeof(ElfW(Shdr))));
  }

  std::set<std::string> exported, needed;
  int mainVisibility = -1; ///< STV_...

private:
  template <typename T> const T *at(size_t offset) const { return reinterpret_cast<const T *>(&bytes_[offset]); }

  void readSection(const ElfW(Shdr) & section) {
    if (section.sh_type != SHT_DYNSYM && section.sh_type != SHT_DYNAMIC) return;
    const auto *header = at<ElfW(Ehdr)>(0);
    const char *names = at<char>(at<ElfW(Shdr)>(header->e_shoff + section.sh_link * sizeof(ElfW(Shdr)))->sh_offset);
    for (size_t at_ = 0; at_ < section.sh_size; at_ += section.sh_entsize)
      section.sh_type == SHT_DYNSYM ? readSymbol(*at<ElfW(Sym)>(section.sh_offset + at_), names)
                                    : readDependency(*at<ElfW(Dyn)>(section.sh_offset + at_), names);
  }

  void readSymbol(const ElfW(Sym) & symbol, const char *names) {
    const int binding = ELF64_ST_BIND(symbol.st_info); // the same in both widths
    if (symbol.st_shndx == SHN_UNDEF || binding == STB_LOCAL) return;
    const std::string name = names + symbol.st_name;
    exported.insert(name);
    if (name == "main") mainVisibility = ELF64_ST_VISIBILITY(symbol.st_other);
  }

  void readDependency(const ElfW(Dyn) & entry, const char *names) {
    if (entry.d_tag == DT_NEEDED) needed.insert(names + entry.d_un.d_val);
  }

  std::string bytes_;
};

TEST(PluginFile, ExportsExactlyOneSymbol) {
  EXPECT_EQ(LibraryFile(TAVREL_PLUGIN_FILE).exported, std::set<std::string>{"main"});
}

TEST(PluginFile, ItsMainIsProtected) {
  EXPECT_EQ(LibraryFile(TAVREL_PLUGIN_FILE).mainVisibility, STV_PROTECTED)
      << "else the plug-in's references would resolve to the program's main";
}

TEST(PluginFile, NeedsOnlyTheCLibraryAndX) {
  if (TAVREL_SANITIZED) GTEST_SKIP() << "a sanitized plug-in needs the sanitizers' libraries";
  for (const std::string &library : LibraryFile(TAVREL_PLUGIN_FILE).needed)
    EXPECT_TRUE(library.starts_with("libc.so.") || library.starts_with("libX11.so.") ||
                library.starts_with("libXt.so."))
        << library;
}

/// The plug-in in this program. It stays loaded to the end, as in a host.
class LoadedPlugin : public testing::Test {
protected:
  void SetUp() override {
    library = dlopen(TAVREL_PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    pluginMain = reinterpret_cast<PluginMain>(dlsym(library, "main"));
    ASSERT_NE(pluginMain, nullptr) << dlerror();
  }

  /// The file that an address belongs to.
  static std::string fileOf(const void *address) {
    Dl_info info = {};
    return dladdr(address, &info) != 0 ? info.dli_fname : "";
  }

  void *library = nullptr;
  PluginMain pluginMain = nullptr;
};

TEST_F(LoadedPlugin, ItsMainIsFoundAlthoughTheProgramHasOne) {
  EXPECT_EQ(fileOf(reinterpret_cast<void *>(pluginMain)), TAVREL_PLUGIN_FILE);
}

struct Negotiation {
  uint32_t offered, agreed;
};

TEST_F(LoadedPlugin, NegotiatesTheSmallerVersion) {
  for (const auto [offered, agreed] : {Negotiation{0x00010000, 0x00010000},
                                       {0x00020000, 0x00020000},
                                       {0x00030000, 0x00020000},
                                       {0xFFFFFFFF, 0x00020000},
                                       {0, 0}}) {
    uint32_t version = 7;
    void *setup = nullptr;
    EXPECT_EQ(pluginMain(offered, &version, &setup), 1U) << offered;
    EXPECT_EQ(version, agreed) << offered;
    EXPECT_EQ(fileOf(setup), TAVREL_PLUGIN_FILE) << offered;
  }
}

TEST_F(LoadedPlugin, SetUpProcedureRefusesAnotherVersion) {
  uint32_t version = 0;
  void *setup = nullptr;
  pluginMain(0x00010000, &version, &setup);
  SetupRecord record = {};
  record.handshakeVersion = version;
  EXPECT_EQ(reinterpret_cast<SetupProc>(setup)(version, &record), 0U);
  EXPECT_EQ(record.handshake, nullptr);
}

TEST_F(LoadedPlugin, LoadedTwiceIsLoadedOnce) { EXPECT_EQ(dlopen(TAVREL_PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL), library); }

} // namespace
