#pragma once

#include "UI/Commands/Cloud/CloudDialog.h"

#include <QDialog>
#include <QPointer>

#include <string>

class QLabel;
class QModelIndex;
class QProgressBar;
class QPushButton;

namespace Vu::Commands {

class CloudFolderModel;
class CloudHead;
class CloudList;
class CloudName;

/// Lets the user choose a folder, a name or a document on the drive, navigating folder by folder. While a
/// folder is read, the list waits, and Esc or Cancel stops reading; the previous content stays. While the
/// drive can't be reached, the list is that of the local copies, as a line below it says.
class QTCloudDialog : public QDialog
{
public:
    QTCloudDialog(CloudDialog::Request request, const QString& name, QWidget* parent);

    /// The choice, if the dialog was accepted: the folder with its children, or the document.
    const Vs::SkyvaultNodeData& node() const { return m_chosen; }
    QString name() const;

    /// Reads a folder, or what is known of it if the drive can't be reached; if that fails, the dialog says
    /// why, stays where it was and returns false.
    bool open(std::string folder);

    void accept() override;
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    CloudHead* makeHead();
    CloudList* makeList();
    CloudName* makeName(const QString& name);
    QWidget* makeButtons();
    void take(Vs::SkyvaultNodeData folder, bool isAway);
    void refresh();
    void goAbove();
    void makeFolder();
    void activate(const QModelIndex& index);
    void selectionChanged();
    void showState();
    void busy(bool value, const QString& what = {});
    void tell(const QString& text);

    CloudDialog::Request m_request;
    Vs::SkyvaultNodeData m_folder; ///< The shown one, with its children.
    Vs::SkyvaultNodeData m_chosen;
    QPointer<QWidget> m_focus; ///< Which had the focus when a request began.
    bool m_isAway = false;     ///< The list shows what this computer has.
    bool m_isBusy = false;
    bool m_closes = false;

    CloudFolderModel* m_model;
    CloudHead* m_head = nullptr;
    CloudList* m_list = nullptr;
    CloudName* m_name = nullptr;
    QProgressBar* m_progress = nullptr;
    QLabel* m_message = nullptr;
    QPushButton* m_choose = nullptr;
};

} // namespace Vu::Commands
