#include "UI/Base/Window/HomePage.h"

#include "Server/Base/UniqueString.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Window/Theme.h"

#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace Vu {
namespace {

constexpr int kColumnWidth = 560;
constexpr int kShownDocuments = 10;
/// In the order in which they are offered; those that no add-in has are left out.
constexpr const wchar_t* kFirstSteps[] = {L"NewDocumentCommand", L"OpenDocumentCommand",
                                          L"CloudOpenDocumentCommand"};

QLabel* heading(const QString& text, int points, bool bold, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setPointSize(points);
    font.setBold(bold);
    label->setFont(font);
    return label;
}

} // namespace

void openDroppedFiles(const std::vector<std::wstring>& paths)
{
    CommandDefinition* open = CommandDefinitionMgr::get()->findCommandDefinitionById(L"OpenDocumentCommand");
    if (!open)
        return;
    for (const std::wstring& path : paths) {
        CommandContext context = CommandContext::activeContext();
        context.addArgument(Vs::UniqueString::find("DragAndDrop"), path);
        context.executeImmediately(false);
        CommandMgr::get()->executeCommand(open, context);
    }
}

HomePage::HomePage(QWidget* parent) : QWidget(parent), m_recent(new QListWidget(this))
{
    auto* sides = new QHBoxLayout(this);
    auto* column = new QVBoxLayout;
    sides->addStretch(1);
    sides->addLayout(column);
    sides->addStretch(1);
    column->addStretch(1);
    column->addWidget(heading(QStringLiteral("Quillet"), 28, true, this));
    column->addWidget(
        heading(QStringLiteral("Open a model, or drop a file anywhere on this window."), 11, false, this));
    column->addSpacing(4 * kMargin);

    auto* steps = new QHBoxLayout;
    for (const wchar_t* id : kFirstSteps) {
        CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(id);
        if (!definition)
            continue;
        auto* button = new QPushButton(iconOf(definition->info()->icon()),
                                       QString::fromStdWString(definition->info()->name()), this);
        button->setIconSize(QSize(kIconSize, kIconSize));
        connect(button, &QPushButton::clicked, this, [definition] { definition->onClicked(); });
        steps->addWidget(button);
    }
    steps->addStretch(1);
    column->addLayout(steps);
    column->addSpacing(4 * kMargin);

    m_recentTitle = heading(QStringLiteral("Recent documents"), 11, true, this);
    column->addWidget(m_recentTitle);
    m_recent->setObjectName(QStringLiteral("recent"));
    m_recent->setFixedWidth(kColumnWidth);
    m_recent->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_recent->setTextElideMode(Qt::ElideMiddle);
    column->addWidget(m_recent, 3);
    column->addStretch(1);
    connect(m_recent, &QListWidget::itemActivated, this, [](QListWidgetItem* item) {
        openDroppedFiles({item->data(Qt::UserRole).toString().toStdWString()});
    });

    RecentDocumentMgr::get()->subscribe(this);
    refresh();
}

HomePage::~HomePage()
{
    RecentDocumentMgr::get()->unsubscribe(this);
}

void HomePage::refresh()
{
    m_recent->clear();
    std::vector<RecentDocument*> documents;
    RecentDocumentMgr::get()->recentDocuments(documents, kShownDocuments);
    for (const RecentDocument* document : documents) {
        const QString path = QString::fromStdWString(document->path());
        const QFileInfo file(path);
        auto* item = new QListWidgetItem(file.fileName() + QStringLiteral("    ") + file.path(), m_recent);
        item->setData(Qt::UserRole, path);
        item->setToolTip(path);
    }
    m_recent->setVisible(!documents.empty());
    m_recentTitle->setVisible(!documents.empty());
}

} // namespace Vu
