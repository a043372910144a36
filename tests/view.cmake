# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The view and the command that draws marked pages.
tavrel_test(NAME view_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/host/view/*.cpp LIBRARIES host_view test_support)
tavrel_test(NAME desktop_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/host/view/desktop/*.cpp
            LIBRARIES tools test_support X11::Xt X11::X11)
tavrel_test(NAME render_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/tools/render/*.cpp
            LIBRARIES tools test_support PNG::PNG)
add_dependencies(render_test tavrel-document)
