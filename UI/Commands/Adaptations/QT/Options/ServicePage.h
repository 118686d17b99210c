#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace Vu::Commands {

/// What the pages of the preferences about services have in common: a switch, and below it what only matters
/// while the service is on. The parts are called as the page with what they are behind it, such as
/// "cloudSign".
class ServicePage : public QWidget
{
protected:
    /// @param name of the service, in small letters
    /// @param title of the switch
    ServicePage(const char* name, const QString& title, QWidget* parent);

    /// Each of them adds below the last.
    QLabel* addHead(const QString& title);
    QLabel* addText(const char* part);
    QPushButton* addButton(const char* part, const QString& title);
    QCheckBox* addChoice(const char* part, const QString& title);

    [[nodiscard]] QCheckBox* onOff() const { return m_on; }
    /// Shows whether the service is on, `switchedOff` by the user or `isDisabled` by him or the edition,
    /// which can't be switched. @returns whether the rest shows
    bool showRest(bool switchedOff, bool isDisabled);
    /// The keyboard goes from a button that is hidden or disabled next to `other`: by itself it would go to
    /// the next page, which would be scrolled to.
    static void keepKeyboard(const QPushButton* button, bool stays, QWidget* other);

private:
    [[nodiscard]] QString nameOf(const char* part) const;

    const QString m_name;
    QCheckBox* const m_on;
    QWidget* const m_rest;
    QVBoxLayout* const m_column;
};

} // namespace Vu::Commands
