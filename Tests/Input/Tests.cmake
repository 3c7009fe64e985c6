qm_tests(InputTests Input ROOMS KestrelCommon/Services)
