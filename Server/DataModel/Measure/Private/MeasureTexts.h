#pragma once

#include "Server/DataModel/Model/ShapeMeasure.h"

#include <string>

/// What the user is told when a measure has no result.
namespace Vs::MeasureTexts {

/// One sentence; `name` is the object's path.
std::wstring reason(const std::wstring& name, NoAnswer why, ShapeKind kind, EMeasureType type);
/// The name of a part of a component of that name, such as "Cylinder of rod".
std::wstring solidOf(size_t number, const std::wstring& name);
std::wstring partOf(ShapeKind kind, const std::wstring& name);
std::wstring kernelFailed(const std::wstring& name, const std::string& message);
std::wstring noExactShape(const std::wstring& name);
std::wstring otherModel(const std::wstring& name);
std::wstring samePlaces(const std::wstring& name);
std::wstring wrongCount(EMeasureType type);
std::wstring nothingSelected();
std::wstring closedModel();

} // namespace Vs::MeasureTexts
