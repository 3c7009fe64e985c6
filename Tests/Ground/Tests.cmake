qm_tests(GroundTests Ground ROOMS TileEditorCommon/Ground)
