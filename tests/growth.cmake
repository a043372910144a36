# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Tests that the cost grows linearly: counts instructions for n and for 2n (growth/growth.py). Not under sanitizers,
# which valgrind cannot run, and not with coverage's counters, which add instructions.
if(TAVREL_SANITIZE OR TAVREL_COVERAGE)
  return()
endif()
find_package(Python3 REQUIRED COMPONENTS Interpreter)
find_program(TAVREL_VALGRIND valgrind)
if(NOT TAVREL_VALGRIND)
  message(FATAL_ERROR "The test `growth` counts instructions with valgrind, which is not installed: see packages.txt")
endif()
add_executable(growth_driver ${CMAKE_CURRENT_SOURCE_DIR}/growth/growth_driver.cpp
                             ${CMAKE_CURRENT_SOURCE_DIR}/support/SilentHost.cpp)
target_link_libraries(growth_driver PRIVATE glint)
# Functions are bound at start, so that their first call does not include the look-up. Debugging information is stripped:
# valgrind cannot read every compiler's, and needs only the functions' names.
target_link_options(growth_driver PRIVATE -Wl,-z,now -Wl,--strip-debug)
add_test(NAME growth COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_SOURCE_DIR}/growth/growth.py
                             ${TAVREL_VALGRIND} $<TARGET_FILE:growth_driver> --jobs 2)
set_tests_properties(growth PROPERTIES PROCESSORS 2)
