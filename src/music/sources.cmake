target_sources(quilp_objects PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/artwork.cc
  ${CMAKE_CURRENT_LIST_DIR}/json.cc
  ${CMAKE_CURRENT_LIST_DIR}/metadata.cc
  ${CMAKE_CURRENT_LIST_DIR}/records.cc)
