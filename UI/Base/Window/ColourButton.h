#pragma once

#include "Server/Body/BodyMesh.h"

#include <QToolButton>

#include <functional>
#include <optional>

namespace Vu {

/// A button that shows a colour, with a menu of colours to choose from: some that go well together, any other
/// one, or none.
class ColourButton : public QToolButton
{
public:
    /// Called with what was chosen; null for none.
    using Choose = std::function<void(const std::optional<Vs::Colour>&)>;

    ColourButton(const QString& title, Choose choose, QWidget* parent);

    /// Null where there is none, or several differ, as the text says.
    void colour(const std::optional<Vs::Colour>& colour, const QString& text);

private:
    void fillMenu();
    void askForAny();

    QString m_title;
    Choose m_choose;
    std::optional<Vs::Colour> m_colour;
};

} // namespace Vu
