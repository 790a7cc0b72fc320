target_sources(quilp_objects PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/enrichment.cc
  ${CMAKE_CURRENT_LIST_DIR}/find_page.cc
  ${CMAKE_CURRENT_LIST_DIR}/title_details.cc
  ${CMAKE_CURRENT_LIST_DIR}/title_page.cc)
