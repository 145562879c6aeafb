# kelvo_test(NAME SOURCES... [QT] [LINK libs...])
#
# One test program. It links the room under test alone; with QT it is given the
# offscreen platform and a QApplication (tests/qt_main.cpp).
function(kelvo_test name)
  cmake_parse_arguments(ARG "QT" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  kelvo_settings(${name})
  target_link_libraries(${name} PRIVATE ${ARG_LINK} GTest::gtest)
  if(ARG_QT)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/qt_main.cpp)
    target_link_libraries(${name} PRIVATE Qt6::Widgets)
  else()
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()
