# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The interface alone.
tavrel_test(NAME sdk_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/sdk/*.cpp LIBRARIES sdk X11::Xt)
