# Killed, unplugged and closed at any moment; a failing file system; hours of use. Longer with
# KELVO_FIRE=N in the environment.
set(fire ${CMAKE_CURRENT_LIST_DIR})
add_executable(fire_saver ${fire}/saver.cpp)
kelvo_settings(fire_saver QT)
target_link_libraries(fire_saver PRIVATE kelvo_driver)
add_dependencies(fire_saver kelvo_database kelvo_fonts)

kelvo_test(kill_test QT SOURCES fire/kill_test.cpp LINK kelvo_store)
target_compile_definitions(kill_test PRIVATE KELVO_SAVER="$<TARGET_FILE:fire_saver>")
add_dependencies(kill_test fire_saver)
set_tests_properties(kill_test PROPERTIES LABELS "live;fire")

kelvo_test(unplug_test QT SOURCES fire/first_start_test.cpp fire/unplug_test.cpp LINK kelvo_program)
add_dependencies(unplug_test kelvo_fonts kelvo_database)
set_tests_properties(unplug_test PROPERTIES LABELS "live;fire")

add_executable(fire_ender ${fire}/ender.cpp)
kelvo_settings(fire_ender QT)
target_link_libraries(fire_ender PRIVATE kelvo_program)
add_dependencies(fire_ender kelvo_database kelvo_fonts)
kelvo_test(end_test QT SOURCES fire/end_test.cpp LINK kelvo_inventory)
target_compile_definitions(end_test PRIVATE KELVO_ENDER="$<TARGET_FILE:fire_ender>")
add_dependencies(end_test fire_ender)
set_tests_properties(end_test PROPERTIES LABELS "live;fire")

kelvo_test(failing_files_test QT
  SOURCES fire/failing_cli_test.cpp fire/failing_dialogs_test.cpp fire/failing_files_test.cpp
  ALONE fire/failing_system.cpp
  LINK kelvo_cli kelvo_shell kelvo_simulator)
add_dependencies(failing_files_test kelvo_fonts kelvo_database)
set_tests_properties(failing_files_test PROPERTIES LABELS fire)
if(IS_DIRECTORY /dev/shm)
  set_property(TEST failing_files_test APPEND PROPERTY ENVIRONMENT TMPDIR=/dev/shm)
endif()

# Counts what the C library has handed out, which a sanitizer does itself.
kelvo_test(memory_test QT SOURCES fire/memory_test.cpp LINK kelvo_program)
add_dependencies(memory_test kelvo_fonts kelvo_database)
set_tests_properties(memory_test PROPERTIES LABELS fire)

kelvo_test(long_use_test QT SOURCES fire/long_use_test.cpp LINK kelvo_driver)
add_dependencies(long_use_test kelvo-simulator kelvo_fonts kelvo_database)
# Its partner is a process of its own that has to answer in time.
set_tests_properties(long_use_test PROPERTIES RUN_SERIAL ON LABELS "fire;live")
