#pragma once

#include "Server/Base/TextCommand.h"
#include "Server/Geometry/GkMatrix3d.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QString>

#include <string>

namespace Vs {
class Asset;
class Component;
} // namespace Vs

/// Shared by the lines of the subject area "Script".
namespace Vu::ScriptLines {

constexpr const wchar_t* kArea = L"Script";

inline QJsonArray json(const GkPoint3d& point)
{
    return {point.x, point.y, point.z};
}

inline QJsonArray json(const GkVector3d& vector)
{
    return {vector.x, vector.y, vector.z};
}

inline QString json(const std::wstring& text)
{
    return QString::fromStdWString(text);
}

/// The matrix as rows.
QJsonArray json(const GkMatrix3d& matrix);

Vs::TextCommandResult answer(const QJsonDocument& document);

/// Throws Vs::Exception if there is none.
Vs::Asset& activeAsset();

/// The component and the placement of its local coordinates in the model.
struct Place
{
    const Vs::Component* component;
    std::wstring path; ///< Empty for the root.
    GkMatrix3d matrix;
};

/// The component that the first parameter names: by its path or, with /Id, by the key that Script.Component
/// reports; without a parameter, the root. Throws Vs::Exception.
Place placeOf(const Vs::Asset& asset, const Vs::TextCommandParameters& parameters);

/// One row for each line.
struct Row
{
    const wchar_t* name;
    const wchar_t* help;
    Vs::TextCommandResult (*run)(const Vs::TextCommandParameters&);
    const char* format = "";
};

template <const Row& kRow>
class Line : public Vs::PythonEntry<Line<kRow>, Vs::TextCommand>
{
public:
    Line()
        : Vs::PythonEntry<Line<kRow>, Vs::TextCommand>(kArea, kRow.name, kRow.help, kRow.format, false, true)
    {
    }
    Vs::TextCommandResult execute(const Vs::TextCommandParameters& parameters) override
    {
        return kRow.run(parameters);
    }
};

} // namespace Vu::ScriptLines
