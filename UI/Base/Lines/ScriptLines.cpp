#include "UI/Base/Lines/ScriptLines.h"

#include "Server/Base/Exception.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Script/ScriptedModel.h"
#include "UI/Base/Session/ActiveAssetUtils.h"

namespace Vu {

namespace {

ScriptLines::Place placeOfComponent(const Vs::Asset& asset, const Vs::Component& component)
{
    const Vs::ObjectPath path{.component = component.id};
    if (component.id.empty())
        return {&component, {}, {}};
    return {&component, Vs::pathText(path, asset), Vs::placementOf(path, asset).value_or(GkMatrix3d())};
}

} // namespace

QJsonArray ScriptLines::json(const GkMatrix3d& matrix)
{
    QJsonArray rows;
    for (const auto& row : matrix.entry)
        rows.append(QJsonArray{row[0], row[1], row[2], row[3]});
    return rows;
}

Vs::TextCommandResult ScriptLines::answer(const QJsonDocument& document)
{
    return {0, QString::fromUtf8(document.toJson(QJsonDocument::Compact)).toStdWString()};
}

Vs::Asset& ScriptLines::activeAsset()
{
    Vs::Asset* asset = ActiveAssetUtils::asset();
    if (!asset)
        throw Vs::Exception(localized("ScriptNoModel", "There is no active model."));
    return *asset;
}

ScriptLines::Place ScriptLines::placeOf(const Vs::Asset& asset, const Vs::TextCommandParameters& parameters)
{
    if (parameters.parameters() == 0 || parameters[0].empty())
        return placeOfComponent(asset, *asset.components());
    if (parameters.hasFlag(L"Id"))
        return placeOfComponent(asset, ScriptedModel::find(asset, parameters[0]));
    Vs::Status status;
    const auto path = Vs::findPath(asset, parameters[0], status);
    if (!path)
        throw Vs::Exception(status.toString());
    return placeOfComponent(asset, *asset.findComponent(path->component));
}

} // namespace Vu
