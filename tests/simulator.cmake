kelvo_test(simulator_test
  SOURCES
    simulator_eeprom_test.cpp
    simulator_keyboards_test.cpp
    simulator_line_test.cpp
    simulator_parser_test.cpp
    simulator_screen_test.cpp
    simulator_terminal_test.cpp
  LINK kelvo_simulator)
target_compile_definitions(simulator_test PRIVATE
  KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(simulator_test kelvo_fonts)

# The utility's exchange and the Terminal, which share no code, must understand each other.
kelvo_test(simulator_exchange_test
  SOURCES simulator_exchange_test.cpp
  LINK kelvo_link kelvo_simulator)

# Captures, which the program reads too.
kelvo_test(simulator_replay_test
  SOURCES simulator_replay_test.cpp
  LINK kelvo_link kelvo_simulator_station)
target_compile_definitions(simulator_replay_test PRIVATE
  KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(simulator_replay_test kelvo_fonts)

# The real program on a real pseudo-terminal.
kelvo_test(simulator_process_test QT
  SOURCES simulator_process_test.cpp simulator_options_test.cpp
  LINK kelvo_simulator_station)
target_compile_definitions(simulator_process_test PRIVATE
  KELVO_SIMULATOR="$<TARGET_FILE:kelvo-simulator>")
add_dependencies(simulator_process_test kelvo-simulator)
set_tests_properties(simulator_process_test PROPERTIES LABELS live)

kelvo_test(simulator_window_test QT
  SOURCES simulator_window_test.cpp
  LINK kelvo_simulator_window)
