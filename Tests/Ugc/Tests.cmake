qm_tests(UgcTests Ugc ROOMS KestrelCommon/Ugc)
