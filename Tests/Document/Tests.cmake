qm_tests(DocumentTests Document ROOMS TileEditorCommon/Document)
