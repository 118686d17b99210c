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

/// Lets a person choose a folder, a name or a document on the drive, going through it folder by folder. While
/// a folder is read, the list waits, and Esc or Cancel stops reading; the previous content stays. While the
/// drive can't be reached, the list is that of the local copies, as a line below it says.
class QTCloudDialog : public QDialog
{
public:
    QTCloudDialog(CloudDialog::Request request, const QString& name, QWidget* parent);

    /// What was chosen, when the dialog was accepted: the folder with its children, or the document.
    const Vs::SkyvaultNodeData& node() const { return m_chosen; }
    QString name() const;

    /// Reads a folder, or what is known of it where the drive can't be reached; if that fails, the dialog
    /// says why and stays where it was. False then.
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
    Vs::SkyvaultNodeData m_folder; ///< The one that is shown, with its children.
    Vs::SkyvaultNodeData m_chosen;
    QPointer<QWidget> m_focus; ///< Which had the keyboard when a request began.
    bool m_isAway = false;     ///< What is shown is what this computer has.
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
