# What `cmake --install` lays out and what `cpack -G DEB` packs: the programs, the
# library (viewer plug-in and measure store in one), the data the programs read, and what
# a recording tool builds with: the C header, a pkg-config file and a CMake package that
# gives Kavendi::kavendi.
include(CMakePackageConfigHelpers)

# The host SDK stand-in is the plug-in's business only: it stays out of the linker's
# search path, in a directory of its own that the programs and the library name.
set(KVD_PRIVATE_LIBDIR ${CMAKE_INSTALL_LIBDIR}/kavendi)
set_target_properties(kvd kavendi-studio PROPERTIES
    INSTALL_RPATH "$ORIGIN/${KVD_LIBDIR_FROM_BINDIR};$ORIGIN/${KVD_LIBDIR_FROM_BINDIR}/kavendi")
set_target_properties(kavendi PROPERTIES INSTALL_RPATH "$ORIGIN/kavendi")

install(TARGETS kvd kavendi-studio RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS kavendi LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS sdk LIBRARY DESTINATION ${KVD_PRIVATE_LIBDIR} NAMELINK_SKIP)
install(FILES store/kvdstore.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kavendi)
install(FILES studio/data/KVD_built_in.cfg DESTINATION ${CMAKE_INSTALL_DATADIR}/kavendi)
# The catalogues the build makes, when it makes any.
install(DIRECTORY ${CMAKE_BINARY_DIR}/translations/ OPTIONAL
        DESTINATION ${CMAKE_INSTALL_DATADIR}/kavendi/translations FILES_MATCHING PATTERN "*.qm")
install(FILES studio/data/kavendi-studio.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES studio/data/kavendi-studio.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

# The manual page of kvd, made from its own help; not in sanitizer or fuzzing builds,
# whose kvd may report at exit, and which are never installed.
find_program(KVD_HELP2MAN help2man)
if(KVD_HELP2MAN AND NOT KVD_SANITIZE AND NOT KVD_FUZZ)
    set(kvd_man ${CMAKE_BINARY_DIR}/man/kvd.1)
    add_custom_command(
        OUTPUT ${kvd_man}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/man
        # In English, whatever language the build runs in: kvd speaks the user's.
        COMMAND ${CMAKE_COMMAND} -E env --unset=LANGUAGE LC_ALL=C.UTF-8 LANG=C.UTF-8
                ${CMAKE_COMMAND} -DKVD=$<TARGET_FILE:kvd> -DHELP2MAN=${KVD_HELP2MAN}
                -DOUTPUT=${kvd_man} -P ${PROJECT_SOURCE_DIR}/cmake/KvdManPage.cmake
        DEPENDS kvd ${PROJECT_SOURCE_DIR}/cmake/KvdManPage.cmake
        COMMENT "Writing the manual page of kvd")
    add_custom_target(kvd_man ALL DEPENDS ${kvd_man})
    install(FILES ${kvd_man} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
elseif(NOT KVD_HELP2MAN)
    message(WARNING "help2man not found: no manual page for kvd (Debian package help2man)")
endif()

# pkg-config: paths from the file's own place, so that any prefix works, the one the
# package installs to as well as a tree unpacked elsewhere.
file(RELATIVE_PATH KVD_PC_TO_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" KVD_PC_TO_PREFIX "${KVD_PC_TO_PREFIX}")
configure_file(cmake/kavendi.pc.in ${CMAKE_BINARY_DIR}/kavendi.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/kavendi.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(KVD_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/Kavendi)
set(KVD_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/kavendi)
configure_package_config_file(cmake/KavendiConfig.cmake.in
    ${CMAKE_BINARY_DIR}/KavendiConfig.cmake
    INSTALL_DESTINATION ${KVD_CMAKEDIR}
    PATH_VARS CMAKE_INSTALL_LIBDIR KVD_INCLUDEDIR)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/KavendiConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/KavendiConfig.cmake ${CMAKE_BINARY_DIR}/KavendiConfigVersion.cmake
        DESTINATION ${KVD_CMAKEDIR})

# The Debian package: installs under /usr; the dependencies come from the libraries the
# binaries link.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME kavendi)
set(CPACK_PACKAGE_VENDOR "Orvane Quillon")
set(CPACK_PACKAGE_CONTACT "Kavendi team <kavendi@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Chart viewer of measure repositories, with its measure store")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
    "Kavendi draws the measures recording tools store in a repository as dated curves.\n"
    "The package holds the viewer plug-in and measure store library, the kvd command-line\n"
    "tool, the kavendi-studio host, and the C header, pkg-config file and CMake package\n"
    "with which a recording tool builds.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The host's window system plug-ins: the toolkit loads them, nothing links them.
set(CPACK_DEBIAN_PACKAGE_DEPENDS qt6-qpa-plugins)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
include(CPack)
