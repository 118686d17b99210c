#include "UI/Commands/SamePath.h"

#include <algorithm>

namespace Vu::Commands {

bool isSamePath(const std::wstring& a, const std::wstring& b)
{
    const auto plain = [](wchar_t letter) { return letter == L'\\' ? L'/' : letter; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](wchar_t one, wchar_t other) { return plain(one) == plain(other); });
}

} // namespace Vu::Commands
