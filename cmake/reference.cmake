# The target "reference": pages made of the public headers' comments. What they leave out is an error.
# quilp.hpp only wraps what quilp.h explains.
find_package(Doxygen QUIET)
if(DOXYGEN_FOUND)
  set(DOXYGEN_DISTRIBUTE_GROUP_DOC YES)
  set(DOXYGEN_EXPAND_ONLY_PREDEF YES)
  set(DOXYGEN_GENERATE_LATEX NO)
  set(DOXYGEN_HAVE_DOT NO)
  set(DOXYGEN_MACRO_EXPANSION YES)
  set(DOXYGEN_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/reference)
  set(DOXYGEN_PREDEFINED QUILP_API= QUILP_EXPORT=)
  set(DOXYGEN_QUIET YES)
  set(DOXYGEN_WARN_AS_ERROR FAIL_ON_WARNINGS)
  doxygen_add_docs(reference include/libquilp.h include/quilp.h)
endif()

# A manual page for each function of quilp.h, made of its comment.
find_package(Python3 QUIET COMPONENTS Interpreter)
if(Python3_FOUND)
  set(manual ${PROJECT_BINARY_DIR}/man3)
  set(manual_sources ${PROJECT_SOURCE_DIR}/include/quilp.h ${PROJECT_SOURCE_DIR}/docs/man/libquilp.3)
  add_custom_command(OUTPUT ${manual}.made
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${manual}
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/cmake/manual_pages.py ${manual_sources} ${manual}
    COMMAND ${CMAKE_COMMAND} -E touch ${manual}.made
    DEPENDS ${manual_sources} ${PROJECT_SOURCE_DIR}/cmake/manual_pages.py VERBATIM)
  add_custom_target(manual ALL DEPENDS ${manual}.made)
  install(DIRECTORY ${manual}/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development)
endif()
