# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# The host's kernel. Each test plug-in is a library; most share LoadedPlugin.cpp.
set(test_plugins ${CMAKE_BINARY_DIR}/test-plugins)
function(test_plugin name)
  add_library(test_plugin_${name} MODULE ${ARGN})
  target_compile_options(test_plugin_${name} PRIVATE -fvisibility=hidden)
  target_link_libraries(test_plugin_${name} PRIVATE sdk)
  set_target_properties(test_plugin_${name} PROPERTIES PREFIX "" OUTPUT_NAME ${name}
                                                       LIBRARY_OUTPUT_DIRECTORY ${test_plugins})
endfunction()

set(plugin_sources ${CMAKE_CURRENT_SOURCE_DIR}/host/plugins)
set(loader_plugins good second refuses otherversion nosetup nohandshake raises raisesunload forgets unknowncallback
                   notes brokennote)
set(peers provider client ping pong)
foreach(name ${loader_plugins} ${peers})
  set(sources ${plugin_sources}/LoadedPlugin.cpp ${plugin_sources}/${name}.cpp)
  if(name IN_LIST peers)
    list(APPEND sources ${plugin_sources}/peer.cpp)
  endif()
  test_plugin(${name} ${sources})
endforeach()
list(APPEND loader_plugins ${peers})
foreach(name nomain noversion)
  test_plugin(${name} ${plugin_sources}/${name}.cpp)
  list(APPEND loader_plugins ${name})
endforeach()
list(TRANSFORM loader_plugins PREPEND test_plugin_)

# Blocks are counted by support/FailingMemory.h.
tavrel_test(NAME kernel_test
            SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/host/kernel/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/support/FailingMemory.cpp
            LIBRARIES host_kernel test_support TOGETHER)
target_link_options(kernel_test PRIVATE -Wl,--wrap=malloc,--wrap=calloc,--wrap=realloc,--wrap=free)
target_compile_definitions(kernel_test PRIVATE TEST_PLUGINS="${test_plugins}" TAVREL_BINDIR="${CMAKE_INSTALL_BINDIR}"
                                               TAVREL_LIBDIR="${CMAKE_INSTALL_LIBDIR}"
                                               TAVREL_INSTALLED_PLUGINS="${TAVREL_INSTALLED_PLUGINS}")
add_dependencies(kernel_test ${loader_plugins})
