# Databases with odd contents, in the whole window. Longer with KELVO_FIRE=N in the environment.
set(fire ${CMAKE_CURRENT_LIST_DIR})
kelvo_test(odd_databases_test QT SOURCES fire/odd_databases.cpp fire/odd_databases_test.cpp
  LINK kelvo_shell)
add_dependencies(odd_databases_test kelvo_fonts kelvo_database)
target_compile_definitions(odd_databases_test PRIVATE
  KELVO_DATABASES="${CMAKE_CURRENT_SOURCE_DIR}/databases" KELVO_STORE="${PROJECT_SOURCE_DIR}/store")
set_tests_properties(odd_databases_test PROPERTIES LABELS fire)
