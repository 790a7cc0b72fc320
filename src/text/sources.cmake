target_sources(quilp_objects PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/cutter.cc
  ${CMAKE_CURRENT_LIST_DIR}/entities.cc
  ${CMAKE_CURRENT_LIST_DIR}/entity_table.cc
  ${CMAKE_CURRENT_LIST_DIR}/html_utf8.cc
  ${CMAKE_CURRENT_LIST_DIR}/ini_file.cc
  ${CMAKE_CURRENT_LIST_DIR}/keyword.cc
  ${CMAKE_CURRENT_LIST_DIR}/language.cc
  ${CMAKE_CURRENT_LIST_DIR}/percent.cc
  ${CMAKE_CURRENT_LIST_DIR}/place.cc
  ${CMAKE_CURRENT_LIST_DIR}/removal.cc
  ${CMAKE_CURRENT_LIST_DIR}/replace.cc
  ${CMAKE_CURRENT_LIST_DIR}/utf8.cc
  ${CMAKE_CURRENT_LIST_DIR}/watch.cc)
