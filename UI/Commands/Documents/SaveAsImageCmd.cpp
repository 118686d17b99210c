#include "UI/Commands/Documents/SaveAsImageCmd.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SceneUtilities.h"
#include "UI/Base/View/PrintedImageResource.h"
#include "UI/Commands/Documents/CaptureView.h"
#include "UI/Commands/Documents/FileNameFor.h"
#include "UI/Commands/Documents/ImageOptions.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow SaveAsImageCmdDef::kRow = {
    .key = L"SaveAsImageCommand", .title = "Capture Image...", .icon = &Resources::SaveAsImage, .arguments = {L"Path", L"Width", L"Height", L"Transparent", L"AntiAliasing", L"AsShown"}};
// clang-format on

namespace {

/// Reads integers from the context; a value that is not one is reported.
class ArgumentReader
{
public:
    ArgumentReader(const CommandContext& context, Vs::Status& status) : m_context(context), m_status(status)
    {
    }

    /// Leaves `value` alone if the context says nothing.
    bool read(const Vs::UniqueString* name, int& value)
    {
        if (m_context.argument(name, CommandContext::EArgType::Int, &value))
            return true;
        if (const std::wstring text = m_context.argumentAsString(name); !text.empty())
            m_status.addError(localizedFormat("ImageArgumentNoNumber",
                                              "%1% must be a whole number, not \"%2%\".",
                                              Vs::Strings::widen(name->text()), text));
        return false;
    }
    bool readSide(const Vs::UniqueString* name, uint32_t& side)
    {
        int value = 0;
        const bool said = read(name, value);
        if (said)
            side = static_cast<uint32_t>(std::max(0, value));
        return said;
    }
    void readFlag(const Vs::UniqueString* name, bool& flag)
    {
        int value = flag;
        read(name, value);
        flag = value != 0;
    }

private:
    const CommandContext& m_context;
    Vs::Status& m_status;
};

/// Takes what the context says. Returns false if it gives neither the size nor that the view is captured as
/// it is shown, so that the user has to be asked.
bool takeArguments(const CommandContext& context, ImageOptions& options, Vs::Status& status)
{
    ArgumentReader arguments(context, status);
    arguments.readFlag(SaveAsImageCmdDef::transparentArgumentName(), options.transparentBackground);
    arguments.readFlag(SaveAsImageCmdDef::antiAliasingArgumentName(), options.antiAliasing);
    arguments.readFlag(SaveAsImageCmdDef::asShownArgumentName(), options.asShown);
    const bool hasWidth = arguments.readSide(SaveAsImageCmdDef::widthArgumentName(), options.width);
    const bool hasHeight = arguments.readSide(SaveAsImageCmdDef::heightArgumentName(), options.height);
    return hasWidth || hasHeight || options.asShown;
}

bool sizeIsSane(const ImageOptions& options)
{
    return options.width > 0 && options.height > 0 && options.width <= kLargestImage &&
           options.height <= kLargestImage;
}

} // namespace

const Vs::UniqueString* SaveAsImageCmdDef::widthArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Width", true);
    return name;
}

const Vs::UniqueString* SaveAsImageCmdDef::heightArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Height", true);
    return name;
}

const Vs::UniqueString* SaveAsImageCmdDef::transparentArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Transparent", true);
    return name;
}

const Vs::UniqueString* SaveAsImageCmdDef::antiAliasingArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("AntiAliasing", true);
    return name;
}

const Vs::UniqueString* SaveAsImageCmdDef::asShownArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("AsShown", true);
    return name;
}

bool SaveAsImageCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

SaveAsImageCmd::SaveAsImageCmd(SaveAsImageCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
}

void SaveAsImageCmd::onExecute(Vs::Status& status)
{
    static const std::wstring filter =
        localized("ImageFilesFilter", "png files (*.png);;jpg files (*.jpg);;tiff files (*.tif)");
    const AssetSession* session = commandContext()->assetSession();
    std::wstring name = session ? fileNameFor(session->asset()->document(), L".png") : std::wstring();
    if (!FileDialog::getTranscriptableFilenameForSaveAs(filter, localized("CaptureImage", "Save As"), name,
                                                        commandContext())) {
        FileDialog::tellMissing(status);
        return;
    }
    GraphicsView* view = SceneUtilities::getActiveAssetGraphicView();
    if (!view) {
        status.addError(localized("NoViewToCapture", "There is no view to make a picture of."));
        return;
    }

    ImageOptions options;
    options.transparencyLocked = locksTransparency(name);
    takeWindowSize(*view, options);
    const bool sizeSaid = takeArguments(*commandContext(), options, status);
    if (status.isError() || (!sizeSaid && !Application::headless() && !askImageOptions(options)))
        return;
    if (options.transparencyLocked)
        options.transparentBackground = false;
    if (!sizeIsSane(options)) {
        status.addError(
            localizedFormat("ImageSizeOutOfRange",
                            "A picture of %1% x %2% pixels cannot be made: each side must be from 1 to %3%.",
                            options.width, options.height, kLargestImage));
        return;
    }

    PrintedImageResource image(withImageSuffix(name), options.resolution);
    captureView(*view, image, options, status);
}

} // namespace Vu::Commands
