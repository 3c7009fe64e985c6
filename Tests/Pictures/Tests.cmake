qm_tests(PicturesTests Pictures ROOMS TileEditorCommon/Pictures)
if(TARGET PicturesTests)
    target_sources(PicturesTests PRIVATE ${CMAKE_SOURCE_DIR}/Tests/Renderer/TestScene.cpp)
endif()
