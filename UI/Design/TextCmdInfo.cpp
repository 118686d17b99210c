// The lines of the area "Design" that describe a model to someone who can't see it in a window: in words, and
// as a small picture.

#include "Server/Base/Strings.h"
#include "Server/Base/TextCommand.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/NewFile.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/Thumbnail.h"
#include "UI/Design/DesignInfo.h"

#include <QJsonDocument>

#include <fstream>

namespace Vu::Design {
namespace {

using Vs::TextCommandParameters;
using Vs::TextCommandResult;

constexpr const wchar_t* kArea = L"Design";
constexpr const wchar_t* kInfoHelp = L"[<density>] [/Json] Gives the structure of the active model, how many "
                                     L"parts it has, its size, volume and area, and with "
                                     L"a density in g/cm\u00b3 its mass; as text or as one line of JSON";
constexpr const wchar_t* kPictureHelp = L"<side> <filename> Writes a small square picture of the active "
                                        L"model as PNG, as file lists show it: all of it, on a "
                                        L"transparent ground, with that many pixels on a side, 16 to 1024";
constexpr int kSmallestSide = 16, kLargestSide = 1024;

const TextCommandResult kNoModel = {1, L"There is no active model."};

class TextCmdDesignInfo : public Vs::PythonEntry<TextCmdDesignInfo, Vs::TextCommand>
{
public:
    TextCmdDesignInfo() : PythonEntry(kArea, L"Info", kInfoHelp, "%f", true, true) {}

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        const Vs::Asset* asset = ActiveAssetUtils::asset();
        if (!asset)
            return kNoModel;
        std::optional<double> density;
        if (parameters.parameters() > 0) {
            density = parameters.real(0);
            if (!(*density > 0))
                return {1, L"A density must be above 0, not " + parameters[0] + L"."};
        }
        DesignInfo info = infoOf(*asset);
        info.density = density;
        if (!parameters.hasFlag(L"Json"))
            return {0, info.text()};
        return {0,
                QString::fromUtf8(QJsonDocument(info.json()).toJson(QJsonDocument::Compact)).toStdWString()};
    }
};

class TextCmdDesignPicture : public Vs::PythonEntry<TextCmdDesignPicture, Vs::TextCommand>
{
public:
    TextCmdDesignPicture() : PythonEntry(kArea, L"Picture", kPictureHelp, "%d%s", true, true) {}

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() != 2)
            return {1, std::wstring(L"Usage: Design.Picture ") + kPictureHelp};
        const Vs::Asset* asset = ActiveAssetUtils::asset();
        if (!asset)
            return kNoModel;
        const int side = parameters.integer(0);
        if (side < kSmallestSide || side > kLargestSide)
            return {1, L"A picture has 16 to 1024 pixels on a side, not " + parameters[0] + L"."};
        const std::string picture = thumbnailOf(asset, static_cast<uint32_t>(side));
        if (picture.empty())
            return {1, L"There is nothing to see, or nothing can be drawn here."};
        return write(Vs::TranscriptMgr::get()->locate(parameters[1]), picture);
    }

private:
    static TextCommandResult write(const std::wstring& path, const std::string& picture)
    {
        try {
            Vs::Exchange::NewFile file(path);
            std::ofstream stream(file.scratch(), std::ios::binary);
            if (!stream.write(picture.data(), static_cast<std::streamsize>(picture.size())).flush())
                return {1, L"\"" + path + L"\" can't be written."};
            file.commit();
        } catch (const std::exception& fault) {
            return {1, L"\"" + path + L"\" can't be written: " + Vs::Strings::widen(fault.what())};
        }
        return {0, {}};
    }
};

TextCmdDesignInfo theInfo;
TextCmdDesignPicture thePicture;

} // namespace
} // namespace Vu::Design
