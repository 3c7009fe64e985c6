// Carries the precompiled header that all other targets reuse.
