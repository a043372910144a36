# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The soak test of the window, in a separate program, because it counts the resources of the process. Not with sanitizers,
# which replace the allocator.
if(TAVREL_SANITIZE)
  return()
endif()
tavrel_test(NAME viewer_soak_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/viewer_soak/*.cpp
            LIBRARIES viewer_window tools document_pdf test_support X11::Xt X11::X11 XRes
            PROPERTIES ENVIRONMENT GLIBC_TUNABLES=glibc.malloc.tcache_count=0)
target_compile_definitions(viewer_soak_test PRIVATE TAVREL_PLUGINS="$<TARGET_FILE_DIR:TavrelGLT>")
add_dependencies(viewer_soak_test tavrel-document tavrel-structure TavrelGLT BRZ HitPages HitSteps)
