# Checks that the folders of src/ include only folders below them in the layering, and that
# the core doesn't use the console. Run with
#   cmake -DSOURCE_FOLDER=.../src -P check_includes.cmake
#
cmake_minimum_required(VERSION 3.25)

# Each folder may include the folders named here, and no other folder of the project.
set(util_may_include util)
set(stats_may_include stats)
set(grid_may_include grid)
set(console_may_include console util)
set(selection_may_include selection console grid util)
set(catalogue_may_include catalogue selection console grid util)
set(output_may_include output catalogue selection console grid stats util)
set(driver_may_include driver output catalogue selection console grid stats util)

# The files that use the console. All others are the core, which can't include them.
set(talking "^(driver|console)/|_(dialogue|screens|table)\\.(h|cc)$")

file(GLOB_RECURSE files RELATIVE "${SOURCE_FOLDER}" "${SOURCE_FOLDER}/*.h"
     "${SOURCE_FOLDER}/*.cc")
set(faults "")
foreach(file IN LISTS files)
  string(REGEX MATCH "^[^/]+" folder "${file}")
  if(NOT DEFINED ${folder}_may_include)
    string(APPEND faults "  ${file}: no rule for the folder ${folder}\n")
  endif()
  file(STRINGS "${SOURCE_FOLDER}/${file}" includes REGEX "^#include \"")
  foreach(include IN LISTS includes)
    string(REGEX REPLACE "^#include \"([^\"]*)\".*" "\\1" header "${include}")
    string(REGEX REPLACE "/.*" "" included "${header}")
    if(NOT included IN_LIST ${folder}_may_include)
      string(APPEND faults "  ${file} must not include ${included}/: ${include}\n")
    endif()
    if(header MATCHES "${talking}" AND NOT file MATCHES "${talking}")
      string(APPEND faults "  ${file} belongs to the core and must not talk: ${include}\n")
    endif()
  endforeach()
endforeach()
if(faults)
  message(FATAL_ERROR "Includes that point the wrong way:\n${faults}")
endif()
