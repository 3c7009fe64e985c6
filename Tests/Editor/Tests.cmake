qm_tests(EditorTests Editor ROOMS TileEditorCommon/Editor)
