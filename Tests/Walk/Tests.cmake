qm_tests(WalkTests Walk ROOMS TileEditorCommon/Editor TileEditorCommon/Interface)
