#include "UI/Design/PrimitiveCmds.h"

#include "Server/Base/Strings.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/Types/PointText.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/CommandTitles.h"
#include "UI/Base/Command/Info.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Design/Environments.h"
#include "UI/Design/Localized.h"
#include "UI/Design/PrimitiveTable.h"
#include "UI/Design/Resources.h"

#include <memory>
#include <vector>

namespace Vu::Design {

using Look = Vs::ModelBuilder::Look;

// clang-format off
constexpr PrimitiveRow::Size kBoxSizes[]      = {{"Dx", 100.0}, {"Dy", 100.0}, {"Dz", 100.0}};
constexpr PrimitiveRow::Size kCylinderSizes[] = {{"Radius", 50.0}, {"Height", 100.0}};
constexpr PrimitiveRow::Size kSphereSizes[]   = {{"Radius", 50.0}};

constinit const PrimitiveRow kBox = {
    L"BoxCommand", "Box", "Add a box to the design", kBoxSizes,
    [](Vs::ModelBuilder& builder, const double* size, const Look& look, Vs::Status& status) {
        return builder.box(size[0], size[1], size[2], look, status); }};

constinit const PrimitiveRow kCylinder = {
    L"CylinderCommand", "Cylinder", "Add a cylinder to the design", kCylinderSizes,
    [](Vs::ModelBuilder& builder, const double* size, const Look& look, Vs::Status& status) {
        return builder.cylinder(size[0], size[1], look, status); }};

constinit const PrimitiveRow kSphere = {
    L"SphereCommand", "Sphere", "Add a sphere to the design", kSphereSizes,
    [](Vs::ModelBuilder& builder, const double* size, const Look& look, Vs::Status& status) {
        return builder.sphere(size[0], look, status); }};
// clang-format on

namespace {

class AddPrimitiveRequest : public Vs::Implements<AddPrimitiveRequest, Vs::Request>
{
public:
    /// `parent` is the component (Component::id) that it goes into; empty for the top of the model.
    AddPrimitiveRequest(const PrimitiveRow& row, std::vector<double> sizes, Look look, std::string parent)
        : Implements(Vs::Strings::widen(row.title)),
          m_row(row),
          m_sizes(std::move(sizes)),
          m_look(std::move(look)),
          m_parent(std::move(parent))
    {
    }

protected:
    void onExecute(Vs::Asset& asset, Vs::Status& status) override
    {
        struct Destroy
        {
            void operator()(Vs::Request* request) const { request->destroy(); }
        };
        Vs::ModelBuilder builder(&asset);
        const Vs::Component* made = m_row.build(builder, m_sizes.data(), m_look, status);
        if (!made || m_parent.empty())
            return;
        const std::unique_ptr<Vs::EditRequest, Destroy> request(
            Vs::EditRequest::make(&asset, name(), Vs::NestEdit{{made->id}, m_parent}));
        request->execute(&asset, status);
    }

private:
    const PrimitiveRow& m_row;
    std::vector<double> m_sizes;
    Look m_look;
    std::string m_parent;
};

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
        Look look;
        if (!readSizes(sizes, status) || !readOrigin(look, status))
            return;
        const std::string parent = assetSession() ? assetSession()->editedComponent() : std::string();
        AddPrimitiveRequest(m_row, std::move(sizes), std::move(look), parent).execute(asset, status);
    }

private:
    bool readSizes(std::vector<double>& sizes, Vs::Status& status) const
    {
        size_t given = 0;
        const char* missing = nullptr;
        for (const PrimitiveRow::Size& size : m_row.sizes) {
            double value = size.ordinary;
            if (readNumber(size.name, value))
                ++given;
            else if (!missing)
                missing = size.name;
            sizes.push_back(value);
        }
        if (given == 0 || !missing)
            return true;
        status.addError(localizedFormat("PrimitiveSizeMissing",
                                        "%1%: the size %2% is missing or is not a number.",
                                        Vs::Strings::widen(m_row.title), Vs::Strings::widen(missing)));
        return false;
    }

    /// A whole number may come as an integer argument.
    bool readNumber(const char* name, double& value) const
    {
        const Vs::UniqueString* key = Vs::UniqueString::find(name, true);
        int whole = 0;
        if (commandContext()->argument(key, CommandContext::EArgType::Double, &value))
            return true;
        if (!commandContext()->argument(key, CommandContext::EArgType::Int, &whole))
            return false;
        value = whole;
        return true;
    }

    bool readOrigin(Look& look, Vs::Status& status) const
    {
        const std::wstring text = commandContext()->argumentAsString(PrimitiveCmdDef::originArgumentName());
        GkPoint3d origin;
        if (text.empty())
            return true;
        if (!Vs::Types::StringToPoint3d(text, origin)) {
            status.addError(
                localizedFormat("PrimitiveOriginWrong", "\"%1%\" is not a point; write it as x,y,z.", text));
            return false;
        }
        look.placement = GkMatrix3d::translation({origin.x, origin.y, origin.z});
        return true;
    }

    const PrimitiveRow& m_row;
};

Info makeInfo(const PrimitiveRow& row, Vs::ImageSetResource* icon)
{
    const std::string key = Vs::Strings::narrow(row.key);
    return Info(row.key, CommandTitles::localized(row.key, kDomain, key.c_str(), row.title), icon,
                ToolTipInfo(localized((key + "Desc").c_str(), row.tooltip), L"", nullptr));
}

} // namespace

const Vs::UniqueString* PrimitiveCmdDef::originArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Origin", true);
    return name;
}

bool PrimitiveCmdDef::onIsApplicable(CommandContext* context) const
{
    return context->assetSession() != nullptr;
}

std::wstring PrimitiveCmdDef::onPreferredEnvironment()
{
    return ModellingEnvironment::kId;
}

Info* BoxCmdDef::info()
{
    static Info info = makeInfo(kBox, Resources::Box());
    return &info;
}

BoxCmdDef::BoxCmdDef() : Implements(info())
{
    joinCommandGroup(CommandGroup::VeloraSolidGroup());
}

CommandBase* BoxCmdDef::onCreateCommand(CommandContext* context)
{
    return new PrimitiveCmd(this, context, kBox);
}

Info* CylinderCmdDef::info()
{
    static Info info = makeInfo(kCylinder, Resources::Cylinder());
    return &info;
}

CylinderCmdDef::CylinderCmdDef() : Implements(info())
{
    joinCommandGroup(CommandGroup::VeloraSolidGroup());
}

CommandBase* CylinderCmdDef::onCreateCommand(CommandContext* context)
{
    return new PrimitiveCmd(this, context, kCylinder);
}

Info* SphereCmdDef::info()
{
    static Info info = makeInfo(kSphere, Resources::Sphere());
    return &info;
}

SphereCmdDef::SphereCmdDef() : Implements(info())
{
    joinCommandGroup(CommandGroup::VeloraSolidGroup());
}

CommandBase* SphereCmdDef::onCreateCommand(CommandContext* context)
{
    return new PrimitiveCmd(this, context, kSphere);
}

} // namespace Vu::Design
