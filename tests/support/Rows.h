// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Rows of a test table: each has a name, which becomes the name of its test.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

/// The base of a row; the name consists of letters and digits.
struct Row {
  const char *name;
  friend std::ostream &operator<<(std::ostream &out, const Row &row) { return out << row.name; }
};

/// The last argument of INSTANTIATE_TEST_SUITE_P.
template <typename AnyRow> std::string rowName(const testing::TestParamInfo<AnyRow> &info) { return info.param.name; }
