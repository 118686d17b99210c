#include "Server/Skyvault/Private/Failures.h"

#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"

#include <map>

namespace Vs::Cloud {
namespace {

std::map<CloudErrorState, std::wstring>& details()
{
    assertMainThread();
    static std::map<CloudErrorState, std::wstring> known;
    return known;
}

} // namespace

CloudErrorState Failures::note(const DriveResult& result)
{
    return note(result.state, Strings::widen(result.detail));
}

CloudErrorState Failures::note(CloudErrorState state, std::wstring detail)
{
    if (state != CloudErrorState::Success)
        details()[state] = std::move(detail);
    return state;
}

std::wstring Failures::detail(CloudErrorState state)
{
    const auto found = details().find(state);
    return found == details().end() ? std::wstring() : found->second;
}

} // namespace Vs::Cloud
