#include "Server/DataModel/DamagedParts.h"

#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Exchange/LostFaces.h"
#include "Server/DataModel/Model/ModelData.h"

#include <algorithm>
#include <sstream>

namespace Vs::DamagedParts {

namespace {

constexpr const char* kSetting = "DamagedParts";
constexpr size_t kMost = 1000; // Occurrences; nobody looks through more of them.

using Exchange::LostFaces;

void collect(const Component& parent, const std::unordered_map<std::wstring, LostFaces>& losses,
             std::ostringstream& lines, size_t& count)
{
    for (const auto& child : parent.children) {
        auto loss = losses.find(child->name);
        if (loss == losses.end() && child->body)
            loss = losses.find(child->body->name());
        // What became of a solid that lost faces may lie in a component of its part, which is called the
        // same.
        if (loss == losses.end())
            collect(*child, losses, lines, count);
        else if (count++ < kMost)
            lines << loss->second.lost << ' ' << loss->second.all << ' ' << child->id << '\n';
    }
}

} // namespace

std::unordered_map<std::string, Loss> of(const Asset& asset)
{
    std::unordered_map<std::string, Loss> losses;
    std::istringstream lines(Strings::narrow(asset.setting(kSetting)));
    Loss loss;
    for (std::string id; lines >> loss.first >> loss.second >> id;)
        losses[id] = loss;
    return losses;
}

std::vector<std::wstring> warningsOf(const Asset& asset)
{
    const ModelSource& source = asset.data().source();
    return source.file && !source.isNative ? source.file->warnings() : std::vector<std::wstring>();
}

void note(Asset& asset, const std::vector<std::wstring>& warnings)
{
    std::unordered_map<std::wstring, LostFaces> losses, notShown;
    for (const std::wstring& warning : warnings)
        if (const auto loss = LostFaces::ofWarning(Strings::narrow(warning)); loss && !loss->part.empty())
            (loss->areThere ? notShown : losses)[Strings::widen(loss->part)] = *loss;
    // A part may have lost some, and have others that can't be shown: those are counted without the lost
    // ones.
    for (const auto& [part, more] : notShown)
        if (const auto [known, isNew] = losses.emplace(part, more); !isNew) {
            known->second.all = std::max(known->second.all, known->second.lost + more.all);
            known->second.lost += more.lost;
        }
    if (losses.empty())
        return;
    std::ostringstream lines;
    size_t count = 0;
    collect(*asset.components(), losses, lines, count);
    if (count > 0)
        asset.setting(kSetting, Strings::widen(lines.str()));
}

} // namespace Vs::DamagedParts
