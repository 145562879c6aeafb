kelvo_test(keyboard_tables_test SOURCES keyboard_tables_test.cpp LINK kelvo_keyboards)
kelvo_test(keyboard_pages_test QT SOURCES at_page_test.cpp matrix_page_test.cpp LINK kelvo_shell)
kelvo_test(text_page_test QT SOURCES text_page_test.cpp LINK kelvo_shell)
add_dependencies(text_page_test kelvo_fonts)
