qm_tests(RendererTests Renderer ROOMS KestrelCommon/renderer)
