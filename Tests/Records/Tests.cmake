qm_tests(RecordsTests Records ROOMS KestrelCommon/Tile/Records)
