qm_tests(ClutterTests Clutter ROOMS TileEditorCommon/Clutter)
