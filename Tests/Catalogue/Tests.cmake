qm_tests(CatalogueTests Catalogue ROOMS TileEditorCommon/Catalogue)
