#pragma once

#include "UI/Commands/Localized.h"

#include <QGroupBox>
#include <QVBoxLayout>

namespace Vu::Commands {

inline QString panelText(const char* key, const char* english)
{
    return QString::fromStdWString(localized(key, english));
}

/// The placeholder text of a field in a validation window.
inline QString descriptionText()
{
    return panelText("ValidationDescription", "Description");
}

/// Puts the contents into a titled frame that fills the whole panel.
inline void putInGroup(QWidget* panel, const QString& title, QLayout* contents)
{
    auto* group = new QGroupBox(title);
    group->setLayout(contents);
    auto* outer = new QVBoxLayout(panel);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(group);
}

} // namespace Vu::Commands
