#include "UI/Commands/Adaptations/QT/AutoSave/RecoveredSection.h"

#include "Server/DataModel/Recovery/AutoSaveController.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Commands/Adaptations/QT/Shell/Icons.h"
#include "UI/Commands/Adaptations/QT/Told.h"
#include "UI/Commands/AutoSave/NotifyAutoSaveFilesCmd.h"
#include "UI/Commands/AutoSave/RecoveryFiles.h"
#include "UI/Commands/Localized.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include <algorithm>

namespace Vu::Commands {
namespace {

constexpr int kIconSize = 32, kSpacing = 12, kRowSpacing = 8;
constexpr size_t kMostRows = 8; // The dialog shows them all.

QString noteOf(const Vs::AutoSavedFileInfo& file)
{
    QString note = QString::fromStdWString(
        localizedFormat("RecoveredTime", "Auto-saved on %1%", RecoveryFiles::timeOf(file)));
    if (file.isOlder())
        note += u' ' + told("RecoveredOlder", "(the last file is damaged; this is the one before)");
    return note;
}

/// Makes room for the buttons where the window is narrow.
QLabel* line(const QString& content, QWidget* parent)
{
    QLabel* label = PlainText::label(parent, content);
    label->setMinimumWidth(1);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

QLayout* makeTexts(const Vs::AutoSavedFileInfo& file, QWidget* parent)
{
    auto* column = new QVBoxLayout;
    column->setSpacing(2);
    QLabel* name = line(QString::fromStdWString(file.fileName()), parent);
    QFont bold = name->font();
    bold.setBold(true);
    name->setFont(bold);
    column->addWidget(name);
    for (const QString& content : {noteOf(file), QString::fromStdWString(file.oriSourceFile())}) {
        if (content.isEmpty())
            continue;
        QLabel* note = line(content, parent);
        note->setForegroundRole(QPalette::PlaceholderText);
        column->addWidget(note);
    }
    return column;
}

} // namespace

RecoveredSection::RecoveredSection(QWidget* parent) : TileSection(told("HomeRecovered", "Recovered"), parent)
{
    setObjectName(QStringLiteral("recoveredFiles"));
    hide();
    if (Vs::AutoSaveController::get()->hasLooked())
        fill();
    m_subscriptions.add(Vs::AutoSaveEventSource::get(), this);
}

void RecoveredSection::fillSoon()
{
    if (m_filling)
        return;
    m_filling = true;
    QTimer::singleShot(0, this, [this] {
        m_filling = false;
        fill();
    });
}

void RecoveredSection::fill()
{
    const std::vector<Vs::AutoSavedFileInfo> files = RecoveryFiles::offered();
    auto* rows = new QWidget(this);
    auto* column = new QVBoxLayout(rows);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(kRowSpacing);
    for (size_t i = 0; i < std::min(files.size(), kMostRows); ++i)
        column->addWidget(makeRow(files[i], rows));
    if (files.size() > kMostRows)
        column->addWidget(makeMore(files.size(), rows), 0, Qt::AlignLeft);
    placeholder(rows);
    setVisible(!files.empty());
}

QWidget* RecoveredSection::makeMore(size_t count, QWidget* parent)
{
    auto* more = new QPushButton(
        QString::fromStdWString(localizedFormat("RecoveredAll", "Show All %1%...", count)), parent);
    more->setObjectName(QStringLiteral("all"));
    connect(more, &QPushButton::clicked, this, [] {
        CommandMgr::get()->executeLater(NotifyAutoSaveFilesCmdDef::kRow.key, CommandContext::activeContext());
    });
    return more;
}

QWidget* RecoveredSection::makeRow(const Vs::AutoSavedFileInfo& file, QWidget* parent)
{
    auto* row = new QFrame(parent);
    row->setObjectName(QStringLiteral("recoveredRow"));
    row->setAccessibleName(QString::fromStdWString(RecoveryFiles::rowOf(file)));
    auto* layout = new QHBoxLayout(row);
    layout->setSpacing(kSpacing);
    auto* icon = PlainText::label(row);
    icon->setPixmap(iconOfDocumentType(file.docIdentifier()).pixmap(kIconSize));
    layout->addWidget(icon);
    layout->addLayout(makeTexts(file, row), 1);
    const auto button = [&](const char* name, const QString& title, auto action) {
        auto* made = new QPushButton(title, row);
        made->setObjectName(QLatin1String(name));
        made->setAccessibleDescription(row->accessibleName());
        layout->addWidget(made);
        // After the click, since the row is removed with the file.
        connect(made, &QPushButton::clicked, this,
                [this, file, action] { QTimer::singleShot(0, this, [file, action] { action(file); }); });
    };
    button("open", told("RecoveryOpen", "Open"), RecoveryFiles::open);
    button("saveAs", told("RecoverySaveAs", "Save As..."), RecoveryFiles::saveAs);
    button("delete", told("RecoveryDelete", "Delete"), RecoveryFiles::remove);
    return row;
}

} // namespace Vu::Commands
