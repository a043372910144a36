# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Documents, selections, searching. qpdf makes the encrypted ones.
find_program(QPDF qpdf REQUIRED)
tavrel_test(NAME document_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/host/document/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/document/*.cpp
            LIBRARIES document_structure host_document test_support)
target_compile_definitions(document_test PRIVATE QPDF="${QPDF}")
add_dependencies(document_test tavrel-document tavrel-structure)

tavrel_test(NAME search_test
            SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/tools/hits*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/tools/search*.cpp
            LIBRARIES tools document_pdf host_document test_support)
target_compile_definitions(search_test PRIVATE QPDF="${QPDF}")
add_dependencies(search_test tavrel-document)
