// The check of a transcript that compares a view with a picture beside the transcript.

#include "Server/Base/Exception.h"
#include "Server/Base/NumberText.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommand.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Private/Display.h"
#include "UI/Base/Program/Private/PictureFile.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Validation/References.h"
#include "UI/Base/View/GraphicsView.h"

#include <boost/filesystem/operations.hpp>
#include <boost/format.hpp>

#include <algorithm>
#include <cmath>

namespace Vu {
namespace {

namespace fs = boost::filesystem;
using Vs::TextCommandParameters;
using Vs::TextCommandResult;
using Vs::Scene::Image;

constexpr const wchar_t* kArea = L"View";
constexpr uint32_t kUsualWidth = 640, kUsualHeight = 400, kLargestSide = 4096;
/// In per cent of the picture. Other renderers draw edges slightly differently.
constexpr double kUsualTolerance = 0.1;
/// An invisible difference, as a fraction of the way from black to white.
constexpr double kUnseen = 0.06;

constexpr AreaRow kViewAreaRow = {kArea, L"Commands about what a view shows", true};

/// The perceived difference of two colours, from 0 to 1.
double apart(const uint8_t* a, const uint8_t* b)
{
    const double red = a[0] - b[0], green = a[1] - b[1], blue = a[2] - b[2];
    return std::sqrt(0.299 * red * red + 0.587 * green * green + 0.114 * blue * blue) / 255;
}

/// Whether the pixel, or a neighbour, looks like that of the other picture: a line that has moved by less
/// than a pixel looks the same.
bool isNear(const Image& in, uint32_t x, uint32_t y, const uint8_t* other)
{
    for (uint32_t row = y > 0 ? y - 1 : 0; row <= std::min(y + 1, in.height - 1); ++row)
        for (uint32_t column = x > 0 ? x - 1 : 0; column <= std::min(x + 1, in.width - 1); ++column)
            if (apart(in.pixel(column, row), other) < kUnseen)
                return true;
    return false;
}

/// The share of the pixels that differ. `difference` becomes the picture in pale grey with these in red.
double compare(const Image& found, const Image& wanted, Image& difference)
{
    difference = found;
    size_t differ = 0;
    for (uint32_t y = 0; y < found.height; ++y)
        for (uint32_t x = 0; x < found.width; ++x) {
            const uint8_t* own = found.pixel(x, y);
            const uint8_t* other = wanted.pixel(x, y);
            const bool same =
                apart(own, other) < kUnseen || (isNear(wanted, x, y, own) && isNear(found, x, y, other));
            differ += !same;
            const auto grey = static_cast<uint8_t>(170 + (own[0] + own[1] + own[2]) / 9);
            uint8_t* to = &difference.pixels[(size_t(y) * found.width + x) * 4];
            to[0] = same ? grey : 220;
            to[1] = to[2] = same ? grey : 30;
            to[3] = 255;
        }
    return double(differ) / (double(found.width) * found.height);
}

struct Wish
{
    uint32_t width = kUsualWidth, height = kUsualHeight;
    double tolerance = kUsualTolerance; ///< Per cent.
};

/// Parses what follows the description: "640x400" and "+- 0.5 %".
Wish wishOf(const TextCommandParameters& parameters)
{
    Wish wish;
    std::wstring rest;
    for (unsigned i = 1; i < parameters.parameters(); ++i)
        rest += (rest.empty() ? L"" : L" ") + parameters[i];
    const size_t sign = rest.find(L"+-");
    const std::wstring size =
        rest.substr(0, rest.find_last_not_of(L' ', sign == rest.npos ? sign : sign - 1) + 1);
    bool well = true;
    if (sign != 0 && !size.empty()) {
        const size_t times = size.find(L'x');
        const auto width = Vs::readNumber<uint32_t>(size.substr(0, times));
        const auto height =
            times == size.npos ? std::nullopt : Vs::readNumber<uint32_t>(size.substr(times + 1));
        well = width && height && std::clamp(*width, 1u, kLargestSide) == *width &&
               std::clamp(*height, 1u, kLargestSide) == *height;
        wish.width = width.value_or(0);
        wish.height = height.value_or(0);
    }
    if (sign != rest.npos) {
        std::wstring tolerance = rest.substr(sign + 2);
        std::erase_if(tolerance, [](wchar_t c) { return c == L' ' || c == L'%'; });
        const auto number = Vs::readNumber<double>(tolerance);
        well = well && number && *number >= 0 && *number <= 100;
        wish.tolerance = number.value_or(0);
    }
    if (!well)
        throw Vs::Exception(
            localizedFormat("PictureCheckWish",
                            "\"%1%\" is neither a size, such as 640x400, nor a tolerance, such as "
                            "+- 0.5 %%.",
                            rest));
    return wish;
}

Image pictureOfView(const Wish& wish)
{
    const GraphicsView* view = ActiveAssetUtils::graphicsView();
    if (!view)
        throw Vs::Exception(localized("ScriptNoView", "There is no active view."));
    Image image;
    Vs::Status status;
    if (!view->renderImage(image, wish.width, wish.height, Vs::Scene::ImageOptions::current(), status))
        throw Vs::Exception(status.toString());
    return image;
}

void write(const Image& image, const fs::path& file)
{
    Vs::Status status;
    if (!writePicture(image, file.wstring(), {}, status))
        throw Vs::Exception(status.toString());
}

/// Where the new picture is kept for inspection: with the other results.
fs::path beside(const fs::path& reference, const char* what)
{
    const auto& parameters = Vs::TranscriptMgr::get()->parameters();
    const auto out = parameters.find("out");
    fs::path name = reference.stem();
    name += std::string(".") + what + ".png";
    return (out == parameters.end() ? fs::path(".") : fs::path(out->second)) / name;
}

TextCommandResult check(const TextCommandParameters& parameters)
{
    const Wish wish = wishOf(parameters);
    std::wstring description = parameters[0];
    std::replace(description.begin(), description.end(), L'/', L'_');
    const fs::path reference = fs::path(References::currentFile(description)).replace_extension(".png");
    Application::get()->needGui();
    const Image found = pictureOfView(wish);
    const bool isThere = fs::exists(reference);
    if (!isThere && References::mode() == References::Mode::Compare)
        return {1, localizedFormat("PictureCheckMissing", "There is no picture %1% to compare with.",
                                   reference.wstring())};
    if (!isThere || References::mode() == References::Mode::Update) {
        write(found, reference);
        return {0, localizedFormat("PictureCheckKept", "Kept as the picture %1%.", reference.wstring())};
    }
    Image wanted;
    if (!Display::get()->readPicture(reference.wstring(), wanted))
        return {1, localizedFormat("PictureCheckUnreadable", "%1% is not a picture.", reference.wstring())};
    if (wanted.width != found.width || wanted.height != found.height)
        return {1, localizedFormat("PictureCheckSize",
                                   "The picture has %1% x %2% pixels, and %3% has %4% x %5%.", found.width,
                                   found.height, reference.wstring(), wanted.width, wanted.height)};
    Image difference;
    const double share = 100 * compare(found, wanted, difference);
    if (share <= wish.tolerance)
        return {0, {}};
    const fs::path actual = beside(reference, "actual"), shown = beside(reference, "difference");
    write(found, actual);
    write(difference, shown);
    return {1, localizedFormat(
                   "PictureCheckDiffers",
                   "%1% %% of the picture differs from %2%, with a tolerance of %3% %%. What was found is "
                   "%4%, with the differences in %5%.",
                   (boost::wformat(L"%.3g") % share).str(), reference.wstring(),
                   (boost::wformat(L"%.3g") % wish.tolerance).str(), actual.wstring(), shown.wstring())};
}

class TextCmdCheckPicture : public Vs::PythonEntry<TextCmdCheckPicture, Vs::TextCommand>
{
public:
    TextCmdCheckPicture()
        : PythonEntry(
              kArea, L"CheckPicture",
              L"<description> [<width>x<height>] [+- <per cent>...] Compares what the active view shows with "
              L"the picture of this description beside the transcript; so much of it may differ, 0.1 % "
              L"unless the line says more",
              "", true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0)
            return {1, std::wstring(L"Usage: ") + kArea + L"." + name() + L" " + help()};
        try {
            TextCommandResult result = check(parameters);
            if (result.first != 0)
                result.second =
                    std::wstring(kArea) + L"." + name() + L" " + parameters[0] + L": " + result.second;
            return result;
        } catch (const Vs::Exception& error) {
            return {1, std::wstring(kArea) + L"." + name() + L" " + parameters[0] + L": " + error.message()};
        }
    }
};

const SubjectArea<kViewAreaRow> theArea;
TextCmdCheckPicture theCheck;

} // namespace
} // namespace Vu
