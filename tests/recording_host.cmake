# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The recording host as a library, for programs that link the plug-in's objects: the tests and the fuzzing programs. Needs
# GoogleTest and the plug-in's target `glint`.
include_guard(GLOBAL)
add_library(recording_host STATIC
            ${CMAKE_CURRENT_LIST_DIR}/host/Faults.cpp ${CMAKE_CURRENT_LIST_DIR}/host/RecordingHost.cpp
            ${CMAKE_CURRENT_LIST_DIR}/host/ResetPlugin.cpp ${CMAKE_CURRENT_LIST_DIR}/support/FailingMemory.cpp)
if(TAVREL_PLUGIN_ONLY)
  target_sources(recording_host PRIVATE ${CMAKE_CURRENT_LIST_DIR}/support/without_x.cpp)
else()
  target_sources(recording_host PRIVATE ${CMAKE_CURRENT_LIST_DIR}/support/TopLevel.cpp
                                        ${CMAKE_CURRENT_LIST_DIR}/support/Xvfb.cpp)
endif()
target_include_directories(recording_host PUBLIC ${CMAKE_SOURCE_DIR})
target_link_libraries(recording_host PUBLIC sdk GTest::gtest PRIVATE $<TARGET_PROPERTY:glint,INTERFACE_LINK_LIBRARIES>)
target_link_options(recording_host PUBLIC -Wl,--wrap=malloc,--wrap=calloc,--wrap=realloc,--wrap=free) # support/FailingMemory.h
