// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The bytes of a file, mapped.
#pragma once

#include <filesystem>
#include <span>

namespace document {

class MappedFile {
public:
  /// The descriptor may be closed afterwards. Throws DocumentError, with one clear line that names the file, if it
  /// cannot be mapped.
  MappedFile(int descriptor, const std::filesystem::path &name);
  MappedFile(const MappedFile &) = delete;
  MappedFile &operator=(const MappedFile &) = delete;
  ~MappedFile();

  std::span<const char> bytes() const { return bytes_; }

private:
  std::span<const char> bytes_;
};

} // namespace document
