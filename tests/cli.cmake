kelvo_test(cli_test SOURCES cli_test.cpp ALONE cli_line_test.cpp LINK kelvo_cli kelvo_simulator)
add_dependencies(cli_test kelvo_database kelvo_fonts)
set_tests_properties(cli_test PROPERTIES COST 20)  # it waits for the disc
