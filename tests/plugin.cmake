# The plug-in's own tests: its objects and the recording host in one program. `main` stays out.
add_library(recording_host STATIC
            ${CMAKE_CURRENT_SOURCE_DIR}/host/Faults.cpp ${CMAKE_CURRENT_SOURCE_DIR}/host/RecordingHost.cpp
            ${CMAKE_CURRENT_SOURCE_DIR}/host/ResetPlugin.cpp ${CMAKE_CURRENT_SOURCE_DIR}/support/FailingMemory.cpp
            ${CMAKE_CURRENT_SOURCE_DIR}/support/TopLevel.cpp ${CMAKE_CURRENT_SOURCE_DIR}/support/Xvfb.cpp)
target_include_directories(recording_host PUBLIC ${CMAKE_SOURCE_DIR})
target_link_libraries(recording_host PUBLIC sdk GTest::gtest PRIVATE $<TARGET_PROPERTY:glint,INTERFACE_LINK_LIBRARIES>)
target_link_options(recording_host PUBLIC -Wl,--wrap=malloc,--wrap=calloc,--wrap=realloc) # support/FailingMemory.h

# plugin/binary is apart: plugin_binary.cmake.
set(plugin_test_sources glt input md pi util)
list(TRANSFORM plugin_test_sources REPLACE "(.+)" "${CMAKE_CURRENT_SOURCE_DIR}/plugin/\\1/*_test.cpp")
tavrel_test(NAME plugin_test SOURCES ${plugin_test_sources} LIBRARIES recording_host glint)
