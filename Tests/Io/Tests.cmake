qm_tests(IoTests Io ROOMS KestrelCommon/Io LIBS PkgConfig::LZ4)
