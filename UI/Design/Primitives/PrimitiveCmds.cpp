#include "UI/Design/Primitives/PrimitiveCmds.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/Types/PointText.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Design/Environments.h"
#include "UI/Design/Localized.h"
#include "UI/Design/Primitives/PrimitivePanelCmd.h"
#include "UI/Design/Primitives/PrimitiveRequest.h"

#include <optional>
#include <vector>

namespace Vu::Design {
namespace {

/// Adds the part that the arguments describe.
class PrimitiveCmd : public Vs::Implements<PrimitiveCmd, SimpleCommand>
{
public:
    PrimitiveCmd(CommandDefinition* definition, CommandContext* context, const PrimitiveRow& row)
        : Implements(definition, context), m_row(row)
    {
    }

protected:
    void onExecute(Vs::Status& status) override
    {
        Vs::Asset* asset = commandContext()->asset();
        if (!asset) {
            status.addError(localized("NoDesignToAddTo", "There is no active design to add to: make one with "
                                                         "Design.New, or open a file."));
            return;
        }
        std::vector<double> sizes;
        Vs::ModelBuilder::Look look;
        if (!readSizes(sizes, status) || !readPlace(look, status))
            return;
        const std::string parent = assetSession() ? assetSession()->editedComponent() : std::string();
        PrimitiveRequest(m_row, std::move(sizes), std::move(look), parent).execute(asset, status);
    }

private:
    bool readSizes(std::vector<double>& sizes, Vs::Status& status) const
    {
        size_t given = 0;
        const char* missing = nullptr;
        for (const PrimitiveRow::Size& size : m_row.sizes) {
            double value = size.ordinary;
            if (commandContext()->argument(Vs::UniqueString::find(size.name, true),
                                           CommandContext::EArgType::Double, &value))
                ++given;
            else if (!missing)
                missing = size.name;
            sizes.push_back(value);
        }
        if (given == 0 || !missing)
            return true;
        status.addError(localizedFormat("PrimitiveSizeMissing",
                                        "%1%: the size %2% is missing or is not a number.",
                                        Vs::Strings::widen(m_row.look.title), Vs::Strings::widen(missing)));
        return false;
    }

    bool readPlace(Vs::ModelBuilder::Look& look, Vs::Status& status) const
    {
        GkPoint3d origin;
        GkVector3d direction = GkVector3d::kZAxis;
        const std::wstring place = commandContext()->argumentAsString(PrimitiveCmdDef::originArgumentName());
        if (!place.empty() && !Vs::Types::StringToPoint3d(place, origin)) {
            status.addError(
                localizedFormat("PrimitiveOriginWrong", "\"%1%\" is not a point; write it as x,y,z.", place));
            return false;
        }
        const std::wstring text =
            commandContext()->argumentAsString(PrimitiveCmdDef::directionArgumentName());
        if (!text.empty() &&
            (!Vs::Types::StringToVector3d(text, direction) || direction.normal().isZeroLength())) {
            status.addError(localizedFormat("PrimitiveDirectionWrong",
                                            "\"%1%\" is not a direction; write it as x,y,z, not all of them "
                                            "zero.",
                                            text));
            return false;
        }
        look.placement = standingAt(origin, direction);
        return true;
    }

    const PrimitiveRow& m_row;
};

} // namespace

PrimitiveCmdDef::PrimitiveCmdDef(Info* info, const PrimitiveRow& row) : Implements(info), m_row(row)
{
    joinCommandGroup(CommandGroup::VeloraSolidGroup());
}

const Vs::UniqueString* PrimitiveCmdDef::originArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Origin", true);
    return name;
}

const Vs::UniqueString* PrimitiveCmdDef::directionArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Direction", true);
    return name;
}

bool PrimitiveCmdDef::onIsApplicable(CommandContext* context) const
{
    return context->assetSession() != nullptr;
}

CommandBase* PrimitiveCmdDef::onCreateCommand(CommandContext* context)
{
    // Recordings from before there were panels start the same commands by lines.
    if (context->isByHand() && context->arguments() == 0)
        return new PrimitivePanelCmd(this, context, m_row);
    return new PrimitiveCmd(this, context, m_row);
}

std::wstring PrimitiveCmdDef::onPreferredEnvironment()
{
    return ModellingEnvironment::kId;
}

} // namespace Vu::Design
