kelvo_test(bus_test
  SOURCES quick_search_test.cpp terminal_search_test.cpp transfer_faults_test.cpp transfer_test.cpp
  LINK kelvo_bus kelvo_simulator)
target_compile_definitions(bus_test PRIVATE KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(bus_test kelvo_fonts)
# Transfers and searches over random lines, more of them with KELVO_FIRE=N in the environment.
set_tests_properties(bus_test PROPERTIES LABELS fire)
kelvo_test(bus_page_test QT SOURCES search_page_test.cpp LINK kelvo_bus_page kelvo_simulator)
add_dependencies(bus_page_test kelvo_database)
kelvo_test(equip_test SOURCES equip_test.cpp equipment_test.cpp LINK kelvo_inventory kelvo_simulator)
kelvo_test(equip_dialog_test QT SOURCES equip_dialog_test.cpp LINK kelvo_inventory_page kelvo_simulator)
add_dependencies(equip_dialog_test kelvo_database)
kelvo_test(proven_write_test SOURCES comparison_test.cpp proven_write_test.cpp write_run_test.cpp LINK kelvo_inventory kelvo_simulator)
target_compile_definitions(proven_write_test PRIVATE KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(proven_write_test kelvo_fonts)
