add_executable(graphics_benchmark graphics_benchmark.cpp)
kelvo_settings(graphics_benchmark)
target_link_libraries(graphics_benchmark PRIVATE kelvo_graphics_page benchmark::benchmark)
target_compile_definitions(graphics_benchmark PRIVATE
  KELVO_FONT_FOLDER="${KELVO_PROGRAM_DIR}/fonts")
add_dependencies(graphics_benchmark kelvo_fonts)
