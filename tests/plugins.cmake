# Plug-ins beside the highlight plug-in, each as the library that it is, in the real host.
tavrel_test(NAME plugins_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/plugins/*.cpp LIBRARIES tools test_support)
target_compile_definitions(plugins_test PRIVATE TAVREL_PLUGINS="$<TARGET_FILE_DIR:TavrelGLT>"
                                                HIT_COUNT="$<TARGET_FILE:HitCount>")
add_dependencies(plugins_test TavrelGLT HitCount)
