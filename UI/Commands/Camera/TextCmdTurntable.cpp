#include "Server/Base/NumberText.h"
#include "Server/Base/Status.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Camera/Turntable.h"
#include "UI/Commands/Documents/CaptureView.h"
#include "UI/Commands/Localized.h"

#include <optional>

namespace Vu::Commands {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

// clang-format off
constexpr DirectTextRow kTurntable = {L"Camera", L"Turntable", L"<file> [<pictures>] [<width>x<height>] [/AsShown] [/Transparent] Draws the model from all sides: numbered pictures (.png, .jpg, .tif), or a film (.mp4, .webm, .gif) if ffmpeg is installed", "", false};
// clang-format on

constexpr int kUsualPictures = 36;
constexpr uint32_t kUsualWidth = 1280, kUsualHeight = 720;

std::optional<std::pair<uint32_t, uint32_t>> sizeOf(const std::wstring& text)
{
    const size_t times = text.find(L'x');
    if (times == text.npos)
        return std::nullopt;
    const auto width = Vs::readNumber<uint32_t>(text.substr(0, times));
    const auto height = Vs::readNumber<uint32_t>(text.substr(times + 1));
    const auto isGood = [](const auto& side) { return side && *side > 0 && *side <= kLargestImage; };
    if (!isGood(width) || !isGood(height))
        return std::nullopt;
    return std::pair(*width, *height);
}

class TextCmdTurntable : public DirectTextCommand<kTurntable>
{
public:
    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() == 0 || parameters.parameters() > 3)
            return {1, L"Usage: Camera.Turntable " + usage()};
        int pictures = kUsualPictures;
        ImageOptions options{.width = kUsualWidth, .height = kUsualHeight};
        for (unsigned i = 1; i < parameters.parameters(); ++i)
            if (const auto size = sizeOf(parameters[i]))
                std::tie(options.width, options.height) = *size;
            else if (const auto number = Vs::readNumber<int>(parameters[i]);
                     number && *number >= 1 && *number <= kMostTurntablePictures)
                pictures = *number;
            else
                return {1, localizedFormat("TurntableWish",
                                           "\"%1%\" is neither a number of pictures from 1 to %2% nor a size "
                                           "such as 1280x720 with sides up to %3%.",
                                           parameters[i], kMostTurntablePictures, kLargestImage)};
        options.asShown = parameters.hasFlag(L"AsShown");
        options.transparentBackground = parameters.hasFlag(L"Transparent");
        Application::get()->needGui();
        GraphicsView* view = settledCamera() ? SceneUtilities::getActiveAssetGraphicView() : nullptr;
        if (!view)
            return {1, localized("NoViewToCapture", "There is no view to make a picture of.")};
        Vs::Status status;
        const int made = makeTurntable(*view, parameters[0], pictures, options, status);
        if (made == 0)
            return {1, status.toString()};
        return {0, localizedFormat("TurntableDone", "Drew %1% pictures.", made)};
    }
};

TextCmdTurntable theTurntable;

} // namespace
} // namespace Vu::Commands
