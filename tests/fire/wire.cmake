# What is said about the line, held to the Terminals behind a line that is struck.
kelvo_test(fire_wire_test QT
  SOURCES
    ${CMAKE_CURRENT_LIST_DIR}/fire_actions.cpp
    ${CMAKE_CURRENT_LIST_DIR}/fire_program.cpp
    ${CMAKE_CURRENT_LIST_DIR}/wire_test.cpp
  LINK kelvo_shell kelvo_simulator)
add_dependencies(fire_wire_test kelvo_fonts kelvo_database)
set_tests_properties(fire_wire_test PROPERTIES LABELS fire COST 20)

kelvo_test(fire_live_wire_test QT SOURCES ${CMAKE_CURRENT_LIST_DIR}/live_wire_test.cpp
  LINK kelvo_driver)
add_dependencies(fire_live_wire_test kelvo-simulator kelvo_fonts kelvo_database)
# Its partner is a process of its own that has to answer in time.
set_tests_properties(fire_live_wire_test PROPERTIES RUN_SERIAL ON LABELS "fire;live")
