# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Injects a fault at every host call and every allocation of many scenarios. One test, so that it prints one total.
file(GLOB torture_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/torture/*.cpp)
add_executable(torture_test ${torture_sources})
target_link_libraries(torture_test PRIVATE recording_host glint GTest::gtest GTest::gmock GTest::gtest_main)
target_compile_options(torture_test PRIVATE ${test_options})
add_test(NAME torture COMMAND torture_test --gtest_brief=1)
# The test counts every block itself; a leak detector would report the blocks that a raise loses.
set_tests_properties(torture PROPERTIES LABELS plugin ENVIRONMENT ASAN_OPTIONS=detect_leaks=0)
