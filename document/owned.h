// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Ownership of what the C interface of the PDF library gives away.
#pragma once

#include <poppler.h>

#include <memory>

namespace document {

template <auto release> struct Release {
  void operator()(auto *owned) const { release(owned); }
};
template <typename T, auto release> using Owned = std::unique_ptr<T, Release<release>>;

template <typename T> using OwnedObject = Owned<T, g_object_unref>;
using OwnedText = Owned<char, g_free>;
using OwnedAction = Owned<PopplerAction, poppler_action_free>;

} // namespace document
