kelvo_test(sheet_test SOURCES sheet_test.cpp LINK kelvo_sheet)
target_compile_definitions(sheet_test PRIVATE KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(sheet_test kelvo_fonts)
# It reads the files back with pdftotext, of the package poppler-utils.
kelvo_test(sheet_page_test QT SOURCES sheet_page_test.cpp LINK kelvo_sheet_page)
target_compile_definitions(sheet_page_test PRIVATE KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(sheet_page_test kelvo_fonts kelvo_database)
