qm_tests(EffectsTests Effects ROOMS KestrelCommon/Effects)
