# What `cmake --install` puts where, and the Debian package (`cpack -G DEB`).

include(GNUInstallDirs)

install(TARGETS veldmark tersify series_to_grid
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

foreach(section 1 5)
  file(GLOB pages CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/docs/man/*.${section}")
  install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section})
endforeach()

# The documents keep their places relative to each other, so that links in them hold.
install(FILES README.md CHANGELOG.md ARCHITECTURE.md CONTRIBUTING.md LICENSE
        DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(
  DIRECTORY docs
  DESTINATION ${CMAKE_INSTALL_DOCDIR}
  PATTERN "man" EXCLUDE
  PATTERN "__pycache__" EXCLUDE)
# Debian looks for the licence under this name.
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)

# The series are compressed as they are; a package doesn't compress them again.
install(DIRECTORY data/sample DESTINATION ${CMAKE_INSTALL_DATADIR}/veldmark)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME veldmark)
set(CPACK_PACKAGE_VENDOR "The Veldmark authors")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION
    "Veldmark asks for a climate variable, a rectangle of the globe and a span of years,
and writes the monthly series of every grid cell in it as plain text. It reads grid
files of CRU TS 4.01 and of the self-calibrating Palmer Drought Severity Index. A
sample of real values is included.")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/package")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER
    "The Veldmark authors <maintainers@users.noreply.example>")
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# The dependencies are those of the built programs.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
