#pragma once

#include "UI/Base/Program/Private/Display.h"

/// Questions to the user, as Display asks them.
namespace Vu::QtDialogs {

int askMessage(const std::wstring& title, const std::wstring& text, int icon,
               const std::vector<Display::Button>& buttons, int cancel, QWidget* parent);
std::vector<std::wstring> askFileNames(const FileDialog::Request& request, const std::wstring& start,
                                       QWidget* parent);

} // namespace Vu::QtDialogs
