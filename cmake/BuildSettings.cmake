# SPDX-License-Identifier: Apache-2.0
# Compiler and linker settings of all targets of this project.

if(PROJECT_IS_TOP_LEVEL)
  find_program(QUORVELKIT_CCACHE ccache)
  if(QUORVELKIT_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Two checkouts of the same sources share the cache.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}
        CCACHE_NOHASHDIR=true CCACHE_SLOPPINESS=pch_defines,time_macros ${QUORVELKIT_CCACHE})
  endif()
endif()

add_library(quorvelkit_build_settings INTERFACE)
target_compile_options(quorvelkit_build_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<BOOL:${QUORVELKIT_WARNINGS_AS_ERRORS}>:-Werror>)
if(QUORVELKIT_SANITIZERS)
  # The tests are instrumented too: ThreadSanitizer misses races with code that is not.
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

# The shared library is built with link-time optimisation. The static library is not, because its
# objects would only link with the compiler that made them.
if(BUILD_SHARED_LIBS)
  include(CheckIPOSupported)
  check_ipo_supported(RESULT QUORVELKIT_OPTIMISE_WHOLE LANGUAGES CXX)
endif()

if(QUORVELKIT_COVERAGE)
  add_compile_options(-fprofile-instr-generate -fcoverage-mapping)
  add_link_options(-fprofile-instr-generate)
endif()

# Precompiles the headers that most sources include. Saves time for targets with three sources or
# more.
function(quorvelkit_precompile_headers target)
  target_precompile_headers(${target} PRIVATE
    <algorithm> <chrono> <functional> <map> <memory> <mutex> <optional> <string> <string_view>
    <utility> <vector>)
endfunction()

# Settings of a program, a test or a tool of this project. With a sanitizer, programs are compiled
# without optimisation, which takes a third of the time; the library is optimised.
function(quorvelkit_program_settings target)
  target_link_libraries(${target} PRIVATE quorvelkit_build_settings)
  if(QUORVELKIT_SANITIZERS)
    target_compile_options(${target} PRIVATE -O0)
  endif()
endfunction()

# Settings of a program with coroutines, in addition.
function(quorvelkit_coroutine_settings target)
  if(QUORVELKIT_SANITIZERS MATCHES "undefined")
    # Clang 14 cannot compile coroutines with the check of calls through function pointers: "Cannot
    # represent a difference across sections".
    target_compile_options(${target} PRIVATE -fno-sanitize=function)
  endif()
endfunction()

# Settings of a library that applications link: hidden symbols, SONAME, includes relative to the root.
function(quorvelkit_library_settings target)
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:quorvelkit_build_settings>)
  target_compile_features(${target} PUBLIC cxx_std_20)
  # Calls between functions of the library are direct. Programs cannot replace one of them.
  target_compile_options(${target} PRIVATE -fno-semantic-interposition)
  # GCC 12 would move a result from two registers to one vector register through memory, which takes
  # longer than a look-up.
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
    VERIFY_INTERFACE_HEADER_SETS ${PROJECT_IS_TOP_LEVEL})
  if(QUORVELKIT_OPTIMISE_WHOLE)
    set_target_properties(${target} PROPERTIES INTERPROCEDURAL_OPTIMIZATION_RELEASE ON)
  endif()
endfunction()
