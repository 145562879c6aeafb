# kelvo_library(NAME SOURCES... [ALONE sources...] [QT|CORE] [LINK libs...])
#
# One room of the house, or one room's page. Without QT the target sees no Qt
# header at all, so that a feature which reaches for a widget does not compile;
# with CORE it sees the toolkit without its windows.
# Most presets compile several sources together; those that share a name with
# others in what is theirs alone stand behind ALONE.
function(kelvo_library name)
  cmake_parse_arguments(ARG "QT;CORE" "" "SOURCES;ALONE;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES} ${ARG_ALONE})
  kelvo_alone(${ARG_ALONE})
  target_link_libraries(${name} PUBLIC ${ARG_LINK})
  if(ARG_QT)
    kelvo_settings(${name} QT)
    kelvo_moc(${name})
    target_link_libraries(${name} PUBLIC Qt6::Widgets)
  elseif(ARG_CORE)
    kelvo_settings(${name} CORE)
    kelvo_moc(${name})
    target_link_libraries(${name} PUBLIC Qt6::Core)
  else()
    kelvo_settings(${name})
  endif()
endfunction()

# kelvo_alone([sources...]): they are compiled one by one always.
function(kelvo_alone)
  if(ARGN)
    set_source_files_properties(${ARGN} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  endif()
endfunction()

# kelvo_settings(NAME [QT|CORE] [TEST]): what every target of the project is compiled with, and the
# precompiled headers of its kind.
function(kelvo_settings name)
  cmake_parse_arguments(ARG "QT;CORE;TEST" "" "" ${ARGN})
  set(kind)
  if(ARG_QT)
    string(APPEND kind _qt)
  elseif(ARG_CORE)
    string(APPEND kind _core)
  endif()
  if(ARG_TEST)
    string(APPEND kind _test)
  endif()
  kelvo_compiled(${name} "${kind}")
  target_precompile_headers(${name} REUSE_FROM kelvo${kind}_headers)
endfunction()

# The same for a target that has headers of its own to precompile; its kind is empty or begins with
# an underscore.
function(kelvo_compiled name kind)
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_compile_options(${name} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 takes '"text" + std::string' for overlapping memory when it optimizes, and a scoped
    # enumerator for a declaration that hides others.
    target_compile_options(${name} PRIVATE -Wno-restrict -Wshadow=local)
    # Between the sanitizers' checks it loses sight of what <regex> has set.
    if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
      target_compile_options(${name} PRIVATE -Wno-maybe-uninitialized)
    endif()
    # It would search its memory for garbage again and again, with the toolkit's headers in it.
    target_compile_options(${name} PRIVATE --param=ggc-min-heapsize=1000000)
  else()
    target_compile_options(${name} PRIVATE -Wshadow)
  endif()
  # To optimize what the sanitizers have put in takes three quarters of the compiler's time; only the
  # rooms that reckon, not the windows and the tests, are worth it. These rooms are also what is fed
  # with garbage.
  if(CMAKE_CXX_FLAGS MATCHES "-fsanitize" AND kind)
    target_compile_options(${name} PRIVATE -O0)
  elseif(KELVO_FUZZ)
    target_compile_options(${name} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
  # What is delivered reads files and lines that may hold anything.
  target_compile_options(${name} PRIVATE
    $<$<CONFIG:Release>:-fstack-protector-strong;-D_FORTIFY_SOURCE=2>)
  target_link_options(${name} PRIVATE $<$<CONFIG:Release>:-Wl,-z,relro,-z,now>)
  if(KELVO_WERROR)
    target_compile_options(${name} PRIVATE -Werror)
  endif()
  target_compile_definitions(${name} PRIVATE QT_NO_KEYWORDS QT_NO_FOREACH
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
endfunction()
