#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace Vu::Commands {

/// Base of the preferences pages about services: a switch, and below it everything that only matters while
/// the service is on. Widgets are named after the page plus their own name, such as "cloudSign".
class ServicePage : public QWidget
{
protected:
    /// @param name of the service, in lower case
    /// @param title of the switch
    ServicePage(const char* name, const QString& title, QWidget* parent);

    /// Each of them appends below the last one.
    QLabel* addHead(const QString& title);
    QLabel* addText(const char* part);
    QPushButton* addButton(const char* part, const QString& title);
    QCheckBox* addChoice(const char* part, const QString& title);

    [[nodiscard]] QCheckBox* onOff() const { return m_on; }
    /// Shows whether the service is on, was `switchedOff` by the user, or `isDisabled` by the user or the
    /// edition so that it can't be switched. @returns whether the rest is shown
    bool showRest(bool switchedOff, bool isDisabled);
    /// The focus goes from a button that is about to be hidden or disabled to `other`: otherwise it would go
    /// to the next page, which would be scrolled to.
    static void keepKeyboard(const QPushButton* button, bool stays, QWidget* other);

private:
    [[nodiscard]] QString nameOf(const char* part) const;

    const QString m_name;
    QCheckBox* const m_on;
    QWidget* const m_rest;
    QVBoxLayout* const m_column;
};

} // namespace Vu::Commands
