kelvo_test(raster_test SOURCES raster_test.cpp LINK kelvo_graphics)
kelvo_test(device_font_test SOURCES device_font_test.cpp LINK kelvo_graphics)
target_compile_definitions(device_font_test PRIVATE
  KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(device_font_test kelvo_fonts)
