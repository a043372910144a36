# Plug-ins beside the highlight plug-in, each as the library that it is, in the real host: all together, and each
# without another.
tavrel_test(NAME plugins_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/plugins/*.cpp LIBRARIES tools test_support)
tavrel_test(NAME plugins_alone_test SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/plugins/alone/*.cpp
            ${CMAKE_CURRENT_SOURCE_DIR}/plugins/tables.cpp ${CMAKE_SOURCE_DIR}/plugins/BRZ/parameters.cpp
            LIBRARIES tools test_support)
foreach(test plugins_test plugins_alone_test)
  target_compile_definitions(${test} PRIVATE TAVREL_PLUGINS="$<TARGET_FILE_DIR:TavrelGLT>")
  add_dependencies(${test} TavrelGLT BRZ HitCount HitPages)
endforeach()
