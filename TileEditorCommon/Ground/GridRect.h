#pragma once // A rectangle of grid samples.

#include <algorithm>

namespace tilebuilder
{

/// From (x0, y0) up to but not including (x1, y1).
struct GridRect
{
    int x0 = 0;
    int y0 = 0;
    int x1 = 0;
    int y1 = 0;

    [[nodiscard]] bool empty() const { return x0 >= x1 || y0 >= y1; }
    [[nodiscard]] int width() const { return x1 - x0; }
    [[nodiscard]] int height() const { return y1 - y0; }

    void unite(const GridRect& other)
    {
        if (other.empty())
            return;
        if (empty())
            *this = other;
        else
            *this = {std::min(x0, other.x0), std::min(y0, other.y0), std::max(x1, other.x1),
                     std::max(y1, other.y1)};
    }

    [[nodiscard]] GridRect clipped(const GridRect& bounds) const
    {
        return {std::max(x0, bounds.x0), std::max(y0, bounds.y0), std::min(x1, bounds.x1),
                std::min(y1, bounds.y1)};
    }

    [[nodiscard]] GridRect grown(int iBy) const { return {x0 - iBy, y0 - iBy, x1 + iBy, y1 + iBy}; }

    bool operator==(const GridRect&) const = default;
};

} // namespace tilebuilder
