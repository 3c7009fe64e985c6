qm_tests(InterfaceTests Interface ROOMS TileEditorCommon/Interface)
