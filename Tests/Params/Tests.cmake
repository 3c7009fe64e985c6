qm_tests(ParamsTests Params ROOMS TileEditorCommon/Params)
