# What `cmake --install` installs, and the packages made of it: the program with its manual page and completions, the
# library for programs to link with or load, and what their builds find it by. No file holds the prefix.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS raw-to-tiff)
install(
  TARGETS convert_raw_to_tiff
  EXPORT raw_to_tiff
  LIBRARY
  FILE_SET HEADERS)

set(cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/raw_to_tiff)
install(EXPORT raw_to_tiff DESTINATION ${cmake_folder} NAMESPACE raw_to_tiff:: FILE raw_to_tiffConfig.cmake)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/raw_to_tiffConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/raw_to_tiffConfigVersion.cmake DESTINATION ${cmake_folder})

cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig
           OUTPUT_VARIABLE prefix_from_pkgconfig)
configure_file(packaging/raw_to_tiff.pc.in raw_to_tiff.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/raw_to_tiff.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# gzip as distributions have it: without a name and a time, so that the same page gives the same file.
find_program(GZIP gzip REQUIRED)
set(manual_page ${PROJECT_BINARY_DIR}/raw-to-tiff.1.gz)
add_custom_command(
  OUTPUT ${manual_page}
  COMMAND ${GZIP} -9nc ${PROJECT_SOURCE_DIR}/docs/raw-to-tiff.1 > ${manual_page}
  DEPENDS docs/raw-to-tiff.1
  VERBATIM)
add_custom_target(manual_page ALL DEPENDS ${manual_page})
install(FILES ${manual_page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

set(completions ${PROJECT_SOURCE_DIR}/packaging/completions)
install(FILES ${completions}/raw-to-tiff.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME raw-to-tiff)
if(CMAKE_INSTALL_PREFIX STREQUAL /usr)
  set(zsh_folder zsh/vendor-completions) # where Debian has those of packages
else()
  set(zsh_folder zsh/site-functions)
endif()
install(FILES ${completions}/raw-to-tiff.zsh DESTINATION ${CMAKE_INSTALL_DATADIR}/${zsh_folder} RENAME _raw-to-tiff)
install(FILES ${completions}/raw-to-tiff.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/raw-to-tiff)

set(RAW_TO_TIFF_MAINTAINER "raw-to-tiff maintainers <maintainers@raw-to-tiff.invalid>"
    CACHE STRING "Who answers for the packages that are built here: NAME <ADDRESS>")
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_PACKAGE_NAME raw-to-tiff)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${RAW_TO_TIFF_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "The program converts one raw file or a tree of them, with worker processes,
logs and resumption; the library lends the same conversion to other programs.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
