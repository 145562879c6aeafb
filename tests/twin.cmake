kelvo_test(twin_test SOURCES preview_test.cpp twins_test.cpp LINK kelvo_twin)
target_compile_definitions(twin_test PRIVATE KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(twin_test kelvo_fonts)
