#include "UI/Commands/Adaptations/QT/AutoSave/QTFileRecovery.h"

#include "UI/Base/Program/Application.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Commands/Adaptations/QT/AutoSave/QTFileRecoveryListWidget.h"
#include "UI/Commands/Adaptations/QT/Panels/OverMainWindow.h"
#include "UI/Commands/Adaptations/QT/Told.h"
#include "UI/Commands/AutoSave/NotifyAutoSaveFilesCmd.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace Vu::Commands {
namespace {

constexpr int kHeight = 180;

} // namespace

QTFileRecovery::QTFileRecovery(QWidget* parent)
    : QDialog(parent, Qt::WindowTitleHint | Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint |
                          Qt::CustomizeWindowHint)
{
    setObjectName(QStringLiteral("fileRecovery"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(told("FileRecovery", "File Recovery"));
    auto* column = new QVBoxLayout(this);
    column->addWidget(PlainText::label(
        this, told("FileRecoveryLabel", "Following files have been recovered from auto-save directory. Click "
                                        "the\nfile to save or delete the auto-saved files")));
    m_list = new QTFileRecoveryListWidget(this);
    m_list->fill();
    column->addWidget(m_list);
    auto* row = new QHBoxLayout;
    row->addStretch();
    auto* close = new QPushButton(told("FileRecoveryClose", "Close"), this);
    close->setAutoDefault(false);
    row->addWidget(close);
    column->addLayout(row);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    connect(m_list, &QTFileRecoveryListWidget::closeDialog, this, &QDialog::close);
    adjustSize();
    const int needed = width();
    resize(needed, kHeight);
    setFixedWidth(needed);
}

namespace {

const bool registered = [] {
    NotifyAutoSaveFilesCmd::dialog([] {
        Application::get()->needGui();
        // One at a time: files listed by an earlier dialog may be gone.
        static QPointer<QTFileRecovery> dialog;
        delete dialog;
        dialog = new QTFileRecovery;
        new OverMainWindow(dialog);
        dialog->setModal(true);
        dialog->show();
    });
    return true;
}();

} // namespace
} // namespace Vu::Commands
