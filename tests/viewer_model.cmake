# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The viewer's model, without a window.
find_program(QPDF qpdf REQUIRED)
tavrel_test(NAME viewer_model_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/viewer_model/*.cpp
            LIBRARIES viewer_window document_pdf test_support X11::Xt X11::X11 TOGETHER)
target_compile_definitions(viewer_model_test PRIVATE QPDF="${QPDF}" MANUAL="${CMAKE_SOURCE_DIR}/docs/tavrel.1")
add_dependencies(viewer_model_test tavrel-document)
# Its operator new fails when the test requests it.
tavrel_test(NAME viewer_faults_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/viewer_model/faults/*.cpp
            LIBRARIES viewer_model document_pdf test_support TOGETHER)
target_compile_definitions(viewer_faults_test PRIVATE QPDF="${QPDF}")
