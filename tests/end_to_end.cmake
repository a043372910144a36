# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# From the command line to the pixels of a page, on documents made by other programs.
set(test_documents ${CMAKE_BINARY_DIR}/test-documents)
add_test(NAME documents COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/documents/make.sh ${test_documents})
set_tests_properties(documents PROPERTIES FIXTURES_SETUP documents)

tavrel_test(NAME end_to_end_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/end_to_end/*.cpp
            LIBRARIES tools document_pdf test_support PNG::PNG PROPERTIES FIXTURES_REQUIRED documents)
target_compile_definitions(end_to_end_test PRIVATE TEST_DOCUMENTS="${test_documents}"
                                                   TAVREL="$<TARGET_FILE:tavrel>" QPDF="${QPDF}"
                                                   TAVREL_PLUGINS="$<TARGET_FILE_DIR:TavrelGLT>"
                                                   TAVREL_BINDIR="${CMAKE_INSTALL_BINDIR}"
                                                   TAVREL_LIBDIR="${CMAKE_INSTALL_LIBDIR}")
add_dependencies(end_to_end_test tavrel tavrel-document TavrelGLT BRZ HitPages HitSteps)
