qm_tests(CoreTests Core ROOMS KestrelCommon/Core)
