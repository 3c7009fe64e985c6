qm_tests(PlatformTests Platform ROOMS KestrelCommon/Platform)
