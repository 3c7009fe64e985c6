# The whole program in a real window on a display of its own, and the batch without any.
qm_tests(EndToEndTests EndToEnd ROOMS KestrelCommon/Io KestrelCommon/Tile KestrelCommon/Tile/Records PROPERTIES RUN_SERIAL TRUE TIMEOUT 600)
target_compile_definitions(EndToEndTests PRIVATE QM_EDITOR="$<TARGET_FILE:TileEditorProgram>")
add_dependencies(EndToEndTests TileEditorProgram)
if(TARGET ExampleTiles AND QM_CONTENT)
    add_dependencies(EndToEndTests ExampleTiles)
endif()
