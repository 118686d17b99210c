#include "UI/Commands/Documents/DrawingPage.h"

#include "Server/Base/NumberText.h"
#include "Server/Base/Status.h"
#include "Server/DataModel/Document.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Commands/Localized.h"

#include <algorithm>
#include <cmath>
#include <ctime>

namespace Vu::Commands {
namespace {

const std::vector<DrawingSheet>& usualSheets()
{
    static const std::vector<DrawingSheet> sheets = {
        {L"A4", 297, 210}, {L"A3", 420, 297}, {L"A2", 594, 420}, {L"A1", 841, 594}, {L"A0", 1189, 841}};
    return sheets;
}

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

double roomAcross(const DrawingSheet& sheet)
{
    return sheet.width - 2 * (kFrame + kRoom);
}

double roomDown(const DrawingSheet& sheet)
{
    return sheet.height - 2 * (kFrame + kRoom) - kBlockHeight;
}

bool fits(const Extent& extent, double scale, const DrawingSheet& sheet)
{
    return (extent.right - extent.left) * scale <= roomAcross(sheet) &&
           (extent.top - extent.bottom) * scale <= roomDown(sheet);
}

/// The scales of the standard: 1, 2 and 5 times a power of ten.
double usualScale(const Extent& extent, const DrawingSheet& sheet)
{
    double found = 1e-9;
    for (int power = -9; power <= 6; ++power)
        for (const double lead : {1.0, 2.0, 5.0}) {
            const double scale = lead * std::pow(10, power);
            if (fits(extent, scale, sheet))
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

void addTitleBlock(VectorPage& page, const DrawingSheet& sheet, const DrawingFacts& facts, double scale)
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

DrawingFacts factsOf(const Vs::Document& document)
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    wchar_t text[16];
    return {document.displayName(),
            std::wstring(text, std::wcsftime(text, std::size(text), L"%Y-%m-%d", &local))};
}

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

std::wstring scaleSaid(const CommandContext& context, const Vs::UniqueString* name)
{
    int whole = 0;
    double number = 0;
    if (context.argument(name, CommandContext::EArgType::Int, &whole))
        return std::to_wstring(whole);
    if (context.argument(name, CommandContext::EArgType::Double, &number))
        return Vs::numberText(number);
    return context.argumentAsString(name);
}

void tellLeftOut(const Vs::LineDrawing& drawing, Vs::Status& status)
{
    if (drawing.leftOut > 0)
        status.addWarning(localizedFormat(
            "DrawingLeftOut", "Parts that could not be meshed were left out: %1%.", drawing.leftOut));
}

void tellNoScale(const std::wstring& said, Vs::Status& status)
{
    status.addError(localizedFormat("DrawingNoScale", "\"%1%\" is not a scale, such as 1:2 or 5:1.", said));
}

std::wstring scaleText(double scale)
{
    const auto number = [](double value) { return Vs::numberText(std::round(value * 1e6) / 1e6); };
    return scale >= 1 ? number(scale) + L":1" : L"1:" + number(1 / scale);
}

std::optional<VectorPage> drawingPage(const Vs::LineDrawing& drawing, const DrawingFacts& facts,
                                      std::optional<double> wantedScale,
                                      const std::optional<DrawingSheet>& wanted)
{
    const Extent extent = extentOf(drawing);
    if (extent.isEmpty())
        return std::nullopt;
    const std::vector<DrawingSheet> sheets = wanted ? std::vector{*wanted} : usualSheets();
    const double scale = wantedScale.value_or(usualScale(extent, sheets.front()));
    const auto sheet = std::ranges::find_if(
        sheets, [&](const DrawingSheet& candidate) { return fits(extent, scale, candidate); });
    if (sheet == sheets.end())
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
