#pragma once // An OpenGL context with no window, no display server and no GPU needed.

#include "KestrelCommon/Device/GlContextI.h"

#include <memory>

namespace rend
{

/// EGL without a surface: drawing goes to framebuffer objects only.
class EglContext : public GlContextI
{
public:
    /// Core 4.5, else 4.3; current at once. Null with one error line when there is no driver for it.
    [[nodiscard]] static std::unique_ptr<EglContext> create();

    ~EglContext() override;
    EglContext(const EglContext&) = delete;
    EglContext& operator=(const EglContext&) = delete;

    bool makeCurrent() override;
    bool swap() override { return true; }
    [[nodiscard]] bool isOffscreen() const override { return true; }

private:
    EglContext() = default;

    void* m_pDisplay = nullptr;
    void* m_pContext = nullptr;
};

} // namespace rend
