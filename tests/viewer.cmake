# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The viewer's window, used with a pointer and keys on private displays, with and without a window manager. Each class of
# tests is registered as one test, because starting a display takes longer than pressing a button.
find_package(Python3 COMPONENTS Interpreter)
if(Python3_FOUND)
  set(viewer_tests ${CMAKE_CURRENT_SOURCE_DIR}/viewer)
  set(viewer_helpers ${CMAKE_BINARY_DIR}/viewer-helpers)
  foreach(helper managed outer property screenshot)
    add_executable(viewer_${helper} ${viewer_tests}/${helper}.cpp)
    target_link_libraries(viewer_${helper} PRIVATE tools X11::X11)
    set_target_properties(viewer_${helper} PROPERTIES OUTPUT_NAME ${helper}
                                                      RUNTIME_OUTPUT_DIRECTORY ${viewer_helpers})
  endforeach()

  set(viewer_plugins ${CMAKE_BINARY_DIR}/viewer-plugins)
  foreach(plugin buttons feedback jumps)
    add_library(viewer_plugin_${plugin} MODULE ${viewer_tests}/plugins/${plugin}.cpp)
    target_compile_options(viewer_plugin_${plugin} PRIVATE -fvisibility=hidden)
    target_link_libraries(viewer_plugin_${plugin} PRIVATE sdk)
    set_target_properties(viewer_plugin_${plugin} PROPERTIES PREFIX "" OUTPUT_NAME ${plugin}
                                                             LIBRARY_OUTPUT_DIRECTORY ${viewer_plugins}/${plugin})
  endforeach()

  set(viewer_environment
      TAVREL=$<TARGET_FILE:tavrel>
      TAVREL_DOCUMENTS=${test_documents}
      TAVREL_HELPERS=${viewer_helpers}
      TAVREL_BUILT_PLUGINS=${TAVREL_PLUGIN_DIRECTORY}
      TAVREL_TEST_PLUGINS=${test_plugins}
      TAVREL_VIEWER_PLUGINS=${viewer_plugins}
      TAVREL_SCREENSHOTS_OTHERWISE=${CMAKE_BINARY_DIR}/screenshots)
  file(GLOB files CONFIGURE_DEPENDS ${viewer_tests}/test_*.py)
  foreach(file ${files})
    get_filename_component(module ${file} NAME_WE)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    file(STRINGS ${file} classes REGEX "^class [A-Za-z0-9]+\\(")
    foreach(line ${classes})
      string(REGEX REPLACE "^class ([A-Za-z0-9]+).*" "\\1" class "${line}")
      # A window manager makes no difference to the sanitizers: with them, the classes that use one are left out.
      if(TAVREL_SANITIZE AND class MATCHES "Managed$")
        continue()
      endif()
      add_test(NAME viewer.${class} COMMAND ${Python3_EXECUTABLE} -B -m unittest ${module}.${class}
               WORKING_DIRECTORY ${viewer_tests})
      set_tests_properties(viewer.${class} PROPERTIES LABELS viewer FIXTURES_REQUIRED documents TIMEOUT 300
                                                      ENVIRONMENT "${viewer_environment}")
    endforeach()
  endforeach()
endif()
