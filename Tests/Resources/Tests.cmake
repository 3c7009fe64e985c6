qm_tests(ResourcesTests Resources ROOMS KestrelCommon/Resources)
