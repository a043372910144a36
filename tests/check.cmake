# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# check/assertions.py finds tests that assert nothing; check/assertions_test.py tests the check. The result is the same in
# every preset, so it runs only in those without sanitizers, coverage and the C library's checks.
if(TAVREL_SANITIZE OR TAVREL_COVERAGE OR TAVREL_FORTIFY)
  return()
endif()
find_package(Python3 REQUIRED COMPONENTS Interpreter)
foreach(script assertions assertions_test)
  add_test(NAME check.${script} COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_SOURCE_DIR}/check/${script}.py)
endforeach()
