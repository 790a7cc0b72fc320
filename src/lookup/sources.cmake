target_sources(quilp_objects PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/answer.cc
  ${CMAKE_CURRENT_LIST_DIR}/karaoke.cc
  ${CMAKE_CURRENT_LIST_DIR}/lookup.cc
  ${CMAKE_CURRENT_LIST_DIR}/movie.cc
  ${CMAKE_CURRENT_LIST_DIR}/music.cc
  ${CMAKE_CURRENT_LIST_DIR}/request.cc
  ${CMAKE_CURRENT_LIST_DIR}/requests.cc
  ${CMAKE_CURRENT_LIST_DIR}/tv.cc)
