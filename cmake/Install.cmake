# What is installed: the program with its libraries, and what a host needs to take the library in:
# headers, a CMake package, a pkg-config file and the tests for hosts. `cpack` makes a Debian package
# of it.
include(CMakePackageConfigHelpers)

file(GLOB host_headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/host/*.h)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/velawapd)
set(documents_folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/applydic)
set(conformance_folder ${CMAKE_INSTALL_DATADIR}/velawapd/conformance)

target_include_directories(velawapd INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
install(TARGETS velawapd EXPORT velawapd
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT velawapd NAMESPACE velawapd:: FILE velawapdTargets.cmake
        DESTINATION ${package_folder})
install(TARGETS velahost LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} NAMELINK_SKIP)
install(TARGETS applydic RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

install(FILES ${host_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/velawapd)
install(FILES conformance/Conformance.h
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/velawapd/conformance)
install(FILES conformance/Conformance.cpp conformance/Layout.cpp
        DESTINATION ${conformance_folder})

configure_package_config_file(cmake/velawapdConfig.cmake.in velawapdConfig.cmake
                              INSTALL_DESTINATION ${package_folder} PATH_VARS conformance_folder)
write_basic_package_version_file(velawapdConfigVersion.cmake COMPATIBILITY SameMajorVersion)
file(RELATIVE_PATH pc_to_prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(cmake/velawapd.pc.in velawapd.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/velawapdConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/velawapdConfigVersion.cmake
        DESTINATION ${package_folder})
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/velawapd.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(help_folder ${CMAKE_BINARY_DIR}/program)
install(FILES ${help_folder}/applydic.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${help_folder}/applydic.bash RENAME applydic
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
install(FILES ${help_folder}/applydic.fish
        DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
# Zsh looks in the first of these below /usr/local, and in the second below /usr.
foreach(folder site-functions vendor-completions)
  install(FILES ${help_folder}/_applydic DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/${folder})
endforeach()

install(FILES README.md CHANGELOG.md DESTINATION ${documents_folder})
install(DIRECTORY docs/ DESTINATION ${documents_folder} FILES_MATCHING PATTERN "*.md"
        PATTERN "*.png")
install(DIRECTORY examples/ DESTINATION ${documents_folder}/examples)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME applydic)
set(CPACK_PACKAGE_CONTACT "The maintainers of applydic <maintainers@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "carry the dictionary of one codebook over to another")
set(CPACK_PACKAGE_DESCRIPTION
"Applies the labels, missing values, formats, levels, sets and documents of one
DDI Codebook file to another, and adds variables, by the command APPLY
DICTIONARY.
Holds the program, and the library by which a statistics package carries out
that command.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
include(CPack)
