target_sources(quilp_objects PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/exec_command.cc
  ${CMAKE_CURRENT_LIST_DIR}/files.cc
  ${CMAKE_CURRENT_LIST_DIR}/page_fetch.cc
  ${CMAKE_CURRENT_LIST_DIR}/registry.cc
  ${CMAKE_CURRENT_LIST_DIR}/result_document.cc
  ${CMAKE_CURRENT_LIST_DIR}/shell_call.cc)
