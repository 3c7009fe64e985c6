qm_tests(EntitiesTests Entities ROOMS TileEditorCommon/Entities)
