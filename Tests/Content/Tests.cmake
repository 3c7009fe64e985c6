qm_tests(ContentTests Content ROOMS KestrelCommon/Assets KestrelCommon/Io KestrelCommon/Tile KestrelCommon/Tile/Records)
if(TARGET ContentTests)
    target_sources(ContentTests PRIVATE ${CMAKE_SOURCE_DIR}/Tests/Renderer/TestScene.cpp)
endif()
