qm_tests(ServicesTests Services ROOMS KestrelCommon/Services)
