# What every target of the project is built with: `ostrivane_options`.

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

find_program(OSTRIVANE_CCACHE ccache)
if(OSTRIVANE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Precompiled headers are told apart by their content, as everything else is.
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros "${OSTRIVANE_CCACHE}")
endif()

add_library(ostrivane_options INTERFACE)
target_include_directories(ostrivane_options INTERFACE "${PROJECT_SOURCE_DIR}")
target_compile_features(ostrivane_options INTERFACE cxx_std_20)
# The library's own checks: an index out of range ends a test instead of reading what is there.
target_compile_definitions(ostrivane_options INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
target_compile_options(ostrivane_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wcast-align
                                                   -Woverloaded-virtual -Wconversion)
# Records are made by naming the members that matter; the others have their defaults.
target_compile_options(ostrivane_options INTERFACE -Wno-missing-field-initializers)
if(OSTRIVANE_WERROR)
  target_compile_options(ostrivane_options INTERFACE -Werror)
endif()
if(OSTRIVANE_SANITIZE)
  target_compile_options(ostrivane_options INTERFACE -fsanitize=${OSTRIVANE_SANITIZE} -fno-omit-frame-pointer
                                                     -fno-sanitize-recover=all)
  if(OSTRIVANE_SANITIZE MATCHES "undefined")
    # This check opens a pipe to look at an object, and reports what it cannot look at: tests run out of descriptors on purpose.
    target_compile_options(ostrivane_options INTERFACE -fno-sanitize=vptr)
  endif()
  target_link_options(ostrivane_options INTERFACE -fsanitize=${OSTRIVANE_SANITIZE})
endif()
if(OSTRIVANE_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "The fuzz targets need Clang: cmake --preset fuzz")
  endif()
  target_compile_options(ostrivane_options INTERFACE -fsanitize=fuzzer-no-link) # the fuzzer sees which branch was taken
endif()
if(OSTRIVANE_COVERAGE)
  target_compile_options(ostrivane_options INTERFACE --coverage)
  target_link_options(ostrivane_options INTERFACE --coverage)
endif()
