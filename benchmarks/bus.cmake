add_executable(bus_benchmark bus_benchmark.cpp)
kelvo_settings(bus_benchmark)
target_compile_definitions(bus_benchmark PRIVATE KELVO_PROGRAM_DIR="${KELVO_PROGRAM_DIR}")
target_link_libraries(bus_benchmark PRIVATE
  kelvo_adapters kelvo_bus kelvo_driver kelvo_simulator benchmark::benchmark)
add_dependencies(bus_benchmark kelvo-simulator kelvo_fonts)
