# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The example plug-ins as libraries in the real host: all together, and each without the others.
tavrel_test(NAME plugins_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/plugins/*.cpp LIBRARIES tools document_pdf viewer_model test_support)
tavrel_test(NAME plugins_alone_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/plugins/alone/*.cpp
            ${CMAKE_CURRENT_SOURCE_DIR}/plugins/tables.cpp ${CMAKE_SOURCE_DIR}/plugins/BRZ/parameters.cpp
            LIBRARIES tools document_pdf test_support)
foreach(test plugins_test plugins_alone_test)
  target_compile_definitions(${test} PRIVATE TAVREL_PLUGINS="$<TARGET_FILE_DIR:TavrelGLT>")
  add_dependencies(${test} TavrelGLT BRZ HitPages HitSteps)
endforeach()

# Steps through all hits of the test documents, and prints how often each was visible.
tavrel_test(NAME every_hit_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/plugins/every_hit/*.cpp
            ${CMAKE_CURRENT_SOURCE_DIR}/plugins/tables.cpp LIBRARIES tools document_pdf viewer_model test_support
            TOGETHER PROPERTIES FIXTURES_REQUIRED documents)
target_compile_definitions(every_hit_test PRIVATE TAVREL_PLUGINS="$<TARGET_FILE_DIR:TavrelGLT>"
                           TEST_DOCUMENTS="${CMAKE_BINARY_DIR}/test-documents")
add_dependencies(every_hit_test TavrelGLT BRZ HitPages HitSteps)

add_library(unloading_client MODULE ${CMAKE_CURRENT_SOURCE_DIR}/plugins/unloading/client.cpp)
target_link_libraries(unloading_client PRIVATE sdk)
target_compile_options(unloading_client PRIVATE -fvisibility=hidden)
set_target_properties(unloading_client PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${test_plugins})
tavrel_test(NAME plugins_unloading_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/plugins/unloading/*_test.cpp
            ${CMAKE_CURRENT_SOURCE_DIR}/plugins/tables.cpp LIBRARIES tools document_pdf test_support)
target_compile_definitions(plugins_unloading_test PRIVATE TAVREL_PLUGINS="$<TARGET_FILE_DIR:TavrelGLT>"
                           UNLOADING_CLIENT="$<TARGET_FILE:unloading_client>")
add_dependencies(plugins_unloading_test TavrelGLT unloading_client)
