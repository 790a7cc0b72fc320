target_sources(quilp_objects PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/add_on_call.cc
  ${CMAKE_CURRENT_LIST_DIR}/control.cc
  ${CMAKE_CURRENT_LIST_DIR}/environment.cc
  ${CMAKE_CURRENT_LIST_DIR}/fetch_report.cc
  ${CMAKE_CURRENT_LIST_DIR}/files.cc
  ${CMAKE_CURRENT_LIST_DIR}/guarded_run.cc
  ${CMAKE_CURRENT_LIST_DIR}/observer.cc
  ${CMAKE_CURRENT_LIST_DIR}/outside.cc
  ${CMAKE_CURRENT_LIST_DIR}/page_fetch.cc
  ${CMAKE_CURRENT_LIST_DIR}/registry.cc
  ${CMAKE_CURRENT_LIST_DIR}/result_document.cc
  ${CMAKE_CURRENT_LIST_DIR}/run_curl.cc
  ${CMAKE_CURRENT_LIST_DIR}/run_program.cc)
