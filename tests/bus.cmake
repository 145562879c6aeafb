kelvo_test(bus_test
  SOURCES terminal_search_test.cpp transfer_faults_test.cpp transfer_test.cpp
  LINK kelvo_bus kelvo_simulator)
kelvo_test(bus_page_test QT SOURCES search_page_test.cpp LINK kelvo_bus_page kelvo_simulator)
add_dependencies(bus_page_test kelvo_database)
