# The plug-in's own tests: its objects and the recording host in one program. `main` stays out.
add_library(recording_host STATIC ${CMAKE_CURRENT_SOURCE_DIR}/host/RecordingHost.cpp
                                  ${CMAKE_CURRENT_SOURCE_DIR}/host/ResetPlugin.cpp)
target_include_directories(recording_host PUBLIC ${CMAKE_SOURCE_DIR})
target_link_libraries(recording_host PUBLIC sdk GTest::gtest PRIVATE $<TARGET_PROPERTY:glint,INTERFACE_LINK_LIBRARIES>)

tavrel_test(NAME plugin_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/plugin/*/*.cpp LIBRARIES recording_host glint)
