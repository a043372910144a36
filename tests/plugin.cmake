# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The plug-in's tests: its objects and the recording host in one program, without the plug-in's `main`.
include(${CMAKE_CURRENT_SOURCE_DIR}/recording_host.cmake)

# plugin/binary has a separate file: plugin_binary.cmake.
set(plugin_test_sources glt input md pi util)
list(TRANSFORM plugin_test_sources REPLACE "(.+)" "${CMAKE_CURRENT_SOURCE_DIR}/plugin/\\1/*_test.cpp")
file(GLOB plugin_test_sources CONFIGURE_DEPENDS ${plugin_test_sources})
if(TAVREL_PLUGIN_ONLY)
  list(FILTER plugin_test_sources EXCLUDE REGEX "/md/shell_test\\.cpp$") # needs X
endif()
tavrel_test(NAME plugin_test SOURCES ${plugin_test_sources} LIBRARIES recording_host glint
            PROPERTIES LABELS plugin TOGETHER)
