#pragma once

#include "UI/Commands/Adaptations/QT/Told.h"

#include <QGroupBox>
#include <QVBoxLayout>

namespace Vu::Commands {

/// The placeholder text of a field in a validation window.
inline QString descriptionText()
{
    return told("ValidationDescription", "Description");
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
