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
