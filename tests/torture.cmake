# Makes every host call and every allocation of many scenarios fail. One test, so that it counts all of them.
file(GLOB torture_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/torture/*.cpp)
add_executable(torture_test ${torture_sources})
target_link_libraries(torture_test PRIVATE recording_host glint GTest::gtest GTest::gmock GTest::gtest_main)
target_compile_options(torture_test PRIVATE ${test_options})
add_test(NAME torture COMMAND torture_test --gtest_brief=1)
# The test counts every block. Blocks that are lost when an operation raises are expected and not leaks.
set_tests_properties(torture PROPERTIES LABELS plugin ENVIRONMENT ASAN_OPTIONS=detect_leaks=0)
