kelvo_test(bus_test
  SOURCES terminal_search_test.cpp transfer_faults_test.cpp transfer_test.cpp
  LINK kelvo_bus kelvo_simulator)
kelvo_test(bus_page_test QT
  SOURCES dovu_dialog_test.cpp search_page_test.cpp
  LINK kelvo_shell kelvo_simulator)
kelvo_test(bus_live_test QT SOURCES bus_live_test.cpp LINK kelvo_driver)
add_dependencies(bus_live_test kelvo-simulator kelvo_fonts kelvo_database)
# Its partner is a process of its own that has to answer in time.
set_tests_properties(bus_live_test PROPERTIES RUN_SERIAL ON)
