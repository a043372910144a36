# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# check/assertions.py finds tests that assert nothing, check/includes.py includes that docs/design.md does not allow;
# ..._test.py test the checks. The desktop entry is validated where the program for that is installed. The result is the
# same in every preset, so they run only in those without sanitizers, coverage and the C library's checks.
if(TAVREL_SANITIZE OR TAVREL_COVERAGE OR TAVREL_FORTIFY)
  return()
endif()
find_package(Python3 REQUIRED COMPONENTS Interpreter)
foreach(script assertions assertions_test includes includes_test)
  add_test(NAME check.${script} COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_SOURCE_DIR}/check/${script}.py)
endforeach()
find_program(DESKTOP_FILE_VALIDATE desktop-file-validate)
if(DESKTOP_FILE_VALIDATE)
  # It prints a line for each error or warning.
  add_test(NAME check.desktop COMMAND ${DESKTOP_FILE_VALIDATE} ${CMAKE_SOURCE_DIR}/share/tavrel.desktop)
  set_tests_properties(check.desktop PROPERTIES FAIL_REGULAR_EXPRESSION ".")
endif()
