qm_tests(MyGuiTests MyGui ROOMS MyGuiCommon)
