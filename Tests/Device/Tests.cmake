qm_tests(DeviceTests Device ROOMS KestrelCommon/Device)
