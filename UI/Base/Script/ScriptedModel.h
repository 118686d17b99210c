#pragma once

#include <string>
#include <vector>

namespace Vs {
class Asset;
class Component;
} // namespace Vs

/// Components as scripts refer to them: by a key that stays valid when names and numbers change, and that
/// never matches a component of another model. Main thread only.
namespace Vu::ScriptedModel {

[[nodiscard]] std::wstring keyOf(const Vs::Asset& asset, const Vs::Component& component);
/// Throws Vs::Exception if it isn't in this asset any more, or never was.
[[nodiscard]] const Vs::Component& find(const Vs::Asset& asset, const std::wstring& key);
/// The components, by Component::id, that were added to the asset since scripts last had that list cleared
/// (Vs::ScriptModel), and that still exist; the oldest first. None before the first time.
[[nodiscard]] std::vector<std::string> added(const Vs::Asset& asset);

} // namespace Vu::ScriptedModel
