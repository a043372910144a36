// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Builds a host function table from typed functions.
//
// Every entry is a thin wrapper around the host's own function: it catches every exception, destroys every object, and
// only then raises, because a raise jumps over C++ frames.
#pragma once

#include <new>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "host/kernel/error.h"
#include "tavrel/hft.h"

namespace host {

/// Jumps to the restore procedure of the innermost exception frame (frames.h). Ends the program with a message where
/// there is none. No object with a destructor may be alive in the caller.
void raise(int32_t code);

/// Remembers why the next raise happens, for the line that the host prints if no frame of the plug-in is open.
void noteReason(const char *reason) noexcept;

template <auto Function, typename R, typename... A> R guarded(A... arguments) {
  int32_t code = tavrel::errGeneric;
  try {
    return Function(arguments...);
  } catch (const HostError &error) {
    code = error.code;
    noteReason(error.what());
  } catch (const std::bad_alloc &) {
    code = tavrel::errNoMemory;
    noteReason("out of memory");
  } catch (const std::exception &error) {
    noteReason(error.what());
  } catch (...) {
    noteReason("unknown exception");
  }
  raise(code);
  return R();
}

class Table {
public:
  /// An empty table for the listed operations, whose indices run from 0 without a gap.
  Table(std::string name, std::span<const tavrel::ListedOperation> operations)
      : name_(std::move(name)), operations_(operations), entries_(operations.size()) {}

  /// Fills the operation's entry with a function that may throw. Does not compile unless the types are the same.
  template <auto Function, tavrel::HFT &Global, uint32_t Index, typename R, typename... A>
  void provide(const tavrel::Operation<Global, Index, R(A...)> & /*operation*/) {
    static_assert(std::is_same_v<decltype(Function), R (*)(A...)>, "the function has not the operation's type");
    entries_.at(Index) = tavrel::entryOf(&guarded<Function, R, A...>);
  }

  /// The same for a function that never throws and may raise directly.
  template <auto Function, tavrel::HFT &Global, uint32_t Index, typename R, typename... A>
  void provideBare(const tavrel::Operation<Global, Index, R(A...)> & /*operation*/) {
    static_assert(std::is_same_v<decltype(Function), R (*)(A...)>, "the function has not the operation's type");
    entries_.at(Index) = tavrel::entryOf(Function);
  }

  const std::string &name() const { return name_; }
  /// The complete table, owned by this object. Throws a HostError that names the first operation left empty.
  tavrel::HFT entries();

private:
  std::string name_;
  std::span<const tavrel::ListedOperation> operations_;
  std::vector<tavrel::Entry> entries_;
};

} // namespace host
