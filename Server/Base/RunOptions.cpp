#include "Server/Base/RunOptions.h"

#include "Server/Base/Require.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace Vs::RunOptions {

namespace {

std::vector<std::pair<std::string, std::string>>& all()
{
    // Groups are statics, destroyed in any order, and are written then.
    static auto* const added = new std::vector<std::pair<std::string, std::string>>;
    return *added;
}

} // namespace

void add(const std::string& group, const std::string& beginning)
{
    assertMainThread();
    all().emplace_back(group, beginning);
}

void clear()
{
    assertMainThread();
    all().clear();
}

bool contains(const std::string& group, const std::string& option)
{
    return std::any_of(all().begin(), all().end(), [&](const auto& added) {
        return added.first == group && option.starts_with(added.second);
    });
}

} // namespace Vs::RunOptions
