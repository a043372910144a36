# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# What a document's process cannot do. A stand-in tries it.
add_executable(confinement_standin ${CMAKE_CURRENT_SOURCE_DIR}/confinement/standin.cpp)
target_link_libraries(confinement_standin PRIVATE document_process)
tavrel_test(NAME confinement_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/confinement/*_test.cpp
            LIBRARIES host_document test_support PkgConfig::SECCOMP)
target_compile_definitions(confinement_test PRIVATE STANDIN="$<TARGET_FILE:confinement_standin>")
add_dependencies(confinement_test confinement_standin tavrel-document)
