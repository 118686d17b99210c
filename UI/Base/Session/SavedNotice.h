#pragma once

#include <string>

namespace Vu {

/// The notification that a file is saved. There is one for each file, since whoever saves often doesn't want
/// to read it as often. Main thread only.
class SavedNotice
{
public:
    static void show(const std::wstring& title, const std::wstring& file);
};

} // namespace Vu
