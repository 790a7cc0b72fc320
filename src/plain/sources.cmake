target_sources(quilp_objects PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/quilp.cc
  ${CMAKE_CURRENT_LIST_DIR}/read_name.cc
  ${CMAKE_CURRENT_LIST_DIR}/reasons.cc
  ${CMAKE_CURRENT_LIST_DIR}/result.cc)
