kelvo_test(cli_test SOURCES cli_line_test.cpp cli_test.cpp LINK kelvo_cli kelvo_simulator)
add_dependencies(cli_test kelvo_database kelvo_fonts)
# Thousands of lines, each of which has to be on the disc: in memory they take no time.
if(IS_DIRECTORY /dev/shm)
  set_tests_properties(cli_test PROPERTIES ENVIRONMENT TMPDIR=/dev/shm)
endif()
# The real programs on real pseudo-terminals.
kelvo_test(cli_process_test QT SOURCES cli_process_test.cpp LINK kelvo_inventory)
target_compile_definitions(cli_process_test PRIVATE
  KELVO_CLI="$<TARGET_FILE:kelvo-cli>" KELVO_SIMULATOR="$<TARGET_FILE:kelvo-simulator>")
add_dependencies(cli_process_test kelvo-cli kelvo-simulator kelvo_database kelvo_fonts)
set_tests_properties(cli_process_test PROPERTIES LABELS live)
add_test(NAME cli_words_test
  COMMAND ${CMAKE_CURRENT_LIST_DIR}/cli_words_test.sh $<TARGET_FILE:kelvo-cli>
    ${PROJECT_SOURCE_DIR}/packaging)
