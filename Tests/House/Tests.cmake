qm_tests(HouseTests House)
