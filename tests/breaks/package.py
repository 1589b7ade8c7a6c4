"""Breaks of the installation and the Debian package."""

from catchers import INSTALLED, PACKAGE
from definition import Break
from edits import Change

PACKAGING = "cmake/packaging.cmake"
DOCUMENTS = "cmake/install_documents.cmake"

BREAKS = [
    Break(
        "manual pages of section 5 are not installed",
        INSTALLED,
        Change(PACKAGING, "foreach(section 1 5)", "foreach(section 1)"),
    ),
    Break(
        "tersify(1) is not installed",
        INSTALLED,
        Change(PACKAGING, "docs/man/*.${section}", "docs/man/[sv]*.${section}"),
    ),
    Break(
        "variance-report-file.md is not installed",
        INSTALLED,
        Change(PACKAGING, "set(developer_pages performance.md testing.md)",
               "set(developer_pages performance.md testing.md variance-report-file.md)"),
    ),
    Break(
        "testing.md is installed",
        INSTALLED,
        Change(PACKAGING, "set(developer_pages performance.md testing.md)",
               "set(developer_pages performance.md)"),
    ),
    Break(
        "recipes are not installed",
        INSTALLED,
        Change(DOCUMENTS, '"^docs/man/|__pycache__"', '"^docs/man/|^docs/recipes/|__pycache__"'),
    ),
    Break(
        "CHANGELOG is not installed",
        INSTALLED,
        Change(DOCUMENTS, '"${source_folder}/CHANGELOG.md"', ""),
    ),
    Break(
        "links of the installed README lead nowhere",
        INSTALLED,
        Change(DOCUMENTS,
               '    string(REGEX REPLACE "\\n## For developers\\n.*" "" text "${text}")\n'
               '    mend_links("${text}" "${folder}" text)\n', ""),
    ),
    Break(
        "copyright and changelog are exchanged",
        INSTALLED,
        Change(PACKAGING, "install(FILES packaging/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})",
               "install(FILES packaging/changelog DESTINATION ${CMAKE_INSTALL_DOCDIR} "
               "RENAME copyright)"),
    ),
    Break(
        "the package has no maintainer",
        PACKAGE,
        Change(PACKAGING,
               "set(CPACK_DEBIAN_PACKAGE_MAINTAINER\n"
               '    "The Veldmark authors <maintainers@users.noreply.example>")\n', ""),
    ),
    Break(
        "the package depends on R and gnuplot",
        PACKAGE,
        Change(PACKAGING, "set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)\n",
               "set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)\n"
               'set(CPACK_DEBIAN_PACKAGE_DEPENDS "r-base, gnuplot")\n'),
    ),
    Break(
        "the package's changelog is of another version",
        PACKAGE,
        Change("packaging/changelog", "veldmark (24.0.0)", "veldmark (24.0.1)"),
    ),
    Break(
        "no clean system can be made, and CI asks for it",
        PACKAGE,
        Change("scripts/check_package", "  if [[ -f $base ]]; then\n    mkdir",
               "  return 1\n  if [[ -f $base ]]; then\n    mkdir"),
        CI="true",
    ),
]
