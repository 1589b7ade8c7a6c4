# Installs the users' documents, with links adjusted to the installed layout. Included at
# install time, with
#   source_folder      top of the sources
#   work_folder        an empty folder for the adjusted pages
#   doc_folder         where they are installed
#   sample_folder      where the sample is installed
#   developer_pages    pages of docs/ that are left out

cmake_policy(PUSH)
cmake_policy(VERSION 3.25)

# Sets `result` to a page's text, in which links to the sample lead to the installed sample,
# and links to files that are not installed are replaced by their text.
function(mend_links text page_folder result)
  set(mended "")
  while(text MATCHES "\\[([^]]*)\\]\\(([^)]+)\\)")
    set(link "${CMAKE_MATCH_0}")
    set(words "${CMAKE_MATCH_1}")
    set(target "${CMAKE_MATCH_2}")
    string(FIND "${text}" "${link}" place)
    string(LENGTH "${link}" length)
    string(SUBSTRING "${text}" 0 ${place} before)
    math(EXPR after "${place} + ${length}")
    string(SUBSTRING "${text}" ${after} -1 text)
    mended_link("${words}" "${target}" "${page_folder}" link)
    string(APPEND mended "${before}${link}")
  endwhile()
  set(${result} "${mended}${text}" PARENT_SCOPE)
endfunction()

function(mended_link words target page_folder result)
  set(${result} "[${words}](${target})" PARENT_SCOPE)
  if(target MATCHES "^#|://")
    return()
  endif()
  string(REGEX REPLACE "#.*" "" file "${target}")
  cmake_path(APPEND page_folder "${file}" OUTPUT_VARIABLE file)
  cmake_path(NORMAL_PATH file)
  string(REGEX REPLACE "/$" "" file "${file}")
  if(file MATCHES "^data/sample(/.*)?$")
    set(installed "${sample_folder}${CMAKE_MATCH_1}")
    cmake_path(RELATIVE_PATH installed BASE_DIRECTORY "${doc_folder}/${page_folder}")
    set(${result} "[${words}](${installed})" PARENT_SCOPE)
  elseif(NOT file IN_LIST documents AND NOT file IN_LIST document_folders)
    set(${result} "${words}" PARENT_SCOPE)
  endif()
endfunction()

file(
  GLOB_RECURSE documents
  RELATIVE "${source_folder}"
  "${source_folder}/docs/*" "${source_folder}/README.md" "${source_folder}/CHANGELOG.md"
  "${source_folder}/LICENSE" "${source_folder}/CITATION.cff")
list(FILTER documents EXCLUDE REGEX "^docs/man/|__pycache__")
list(FILTER documents INCLUDE REGEX "^docs/|^[^/]+$")
foreach(page IN LISTS developer_pages)
  list(REMOVE_ITEM documents "docs/${page}")
endforeach()
set(document_folders docs docs/recipes)

foreach(document IN LISTS documents)
  cmake_path(GET document PARENT_PATH folder)
  set(file "${source_folder}/${document}")
  if(document MATCHES "\\.md$")
    file(READ "${file}" text)
    string(REGEX REPLACE "\n## For developers\n.*" "" text "${text}")
    mend_links("${text}" "${folder}" text)
    set(file "${work_folder}/${document}")
    file(WRITE "${file}" "${text}")
  endif()
  file(INSTALL "${file}" DESTINATION "${doc_folder}/${folder}")
endforeach()

cmake_policy(POP)
