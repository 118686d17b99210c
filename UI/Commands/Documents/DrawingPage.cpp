#include "UI/Commands/Documents/DrawingPage.h"

#include "Server/Base/NumberText.h"
#include "UI/Commands/Localized.h"

#include <algorithm>
#include <cmath>

namespace Vu::Commands {
namespace {

struct Sheet
{
    const wchar_t* name;
    double width, height;
};
constexpr Sheet kSheets[] = {
    {L"A4", 297, 210}, {L"A3", 420, 297}, {L"A2", 594, 420}, {L"A1", 841, 594}, {L"A0", 1189, 841}};

// In millimetres of the paper.
constexpr double kFrame = 10, kRoom = 8;
constexpr double kBlockWidth = 150, kBlockHeight = 18, kNameWidth = 60;
constexpr double kVisible = 0.35, kSmooth = 0.13, kHidden = 0.18, kFrameWidth = 0.5;
constexpr double kLabelHeight = 1.8, kTextHeight = 3;

struct Extent
{
    double left = 1e300, right = -1e300, bottom = 1e300, top = -1e300;
    bool isEmpty() const { return left > right; }
};

Extent extentOf(const Vs::LineDrawing& drawing)
{
    Extent extent;
    for (const Vs::LineDrawing::Line& line : drawing.lines)
        for (const GkPoint2d& point : line.points) {
            extent.left = std::min(extent.left, point.x);
            extent.right = std::max(extent.right, point.x);
            extent.bottom = std::min(extent.bottom, point.y);
            extent.top = std::max(extent.top, point.y);
        }
    return extent;
}

double roomAcross(const Sheet& sheet)
{
    return sheet.width - 2 * (kFrame + kRoom);
}

double roomDown(const Sheet& sheet)
{
    return sheet.height - 2 * (kFrame + kRoom) - kBlockHeight;
}

bool fits(const Extent& extent, double scale, const Sheet& sheet)
{
    return (extent.right - extent.left) * scale <= roomAcross(sheet) &&
           (extent.top - extent.bottom) * scale <= roomDown(sheet);
}

/// The scales of the standard: 1, 2 and 5 times a power of ten.
double usualScale(const Extent& extent)
{
    double found = 1e-9;
    for (int power = -9; power <= 6; ++power)
        for (const double lead : {1.0, 2.0, 5.0}) {
            const double scale = lead * std::pow(10, power);
            if (fits(extent, scale, kSheets[0]))
                found = scale;
        }
    return found;
}

/// The name gives way where it is too long for its field.
std::wstring shortened(const std::wstring& text)
{
    constexpr size_t kMost = 26;
    return text.size() <= kMost ? text : text.substr(0, kMost - 1) + L"\u2026";
}

void addTitleBlock(VectorPage& page, const Sheet& sheet, const DrawingFacts& facts, double scale)
{
    const double right = sheet.width - kFrame, bottom = sheet.height - kFrame;
    const double left = right - kBlockWidth, top = bottom - kBlockHeight;
    const auto line = [&](double x0, double y0, double x1, double y1) {
        page.lines.push_back({{{x0, y0}, {x1, y1}}, kFrameWidth, false});
    };
    line(left, top, right, top);
    line(left, top, left, bottom);
    const std::pair<std::wstring, std::wstring> fields[] = {
        {localized("DrawingName", "Name"), shortened(facts.name)},
        {localized("DrawingScale", "Scale"), scaleText(scale)},
        {localized("DrawingUnit", "Unit"), L"mm"},
        {localized("DrawingSheet", "Sheet"), sheet.name},
        {localized("DrawingDate", "Date"), facts.date}};
    double at = left;
    for (const auto& [label, text] : fields) {
        if (at > left)
            line(at, top, at, bottom);
        page.texts.push_back({label, {at + 2, top + 5}, kLabelHeight});
        page.texts.push_back({text, {at + 2, bottom - 4}, kTextHeight});
        at += at == left ? kNameWidth : (kBlockWidth - kNameWidth - 12) / 4;
    }
}

} // namespace

std::optional<double> readScale(std::wstring_view text)
{
    const size_t colon = text.find(L':');
    const auto first = Vs::readNumber<double>(std::wstring(text.substr(0, colon)));
    const auto second = colon == text.npos ? std::optional(1.0)
                                           : Vs::readNumber<double>(std::wstring(text.substr(colon + 1)));
    if (!first || !second || !(*first > 0) || !(*second > 0) || !std::isnormal(*first / *second))
        return std::nullopt;
    return *first / *second;
}

std::wstring scaleText(double scale)
{
    const auto number = [](double value) { return Vs::numberText(std::round(value * 1e6) / 1e6); };
    return scale >= 1 ? number(scale) + L":1" : L"1:" + number(1 / scale);
}

std::optional<VectorPage> drawingPage(const Vs::LineDrawing& drawing, const DrawingFacts& facts,
                                      std::optional<double> wanted)
{
    const Extent extent = extentOf(drawing);
    if (extent.isEmpty())
        return std::nullopt;
    const double scale = wanted.value_or(usualScale(extent));
    const auto sheet =
        std::ranges::find_if(kSheets, [&](const Sheet& candidate) { return fits(extent, scale, candidate); });
    if (sheet == std::end(kSheets))
        return std::nullopt;
    VectorPage page;
    page.title = facts.name;
    page.width = sheet->width;
    page.height = sheet->height;
    const double middleX = sheet->width / 2, middleY = (sheet->height - kBlockHeight) / 2;
    for (const Vs::LineDrawing::Line& line : drawing.lines) {
        VectorPage::Line drawn{{}, line.hidden ? kHidden : line.smooth ? kSmooth : kVisible, line.hidden};
        for (const GkPoint2d& point : line.points)
            drawn.points.emplace_back(middleX + (point.x - (extent.left + extent.right) / 2) * scale,
                                      middleY - (point.y - (extent.bottom + extent.top) / 2) * scale);
        page.lines.push_back(std::move(drawn));
    }
    const double right = sheet->width - kFrame, bottom = sheet->height - kFrame;
    page.lines.push_back(
        {{{kFrame, kFrame}, {right, kFrame}, {right, bottom}, {kFrame, bottom}, {kFrame, kFrame}},
         kFrameWidth,
         false});
    addTitleBlock(page, *sheet, facts, scale);
    return page;
}

} // namespace Vu::Commands
