// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: MIT
// How a host function table is called, and the only cast between an entry and a function.
//
// Every table has its own header, with one line for each operation: its index, its name and its signature. That line
// determines the plug-in's call (`TavrelView::GetFrontDoc()`), the type that the host's function must have, and the
// name in a trace.
#pragma once

#include "tavrel/types.h"

namespace tavrel {

/// The function of an entry. `Function` is a pointer-to-function type, or void * where a function is passed as data
/// (the set-up procedure).
template <typename Function> Function functionOf(Entry entry) { return reinterpret_cast<Function>(entry); }

/// A function as an untyped entry.
template <typename R, typename... A> Entry entryOf(R (*function)(A...)) { return reinterpret_cast<Entry>(function); }

template <HFT &Table, uint32_t Index, typename Signature> struct Operation;

/// One operation: called like a function. The table pointer is read from its global at every call.
template <HFT &Table, uint32_t Index, typename R, typename... A> struct Operation<Table, Index, R(A...)> {
  using Function = R (*)(A...);
  static constexpr uint32_t index = Index;
  const char *name;

  R operator()(A... arguments) const { return functionOf<Function>(Table[Index])(arguments...); }
};

/// A line of a table, for code that goes through all of them (a host that fills its table, a trace).
struct ListedOperation {
  uint32_t index;
  const char *name;
};

} // namespace tavrel

/// Declares an operation object from a table's line; `table` is the global that holds the table.
#define TAVREL_OPERATION(table, number, operation, ...)                                                                \
  inline constexpr ::tavrel::Operation<table, number, __VA_ARGS__> operation{#operation};

/// Lists a table's line by index and name.
#define TAVREL_LISTED(number, operation, ...) {number, #operation},
