qm_tests(TileTests Tile ROOMS KestrelCommon/Tile)
