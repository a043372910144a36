// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A plug-in with widgets of its own includes X first; the interface must compile after it, though both have an Atom.
#include <gtest/gtest.h>

#include <X11/Intrinsic.h>

#include <span>

#include "tavrel/Desktop.h"
#include "tavrel/DocModel.h"
#include "tavrel/Kernel.h"
#include "tavrel/TavrelGLT.h"
#include "tavrel/TavrelSupport.h"
#include "tavrel/TavrelView.h"
#include "tavrel/plugin.h"

namespace {

template <typename T> struct Result;
template <tavrel::HFT &Table, uint32_t Index, typename R, typename... A>
struct Result<const tavrel::Operation<Table, Index, R(A...)>> {
  using Type = R;
};

TEST(InterfaceAfterX, AtomsAreTheHostsOwn) {
  EXPECT_TRUE((std::is_same_v<Result<decltype(Kernel::AtomFromString)>::Type, uint16_t>));
  EXPECT_FALSE((std::is_same_v<tavrel::Atom, ::Atom>));
}

TEST(InterfaceAfterX, WidgetsAreTheSame) { EXPECT_TRUE((std::is_same_v<tavrel::Widget, ::Widget>)); }

TEST(Interface, HasItsOperationsInOrder) {
  const std::span<const tavrel::ListedOperation> tables[] = {
      Kernel::operations, TavrelSupport::operations, DocModel::operations, TavrelView::operations, Desktop::operations};
  for (const auto &table : tables)
    for (size_t i = 0; i < table.size(); ++i)
      EXPECT_EQ(table[i].index, i) << table[i].name;
  for (size_t i = 0; i < std::size(TavrelGLT::operations); ++i)
    EXPECT_EQ(TavrelGLT::operations[i].index, i + 1) << TavrelGLT::operations[i].name;
}

} // namespace
