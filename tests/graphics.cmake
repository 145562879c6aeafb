find_package(Qt6 6.4 REQUIRED COMPONENTS Test)

kelvo_test(raster_test SOURCES raster_test.cpp LINK kelvo_graphics)
kelvo_test(device_font_test SOURCES device_font_test.cpp LINK kelvo_graphics)
target_compile_definitions(device_font_test PRIVATE
  KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(device_font_test kelvo_fonts)
kelvo_test(drawing_test SOURCES
  create_bitmap_test.cpp create_pic_test.cpp painter_test.cpp pic_reader_test.cpp save_bitmap_test.cpp
  LINK kelvo_graphics)
target_compile_definitions(drawing_test PRIVATE KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(drawing_test kelvo_fonts)
kelvo_test(editing_test SOURCES curves_test.cpp editing_test.cpp tool_test.cpp LINK kelvo_graphics)
kelvo_test(wmf_test SOURCES prepare_test.cpp wmf_foreign_test.cpp wmf_test.cpp LINK kelvo_graphics)
target_compile_definitions(wmf_test PRIVATE KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(wmf_test kelvo_fonts)
kelvo_test(grafik_test QT SOURCES
  grafik_files_test.cpp
  grafik_group_test.cpp
  grafik_keys_test.cpp
  grafik_lists_test.cpp
  grafik_print_test.cpp
  grafik_random_test.cpp
  grafik_symbols_test.cpp
  grafik_test.cpp
  grafik_typing_test.cpp
  grafik_view_test.cpp
  LINK kelvo_graphics_page)
target_link_libraries(grafik_test PRIVATE Qt6::Test)
target_compile_definitions(grafik_test PRIVATE KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(grafik_test kelvo_fonts)
kelvo_test(drawing_on_terminal_test SOURCES drawing_on_terminal_test.cpp
  LINK kelvo_graphics kelvo_simulator)
target_compile_definitions(drawing_on_terminal_test PRIVATE
  KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(drawing_on_terminal_test kelvo_fonts)
set_tests_properties(drawing_on_terminal_test PROPERTIES LABELS fire)

if(KELVO_FUZZ)
  add_subdirectory(fuzz)
endif()
