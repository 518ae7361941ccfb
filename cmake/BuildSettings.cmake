# SPDX-License-Identifier: Apache-2.0
# How every target of this project is compiled.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Two checkouts of the same sources share what was compiled once.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}
      CCACHE_NOHASHDIR=true CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
endif()

add_library(quorvelkit_build_settings INTERFACE)
target_compile_options(quorvelkit_build_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<BOOL:${QUORVELKIT_WARNINGS_AS_ERRORS}>:-Werror>)
if(QUORVELKIT_SANITIZERS)
  # Every object takes part, also those of the tests: a half-instrumented program misses races.
  add_compile_options(-fsanitize=${QUORVELKIT_SANITIZERS} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer -O1)
  add_link_options(-fsanitize=${QUORVELKIT_SANITIZERS})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    add_compile_options(
      -fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/cmake/SanitizerIgnoreList.txt)
    if(QUORVELKIT_SANITIZERS MATCHES "address")
      add_compile_options(-fsanitize-address-use-after-return=always)
    endif()
  endif()
endif()

# A shared library is optimised as a whole. A static one is not: its objects would only link with the
# compiler that made them.
if(BUILD_SHARED_LIBS)
  include(CheckIPOSupported)
  check_ipo_supported(RESULT QUORVELKIT_OPTIMISE_WHOLE LANGUAGES CXX)
endif()

if(QUORVELKIT_COVERAGE)
  add_compile_options(-fprofile-instr-generate -fcoverage-mapping)
  add_link_options(-fprofile-instr-generate)
endif()

# What nearly every source includes is read once a target, with further headers where given; worth it
# from three sources on.
function(quorvelkit_precompile_headers target)
  target_precompile_headers(${target} PRIVATE
    <algorithm> <chrono> <functional> <map> <memory> <mutex> <optional> <string> <string_view>
    <utility> <vector> ${ARGN})
endfunction()

# A program, test or tool of this project. With a sanitizer it is compiled without optimisation, in a
# third of the time; the library, which does the work, is not.
function(quorvelkit_program_settings target)
  target_link_libraries(${target} PRIVATE quorvelkit_build_settings)
  if(QUORVELKIT_SANITIZERS)
    target_compile_options(${target} PRIVATE -O0)
  endif()
endfunction()

# A library that applications link: hidden symbols, SONAME, headers included from the root.
function(quorvelkit_library_settings target)
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:quorvelkit_build_settings>)
  target_compile_features(${target} PUBLIC cxx_std_20)
  # Its functions call each other directly: nobody puts others in their place.
  target_compile_options(${target} PRIVATE -fno-semantic-interposition)
  # What a call returns in two registers stays in them: put together in one vector register by way
  # of memory, it is waited for longer than a look-up takes.
  target_compile_options(${target} PRIVATE -fno-tree-slp-vectorize)
  target_link_options(${target} PRIVATE -Wl,-Bsymbolic-functions)
  quorvelkit_precompile_headers(${target})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR})
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON
    VERIFY_INTERFACE_HEADER_SETS ON)
  if(QUORVELKIT_OPTIMISE_WHOLE)
    set_target_properties(${target} PROPERTIES INTERPROCEDURAL_OPTIMIZATION_RELEASE ON)
  endif()
endfunction()
