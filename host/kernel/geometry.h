// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// 16.16 fixed point as the interface uses it.
#pragma once

#include "tavrel/types.h"

namespace host {

/// The nearest 16.16 number; beyond the range, its end. Not a number is 0.
tavrel::Fixed fixedOf(double value);
inline double doubleOf(tavrel::Fixed value) { return static_cast<double>(value) / tavrel::fixedOne; }

/// The nearest end of the range for a value that does not fit into 16 bits.
int16_t saturate16(double value);

/// The bounds of the transformed rectangle, left <= right and bottom <= top, computed without overflow.
tavrel::FixedRect transform(const tavrel::FixedMatrix &matrix, const tavrel::FixedRect &rect);

} // namespace host
