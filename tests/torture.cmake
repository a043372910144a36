# Every host call and every allocation of many deeds made to fail. One test, so that the count is of all of them.
file(GLOB torture_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/torture/*.cpp)
add_executable(torture_test ${torture_sources})
target_link_libraries(torture_test PRIVATE recording_host glint GTest::gtest GTest::gmock GTest::gtest_main)
target_compile_options(torture_test PRIVATE ${test_options})
add_test(NAME torture COMMAND torture_test --gtest_brief=1)
# It keeps account of every block itself, and some are lost on purpose: not to be taken for leaks.
set_tests_properties(torture PROPERTIES LABELS plugin ENVIRONMENT ASAN_OPTIONS=detect_leaks=0)
