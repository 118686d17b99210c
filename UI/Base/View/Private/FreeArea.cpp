#include "UI/Base/View/Private/FreeArea.h"

#include <algorithm>
#include <cmath>

namespace Vu {
namespace {

/// Of the size that the whole canvas would allow.
constexpr double kLeastPart = 0.4;

bool meet(const CanvasRect& a, const CanvasRect& b)
{
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

} // namespace

CanvasRect freeArea(double width, double height, const std::vector<CanvasRect>& covered, double aspect)
{
    const auto heightIn = [&](const CanvasRect& area) {
        return std::min(area.height(), area.width() / aspect);
    };
    const auto offMiddle = [&](const CanvasRect& area) {
        return std::hypot(area.left + area.right - width, area.top + area.bottom - height);
    };
    const CanvasRect all{0, 0, width, height};
    // The largest free rectangles end at the canvas's sides or at those of what covers it.
    std::vector<double> lefts{0}, tops{0}, rights{width}, bottoms{height};
    for (const CanvasRect& rect : covered) {
        lefts.push_back(rect.right);
        rights.push_back(rect.left);
        tops.push_back(rect.bottom);
        bottoms.push_back(rect.top);
    }
    CanvasRect best = all;
    double most = heightIn(all) * kLeastPart;
    const auto consider = [&](const CanvasRect& area) {
        constexpr double kSame = 1e-6;
        const double size = heightIn(area);
        const bool better =
            size > most + kSame || (std::abs(size - most) <= kSame && offMiddle(area) < offMiddle(best));
        if (!better || area.width() <= 0 || area.height() <= 0 ||
            std::ranges::any_of(covered, [&](const CanvasRect& rect) { return meet(area, rect); }))
            return;
        best = area;
        most = size;
    };
    for (const double left : lefts)
        for (const double top : tops)
            for (const double right : rights)
                for (const double bottom : bottoms)
                    consider({std::max(left, 0.0), std::max(top, 0.0), std::min(right, width),
                              std::min(bottom, height)});
    return best;
}

} // namespace Vu
