qm_tests(ProgramTests Program ROOMS TileEditor)
