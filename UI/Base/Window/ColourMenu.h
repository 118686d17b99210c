#pragma once

#include <QIcon>
#include <QMenu>

#include <functional>
#include <string>

namespace Vu {

/// Colours to choose from, wherever one is chosen: a few that go well together, recently mixed ones, any
/// other one by a dialog, or none. All are values of a ColourCommandInput.
class ColourMenu : public QMenu
{
public:
    using Choose = std::function<void(const std::wstring& code)>;
    /// The highlighted colour, with which the dialog starts; "" for none, or if several differ.
    using Current = std::function<std::wstring()>;

    /// `choose` may be called after the menu is gone, from the dialog; `current` is asked at each opening.
    ColourMenu(Choose choose, Current current, QWidget* parent);

    /// A small square of the colour.
    static QIcon swatch(const std::wstring& code, const QWidget& widget);
    static constexpr int kSide = 16;

private:
    void fill();
    void add(const std::wstring& code);
    void askForAny();

    Choose m_choose;
    Current m_ask;
    std::wstring m_current; ///< As set at the last opening.
};

} // namespace Vu
