# SPDX-License-Identifier: MIT
# The warning set, the library of a folder and the executable of a test folder.

add_library(quillo_options INTERFACE)
target_compile_definitions(quillo_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH
  QUILLO_VERSION="${PROJECT_VERSION}")
target_compile_options(quillo_options INTERFACE
  -Wall -Wextra -Wshadow -Wconversion -Wno-sign-conversion
  $<$<BOOL:${QUILLO_WERROR}>:-Werror>)
target_include_directories(quillo_options INTERFACE "${CMAKE_SOURCE_DIR}/src")

# quillo_library(<name> SOURCES <files...> DEPENDS <targets...>)
# One static library for one folder of src/.
function(quillo_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(quillo_${name} STATIC ${ARG_SOURCES})
  target_link_libraries(quillo_${name} PUBLIC quillo_options ${ARG_DEPENDS})
endfunction()

# What every test executable is told of its sanitizer.
set(QUILLO_TEST_ENVIRONMENT "")
if(CMAKE_CXX_FLAGS MATCHES "fsanitize=thread")
  # Suppressions go by the names of functions.
  find_program(QUILLO_SYMBOLIZER NAMES llvm-symbolizer-19 llvm-symbolizer REQUIRED)
  set(QUILLO_TEST_ENVIRONMENT "TSAN_OPTIONS=ignore_noninstrumented_modules=1 \
suppressions=${CMAKE_SOURCE_DIR}/tests/tsan.supp external_symbolizer_path=${QUILLO_SYMBOLIZER}")
endif()

# quillo_test(<name> [DISPLAY] [LABEL <label>] SOURCES <files...> DEPENDS <targets...>)
# One test executable for one folder of tests/; DISPLAY runs it on a private X server.
function(quillo_test name)
  cmake_parse_arguments(ARG "DISPLAY" "LABEL" "SOURCES;DEPENDS" ${ARGN})
  add_executable(test_${name} ${ARG_SOURCES})
  target_link_libraries(test_${name} PRIVATE quillo_test_support ${ARG_DEPENDS})
  target_include_directories(test_${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  target_compile_definitions(test_${name} PRIVATE
    QUILLO_TEST_DATA="${CMAKE_SOURCE_DIR}/tests/data")
  if(ARG_DISPLAY)
    add_test(NAME ${name} COMMAND "${CMAKE_SOURCE_DIR}/tests/desktop/with_display"
      $<TARGET_FILE:test_${name}>)
  else()
    add_test(NAME ${name} COMMAND test_${name})
  endif()
  if(NOT ARG_LABEL)
    set(ARG_LABEL unit)
  endif()
  set_tests_properties(${name} PROPERTIES LABELS "${ARG_LABEL}" TIMEOUT 300)
  set_tests_properties(${name} PROPERTIES ENVIRONMENT "${QUILLO_TEST_ENVIRONMENT}")
endfunction()

# Coverage for the fuzzers; each fuzz target adds the main function when it is linked.
if(QUILLO_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
