#pragma once // Frames a second and their cost, renewed once a second.

/// Adds up what the frames of a second cost; the figures are those of the second before.
class FrameStatistics
{
public:
    void addTime(float fSeconds)
    {
        ++m_iFrames;
        m_fTime += fSeconds;
        if (m_fTime < 1.0f)
            return;
        m_iLastFrames = m_iFrames;
        m_fLastCpu = m_fCpu / m_iFrames;
        m_fLastGpu = m_fGpu / m_iFrames;
        m_iFrames = 0;
        m_fTime = 0.0f;
        m_fCpu = m_fGpu = 0.0;
    }

    /// Milliseconds of one rendered frame.
    void addRender(double fCpu, double fGpu)
    {
        m_fCpu += fCpu;
        m_fGpu += fGpu;
    }

    [[nodiscard]] int frames() const { return m_iLastFrames; }
    [[nodiscard]] double cpuMilliseconds() const { return m_fLastCpu; }
    [[nodiscard]] double gpuMilliseconds() const { return m_fLastGpu; }

private:
    int m_iFrames = 0;
    float m_fTime = 0.0f;
    double m_fCpu = 0.0;
    double m_fGpu = 0.0;
    int m_iLastFrames = 0;
    double m_fLastCpu = 0.0;
    double m_fLastGpu = 0.0;
};
