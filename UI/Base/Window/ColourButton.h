#pragma once

#include "UI/Base/Window/ColourMenu.h"

#include <QToolButton>

namespace Vu {

/// A button that shows a colour, with a menu of colours to choose from.
class ColourButton : public QToolButton
{
public:
    ColourButton(const QString& title, ColourMenu::Choose choose, QWidget* parent);

    /// A value of a ColourCommandInput; "" if there is none, or if several differ, as the text says.
    void colour(const std::wstring& code, const QString& text);

private:
    QString m_title;
    std::wstring m_code;
};

} // namespace Vu
