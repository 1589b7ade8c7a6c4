# Checks that the companions include only folders below their own in the layering. Run with
#   cmake -DPROJECT_FOLDER=... -P check_companion_includes.cmake

cmake_minimum_required(VERSION 3.25)

# Each folder may include the folders named here, and no other folder of the project.
set(companion_may_include companion util)
set(tersify_may_include tersify companion catalogue grid util)
set(extract_may_include extract companion catalogue grid output selection stats util)
set(series_to_grid_may_include series_to_grid companion grid util)

set(faults "")
foreach(folder IN ITEMS companion extract tersify tools/series_to_grid)
  get_filename_component(name "${folder}" NAME)
  file(GLOB files RELATIVE "${PROJECT_FOLDER}" "${PROJECT_FOLDER}/${folder}/*.h"
       "${PROJECT_FOLDER}/${folder}/*.cc")
  foreach(file IN LISTS files)
    file(STRINGS "${PROJECT_FOLDER}/${file}" includes REGEX "^#include \"")
    foreach(include IN LISTS includes)
      string(REGEX REPLACE "^#include \"([^/\"]+)/?.*" "\\1" included "${include}")
      if(NOT included IN_LIST ${name}_may_include)
        string(APPEND faults "  ${file} must not include ${included}/: ${include}\n")
      endif()
    endforeach()
  endforeach()
endforeach()
if(faults)
  message(FATAL_ERROR "Includes that point the wrong way:\n${faults}")
endif()
