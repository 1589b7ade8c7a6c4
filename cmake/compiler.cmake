# Language, warnings and floating-point rules that hold for every target.

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(VELDMARK_WERROR)
  add_compile_options(-Werror)
endif()

# GCC 12 wrongly reports overlapping copies in `"literal" + string` when it optimises.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  add_compile_options(-Wno-restrict)
endif()

# Every single-precision operation is rounded on its own: a fused multiply-add
# changes the last bits of the statistics.
add_compile_options(-ffp-contract=off)

if(VELDMARK_SANITIZE OR VELDMARK_FUZZ)
  set(sanitizers -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all)
  add_compile_options(${sanitizers} -fno-omit-frame-pointer)
  add_link_options(${sanitizers})
  add_compile_definitions(_GLIBCXX_ASSERTIONS) # the standard library's own checks
  # With sanitizers GCC wrongly reports uninitialized members inside <regex>.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
endif()

# No comparison tracing: it takes more than half of a fuzz target's run time.
if(VELDMARK_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link -fno-sanitize-coverage=trace-cmp)
endif()

# Threads count in the same places.
if(VELDMARK_COVERAGE)
  add_compile_options(--coverage -fprofile-abs-path -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

# For programs that are copied to machines with an older C++ library. The sanitizers need
# the shared library.
if(VELDMARK_STATIC_RUNTIME)
  if(VELDMARK_SANITIZE OR VELDMARK_FUZZ)
    message(FATAL_ERROR "VELDMARK_STATIC_RUNTIME doesn't go with sanitizers")
  endif()
  include(CheckLinkerFlag)
  check_linker_flag(CXX "-static-libstdc++;-static-libgcc" HAVE_STATIC_RUNTIME)
  if(NOT HAVE_STATIC_RUNTIME)
    message(FATAL_ERROR "This compiler can't link the C++ library statically: "
                        "leave VELDMARK_STATIC_RUNTIME off")
  endif()
endif()

# Programs that are installed are built at the top of the build folder.
function(declare_installed_program target)
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
  if(VELDMARK_STATIC_RUNTIME)
    target_link_options(${target} PRIVATE -static-libstdc++ -static-libgcc)
  endif()
endfunction()

# Precompiles the standard headers in the builds that run with sanitizers, where they take
# a third of the time. The other builds do without, so that a missing #include is an error.
function(precompile_standard_headers target)
  if(NOT VELDMARK_SANITIZE AND NOT VELDMARK_FUZZ)
    return()
  endif()
  if(target STREQUAL veldmark_util)
    target_precompile_headers(
      veldmark_util PRIVATE <algorithm> <array> <cmath> <cstdint> <filesystem> <functional>
                            <iostream> <memory> <optional> <span> <sstream> <string>
                            <string_view> <vector>)
  else()
    target_precompile_headers(${target} REUSE_FROM veldmark_util)
  endif()
endfunction()
