qm_tests(DataTests Data ROOMS KestrelCommon/Data)
