target_sources(quilp_objects PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/artist.cc
  ${CMAKE_CURRENT_LIST_DIR}/countries.cc
  ${CMAKE_CURRENT_LIST_DIR}/document.cc
  ${CMAKE_CURRENT_LIST_DIR}/file_name.cc
  ${CMAKE_CURRENT_LIST_DIR}/tables.cc
  ${CMAKE_CURRENT_LIST_DIR}/title.cc)
