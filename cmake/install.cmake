# What is installed, and where its users find it.
include(CMakePackageConfigHelpers)

install(TARGETS quilp EXPORT quilp-targets)
install(FILES include/libquilp.h TYPE INCLUDE)
install(EXPORT quilp-targets NAMESPACE quilp:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/quilp
        FILE quilp-config.cmake)
write_basic_package_version_file(quilp-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quilp-config-version.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/quilp)

configure_file(cmake/libquilp.pc.in libquilp.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/libquilp.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(QUILP_BUILD_TOOLS)
  install(TARGETS quilp_cli)
  install(FILES docs/man/quilp.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES docs/man/quilp-addon.7 DESTINATION ${CMAKE_INSTALL_MANDIR}/man7)
endif()
