target_sources(quilp_objects PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/details.cc
  ${CMAKE_CURRENT_LIST_DIR}/records.cc
  ${CMAKE_CURRENT_LIST_DIR}/search.cc)
