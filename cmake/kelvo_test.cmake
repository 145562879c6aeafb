kelvo_precompiled(_test HEADERS ${kelvo_standard_headers} <gtest/gtest.h>
  LINK GTest::gtest)
kelvo_precompiled(_qt_test
  HEADERS ${kelvo_standard_headers} ${kelvo_toolkit_headers} <QApplication> <filesystem> <fstream>
    <gtest/gtest.h>
  LINK GTest::gtest Qt6::Widgets)
add_library(kelvo_qt_test_main OBJECT ${PROJECT_SOURCE_DIR}/tests/qt_main.cpp)
kelvo_settings(kelvo_qt_test_main QT TEST)
target_link_libraries(kelvo_qt_test_main PUBLIC GTest::gtest Qt6::Widgets)

# kelvo_test(NAME SOURCES... [ALONE sources...] [QT] [LINK libs...])
#
# One test program. It links the room under test alone; with QT it is given the
# offscreen platform and a QApplication (tests/qt_main.cpp).
function(kelvo_test name)
  cmake_parse_arguments(ARG "QT" "" "SOURCES;ALONE;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES} ${ARG_ALONE})
  kelvo_alone(${ARG_ALONE})
  target_link_libraries(${name} PRIVATE ${ARG_LINK} GTest::gtest)
  if(ARG_QT)
    kelvo_settings(${name} QT TEST)
    target_link_libraries(${name} PRIVATE kelvo_qt_test_main)
  else()
    kelvo_settings(${name} TEST)
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()
