qm_tests(AssetTests Assets ROOMS KestrelCommon/Assets)
target_sources(AssetTests PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/Renderer/TestScene.cpp)
