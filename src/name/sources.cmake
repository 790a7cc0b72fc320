target_sources(quilp_names PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/fields.cc
  ${CMAKE_CURRENT_LIST_DIR}/format.cc
  ${CMAKE_CURRENT_LIST_DIR}/name.cc
  ${CMAKE_CURRENT_LIST_DIR}/song.cc
  ${CMAKE_CURRENT_LIST_DIR}/song_file.cc
  ${CMAKE_CURRENT_LIST_DIR}/song_parts.cc
  ${CMAKE_CURRENT_LIST_DIR}/song_tags.cc
  ${CMAKE_CURRENT_LIST_DIR}/song_text.cc)
