#pragma once

#include <string>
#include <vector>

namespace Vs {
class Asset;
class Component;
} // namespace Vs

/// Components as objects of scripts know them: by a key that stays right when names and numbers change, and
/// that names none of another model. Main thread only.
namespace Vu::ScriptedModel {

[[nodiscard]] std::wstring keyOf(const Vs::Asset& asset, const Vs::Component& component);
/// Throws Vs::Exception if it isn't in this asset any more, or never was.
[[nodiscard]] const Vs::Component& find(const Vs::Asset& asset, const std::wstring& key);
/// The components, by Component::id, that were added to the asset since scripts have last had that forgotten
/// (Vs::ScriptModel), and are still there; the oldest first. None before the first time.
[[nodiscard]] std::vector<std::string> added(const Vs::Asset& asset);

} // namespace Vu::ScriptedModel
