// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Whether this is built with the sanitizers. Each compiler names it in its own way.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#define TAVREL_IS_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TAVREL_IS_SANITIZED
#endif
#endif

namespace host {

#ifdef TAVREL_IS_SANITIZED
inline constexpr bool isSanitized = true;
#else
inline constexpr bool isSanitized = false;
#endif

} // namespace host
