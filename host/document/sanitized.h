// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Whether this is built with the sanitizers. Each compiler names it in its own way.
#pragma once

namespace host {

#ifdef __has_feature
inline constexpr bool isSanitized = __has_feature(address_sanitizer);
#elif defined(__SANITIZE_ADDRESS__)
inline constexpr bool isSanitized = true;
#else
inline constexpr bool isSanitized = false;
#endif

} // namespace host
