#include "UI/Base/Window/ColourButton.h"

#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/PlainText.h"

namespace Vu {

ColourButton::ColourButton(const QString& title, ColourMenu::Choose choose, QWidget* parent)
    : QToolButton(parent), m_title(title)
{
    setObjectName(QStringLiteral("colour"));
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setPopupMode(QToolButton::InstantPopup);
    setFocusPolicy(Qt::StrongFocus);
    setIconSize(QSize(ColourMenu::kSide, ColourMenu::kSide));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMenu(new ColourMenu(
        std::move(choose), [this] { return m_code; }, this));
    Accessible::opener(this, menu(), [this] { showMenu(); });
}

void ColourButton::colour(const std::wstring& code, const QString& shown)
{
    m_code = code;
    setText(shown);
    setIcon(code.empty() ? QIcon() : ColourMenu::swatch(code, *this));
    setAccessibleName(m_title + QStringLiteral(": ") + shown);
    PlainText::setTooltip(this, m_title);
}

} // namespace Vu
