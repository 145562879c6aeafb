kelvo_test(sheet_test SOURCES sheet_test.cpp LINK kelvo_sheet)
target_compile_definitions(sheet_test PRIVATE KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(sheet_test kelvo_fonts)
