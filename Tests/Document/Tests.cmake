qm_tests(DocumentTests Document ROOMS TileEditorCommon/Document)
target_sources(DocumentTests PRIVATE ${CMAKE_SOURCE_DIR}/Tests/Records/CodecTable.cpp)
