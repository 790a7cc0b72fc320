target_sources(quilp_objects PRIVATE ${CMAKE_CURRENT_LIST_DIR}/well_formed.cc
                                     ${CMAKE_CURRENT_LIST_DIR}/xml_node.cc)
