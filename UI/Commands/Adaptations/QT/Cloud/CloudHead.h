#pragma once

#include "Server/Skyvault/CloudEvents.h"

#include <QWidget>

#include <functional>
#include <string>

class QIcon;
class QLabel;
class QLineEdit;
class QToolButton;

namespace Vu::Commands {

class CloudPath;

/// The header of the drive's dialog: whose drive it is and whether it can be reached, the path to the shown
/// folder, the actions available in it, and the search field.
class CloudHead : public QWidget, private Vs::CloudEventSite
{
public:
    struct Actions
    {
        std::function<void(const std::string&)> open; ///< A folder on the path.
        std::function<void()> goAbove, makeFolder, readAgain;
        std::function<void(const QString&)> search; ///< On each keystroke.
        std::function<void()> toList;               ///< From the search field, by Return or Down.
    };
    CloudHead(Actions actions, bool makesFolders, QWidget* parent);

    void show(const std::string& folder);
    void clearSearch();
    void goToSearch();
    /// `isRead` once a folder is shown.
    void enable(bool isRead, bool isBusy);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QToolButton* button(const char* icon, const char* name, const QString& title, std::function<void()> run);
    void makeSearch();
    void cloudSessionChanged(Vs::CloudEvent*) override;

    Actions m_actions;
    std::string m_folder;
    QLabel* m_account;
    CloudPath* m_path;
    QToolButton* m_up;
    QToolButton* m_new;
    QToolButton* m_again;
    QLineEdit* m_search;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
