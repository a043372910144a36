# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The plug-in as a library file, and a test for compilers that lose values stored in a protected region.
tavrel_test(NAME plugin_library_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/plugin/binary/library_test.cpp
            LIBRARIES sdk ${CMAKE_DL_LIBS})
target_compile_definitions(plugin_library_test PRIVATE TAVREL_PLUGIN_FILE="$<TARGET_FILE:TavrelGLT>"
                                                       TAVREL_SANITIZED=$<BOOL:${TAVREL_SANITIZE}>)
add_dependencies(plugin_library_test TavrelGLT)

# Built by both compilers at several levels of optimisation, in every preset, and without sanitizers: they change what the
# compiler may assume.
set(trap_source ${CMAKE_CURRENT_SOURCE_DIR}/plugin/binary/frame_trap.cpp)
set(trap_programs)
foreach(compiler g++ clang++)
  find_program(TAVREL_TRAP_${compiler} ${compiler})
  if(NOT TAVREL_TRAP_${compiler})
    message(STATUS "No ${compiler}: the tests frame_trap_${compiler}_* are left out")
    continue()
  endif()
  foreach(level O0 O2 O3)
    set(trap ${CMAKE_CURRENT_BINARY_DIR}/frame_trap_${compiler}_${level})
    add_custom_command(OUTPUT ${trap}
                       COMMAND ${TAVREL_TRAP_${compiler}} -std=c++20 -${level} -fno-exceptions -fno-rtti -Wall -Wextra
                               -I${CMAKE_SOURCE_DIR} -I${CMAKE_SOURCE_DIR}/sdk ${trap_source} -o ${trap}
                       DEPENDS ${trap_source} ${CMAKE_SOURCE_DIR}/plugin/pi/PIFrame.cpp
                               ${CMAKE_SOURCE_DIR}/plugin/pi/PIFrame.h ${CMAKE_SOURCE_DIR}/sdk/tavrel/frame.h
                       VERBATIM)
    add_test(NAME frame_trap_${compiler}_${level} COMMAND ${trap})
    list(APPEND trap_programs ${trap})
  endforeach()
endforeach()
add_custom_target(frame_trap ALL DEPENDS ${trap_programs})
