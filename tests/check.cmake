# No test asserts nothing: check/assertions.py reads the tests' sources, and check/assertions_test.py tests the check. What
# it finds is the same in every preset, so it runs in those that build the tests as they are.
if(TAVREL_SANITIZE OR TAVREL_COVERAGE OR TAVREL_FORTIFY)
  return()
endif()
find_package(Python3 REQUIRED COMPONENTS Interpreter)
foreach(script assertions assertions_test)
  add_test(NAME check.${script} COMMAND ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_SOURCE_DIR}/check/${script}.py)
endforeach()
