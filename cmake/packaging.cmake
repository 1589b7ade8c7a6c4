# The files that `cmake --install` installs, and the Debian package (`cpack -G DEB`).

include(GNUInstallDirs)

install(TARGETS veldmark tersify series_to_grid
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# Install code that makes a temporary folder of its own, as two installations may run at
# once.
set(own_folder "
      string(RANDOM LENGTH 16 own_folder)
      set(own_folder \"${PROJECT_BINARY_DIR}/installing-\${own_folder}\")
      file(MAKE_DIRECTORY \"\${own_folder}\")")

if(TARGET veldmark-extract)
  # OPTIONAL: the README builds without this program.
  install(TARGETS veldmark-extract RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} OPTIONAL)
  install(FILES packaging/completions/veldmark-extract
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
endif()

# install_compressed(FILE FOLDER NAME): installs FILE as NAME.gz, or uncompressed as NAME
# if there is no gzip.
find_program(GZIP gzip)
function(install_compressed file folder name)
  if(NOT GZIP)
    install(FILES ${file} DESTINATION ${folder} RENAME ${name})
    return()
  endif()
  install(
    CODE "
      ${own_folder}
      set(compressed \"\${own_folder}/${name}.gz\")
      execute_process(COMMAND \"${GZIP}\" -9nc INPUT_FILE \"${file}\"
                      OUTPUT_FILE \"\${compressed}\" COMMAND_ERROR_IS_FATAL ANY)
      set(destination \"${folder}\")
      cmake_path(ABSOLUTE_PATH destination BASE_DIRECTORY \"\${CMAKE_INSTALL_PREFIX}\")
      file(INSTALL \"\${compressed}\" DESTINATION \"\${destination}\")
      file(REMOVE_RECURSE \"\${own_folder}\")")
endfunction()

foreach(section 1 5)
  file(GLOB pages CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/man/*.${section}")
  foreach(page IN LISTS pages)
    cmake_path(GET page FILENAME name)
    if(name STREQUAL "veldmark-extract.1" AND NOT TARGET veldmark-extract)
      continue()
    endif()
    install_compressed(${page} ${CMAKE_INSTALL_MANDIR}/man${section} ${name})
  endforeach()
endforeach()

# The documents keep their relative locations, so that links between them hold.
install(
  CODE "
    ${own_folder}
    set(source_folder \"${PROJECT_SOURCE_DIR}\")
    set(work_folder \"\${own_folder}\")
    set(doc_folder \"${CMAKE_INSTALL_DOCDIR}\")
    set(sample_folder \"${CMAKE_INSTALL_DATADIR}/veldmark/sample\")
    cmake_path(ABSOLUTE_PATH doc_folder BASE_DIRECTORY \"\${CMAKE_INSTALL_PREFIX}\")
    cmake_path(ABSOLUTE_PATH sample_folder BASE_DIRECTORY \"\${CMAKE_INSTALL_PREFIX}\")
    set(developer_pages performance.md testing.md)
    include(\"${PROJECT_SOURCE_DIR}/cmake/install_documents.cmake\")
    file(REMOVE_RECURSE \"\${own_folder}\")")
# Every Debian package has these.
install(FILES packaging/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
install_compressed("${PROJECT_SOURCE_DIR}/packaging/changelog" ${CMAKE_INSTALL_DOCDIR}
                   changelog)

# The series of the sample are compressed already.
install(DIRECTORY data/sample DESTINATION ${CMAKE_INSTALL_DATADIR}/veldmark)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME veldmark)
set(CPACK_PACKAGE_VENDOR "The Veldmark authors")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "cuts monthly climate series out of CRU TS grid files")
set(CPACK_PACKAGE_DESCRIPTION
    "Veldmark asks for a climate variable, a rectangle of the globe and a
span of years, and writes the monthly series of every grid cell in it
as plain text. It reads grid files of CRU TS 4.01 and of the
self-calibrating Palmer Drought Severity Index. Tersify, which condenses
published files, and a sample of real values are included.")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/package")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER
    "The Veldmark authors <maintainers@users.noreply.example>")
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# The dependencies are those of the built programs. libnetcdf, which veldmark-extract loads
# only when needed, is among them because tersify links it.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
