# What is installed, and where its users find it. The components are what a distribution has packages
# for: library, development, python, program and others.
include(CMakePackageConfigHelpers)

install(TARGETS quilp EXPORT quilp-targets
        LIBRARY COMPONENT library NAMELINK_COMPONENT development)
install(TARGETS quilp_names_module DESTINATION ${CMAKE_INSTALL_LIBDIR}/quilp COMPONENT library)
install(FILES include/libquilp.h include/quilp.h include/quilp.hpp TYPE INCLUDE COMPONENT development)
install(EXPORT quilp-targets NAMESPACE quilp:: FILE quilp-config.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/quilp COMPONENT development)
write_basic_package_version_file(quilp-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quilp-config-version.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/quilp COMPONENT development)

# pkg-config finds the prefix from the folder of libquilp.pc, so that any --prefix and DESTDIR work.
string(REGEX REPLACE "[^/]+" ".." pc_prefix "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
string(PREPEND pc_prefix "\${pcfiledir}/")
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(pc_prefix "${CMAKE_INSTALL_PREFIX}")
endif()
set(pc_libdir "\${prefix}")
cmake_path(APPEND pc_libdir "${CMAKE_INSTALL_LIBDIR}")
set(pc_includedir "\${prefix}")
cmake_path(APPEND pc_includedir "${CMAKE_INSTALL_INCLUDEDIR}")
configure_file(cmake/libquilp.pc.in libquilp.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/libquilp.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

function(quilp_install_manual section component)
  file(GLOB pages CONFIGURE_DEPENDS docs/man/*.${section})
  install(FILES ${pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section}
          COMPONENT ${component})
endfunction()
if(QUILP_BUILD_TOOLS)
  quilp_install_manual(1 program)
endif()
quilp_install_manual(3 development)
quilp_install_manual(5 program)
quilp_install_manual(7 program)

set(QUILP_PYTHON lib/python3/dist-packages CACHE STRING "Where Python looks for packages")
install(DIRECTORY bindings/python/quilp DESTINATION ${QUILP_PYTHON} COMPONENT python
        PATTERN __pycache__ EXCLUDE)

install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quilp/examples
        COMPONENT program
        PATTERN "addon-*" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
                                      GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
if(QUILP_BUILD_TOOLS)
  install(TARGETS quilp_cli COMPONENT program)
  install(TARGETS quilp_addon_catalogue quilp_addon_catalogue-postgresql
          DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/quilp
          COMPONENT catalogue)
  install(TARGETS quilp_addon_chain quilp_addon_musicbrainz quilp_addon_song
          quilp_addon_tmdb quilp_addon_tvmaze quilp_addon_wikidata
          DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/quilp
          COMPONENT addons)
  set(QUILP_ZSH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
      CACHE STRING "Where zsh looks for completions")
  install(FILES completions/quilp.bash RENAME quilp
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT program)
  install(FILES completions/_quilp DESTINATION ${QUILP_ZSH_COMPLETIONS} COMPONENT program)
  install(FILES completions/quilp.fish
          DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT program)
endif()
