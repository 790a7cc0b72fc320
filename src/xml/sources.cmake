target_sources(quilp_objects PRIVATE ${CMAKE_CURRENT_LIST_DIR}/xml_node.cc)
