qm_tests(AssetTests Assets ROOMS KestrelCommon/Assets)
