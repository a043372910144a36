# SPDX-FileCopyrightText: 2026 The Tavrel developers
# SPDX-License-Identifier: GPL-2.0-or-later
# Compares the lexer and the reader with a second implementation of both, in Python: tests/model/. `model` compares a few
# files; the target `model_million` compares a million, in about ten minutes on two cores.
find_package(Python3 COMPONENTS Interpreter)
if(Python3_FOUND)
  # The driver's registering operations replace the registry's: its object comes first, and the linker takes the first
  # definition. Otherwise no registered file would compare equal.
  add_library(model_driver_object OBJECT ${CMAKE_CURRENT_SOURCE_DIR}/model/lexer_reader_driver.cpp)
  target_link_libraries(model_driver_object PUBLIC recording_host)
  add_executable(model_driver)
  target_link_libraries(model_driver PRIVATE model_driver_object glint)
  target_link_options(model_driver PRIVATE -Wl,--allow-multiple-definition)
  set(compare ${Python3_EXECUTABLE} -B ${CMAKE_CURRENT_SOURCE_DIR}/model/compare.py)
  set(files 20000)
  if(TAVREL_SANITIZE OR CMAKE_CROSSCOMPILING) # many times slower
    set(files 2000)
  endif()
  if(CMAKE_CROSSCOMPILING)
    list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " emulator)
    list(APPEND compare "--under=${emulator}")
  endif()
  add_test(NAME model COMMAND ${compare} $<TARGET_FILE:model_driver> --files ${files} --jobs 2)
  set_tests_properties(model PROPERTIES PROCESSORS 2)
  add_custom_target(model_million
                    COMMAND ${compare} $<TARGET_FILE:model_driver> --files 1000000 --jobs 2 --seed million
                    DEPENDS model_driver USES_TERMINAL)
endif()
