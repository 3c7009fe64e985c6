qm_tests(RendererTests Renderer ROOMS KestrelCommon/Tile KestrelCommon/renderer)
