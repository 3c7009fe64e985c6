#pragma once // The OpenGL context that a device draws with.

namespace rend
{

/// A context of OpenGL core 4.3 or later. Whoever owns the window makes one; the device borrows it.
/// Threads: main thread only.
class GlContextI
{
public:
    virtual ~GlContextI() = default;

    virtual bool makeCurrent() = 0;

    /// Shows the default framebuffer; false: the window's surface is lost. True and idle offscreen.
    virtual bool swap() = 0;

    /// True when there is no window, and so no default framebuffer.
    [[nodiscard]] virtual bool isOffscreen() const = 0;
};

} // namespace rend
