kelvo_test(help_test QT SOURCES failure_cause_test.cpp help_test.cpp qt_operator_test.cpp LINK kelvo_shell kelvo_adapters)
add_dependencies(help_test kelvo_manual kelvo_database)
target_compile_definitions(help_test PRIVATE KELVO_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
