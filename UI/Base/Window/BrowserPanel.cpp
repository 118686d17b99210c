#include "UI/Base/Window/BrowserPanel.h"

#include "Server/CommonData/NamedViewSelection.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/Window/Accessible.h"
#include "UI/Base/Window/BrowserMarks.h"
#include "UI/Base/Window/BrowserModel.h"
#include "UI/Base/Window/ContextMenu.h"
#include "UI/Base/Window/EditedBar.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/Told.h"
#include "UI/Base/Workspace/Area.h"
#include "UI/Base/Workspace/LayoutStrategy.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTreeView>
#include <QVBoxLayout>

#include <functional>
#include <string_view>
#include <vector>

namespace Vu {
namespace {
using Vs::NameView::NamedView;
using Vs::NameView::NamedViewSelection;
using Vs::NameView::NamedViewsSelection;

constexpr int kTreeIcon = 18;
constexpr int kIndentation = 16;
constexpr int kFilterMargin = 6;

constexpr const wchar_t* kArea = L"Browser";
constexpr std::wstring_view kRestoreCommand = L"RestoreCameraCommand";
constexpr std::wstring_view kRemoveCommand = L"RemoveNamedViewCommand";
constexpr std::wstring_view kRenameViewCommand = L"UpdateNamedViewNameCommand";
constexpr std::wstring_view kRenameCommand = L"RenameCommand";
constexpr std::wstring_view kDeleteCommand = L"DeleteCommand";
constexpr std::wstring_view kEditCommand = L"EditComponentCommand";
constexpr std::wstring_view kHideCommand = L"HideCommand";
constexpr std::wstring_view kShowCommand = L"ShowCommand";
constexpr const char* kObjectsArgument = "Objects";
constexpr const char* kComponentArgument = "Component";
constexpr const char* kNameArgument = "NamedViewName";
constexpr const char* kNewViewNameArgument = "NewNamedViewName";
constexpr const char* kNewNameArgument = "NewName";

/// While clicks pick for a tool, they don't start renaming what is already picked.
class Tree : public QTreeView
{
public:
    Tree(QWidget* parent, std::function<bool()> picks) : QTreeView(parent), m_picks(std::move(picks)) {}

protected:
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override
    {
        return !(trigger == SelectedClicked && m_picks()) && QTreeView::edit(index, trigger, event);
    }

private:
    std::function<bool()> m_picks;
};

} // namespace

BrowserPanel::BrowserPanel(QWidget* parent)
    : QWidget(parent),
      m_filter(new QLineEdit(this)),
      m_tree(new Tree(this, [this] { return m_marks && m_marks->toolInput(); })),
      m_model(new BrowserModel(this))
{
    Accessible::menus(this);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(new EditedBar(this));
    auto* filterLine = new QVBoxLayout;
    filterLine->setContentsMargins(kFilterMargin, kFilterMargin, kFilterMargin, kFilterMargin);
    filterLine->addWidget(m_filter);
    column->addLayout(filterLine);
    column->addWidget(m_tree, 1);
    if (QWidget* foot = AreaContents::make("BrowserFoot", this))
        column->addWidget(foot);
    setUpFilter();
    setUpTree();
    followRows();
    followClicks();
    m_marks = std::make_unique<BrowserMarks>(m_tree, m_model);

    m_subscriptions.add(SessionEventSource::get(), this);
    show(SessionMgr::get()->currentAssetSession());
}

BrowserPanel::~BrowserPanel() = default;

void BrowserPanel::setUpFilter()
{
    constexpr int kLongest = 200;
    m_filter->setObjectName(QStringLiteral("browserFilter"));
    m_filter->setPlaceholderText(told("BrowserFilter", "Filter by name"));
    m_filter->setAccessibleName(m_filter->placeholderText());
    Accessible::clearButton(m_filter);
    m_filter->setMaxLength(kLongest);
    m_filter->installEventFilter(this);
    connect(m_filter, &QLineEdit::textChanged, this, [this](const QString& words) {
        m_model->filter(words);
        showFound();
    });
}

void BrowserPanel::setUpTree()
{
    m_tree->setAccessibleName(told("AreaBrowser", "Browser"));
    m_tree->setHeaderHidden(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setIconSize(QSize(kTreeIcon, kTreeIcon));
    m_tree->setIndentation(kIndentation);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tree->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    // A double click on a component edits it, on a named view it looks from there.
    m_tree->setExpandsOnDoubleClick(false);
    m_tree->setModel(m_model);
    m_tree->installEventFilter(this);
}

void BrowserPanel::followRows()
{
    const auto idOf = [this](const QModelIndex& index) {
        return m_model->data(index, BrowserModel::ComponentIdRole).toString().toStdString();
    };
    connect(m_tree, &QTreeView::expanded, this,
            [this, idOf](const QModelIndex& index) { m_open.insert(idOf(index)); });
    connect(m_tree, &QTreeView::collapsed, this,
            [this, idOf](const QModelIndex& index) { m_open.erase(idOf(index)); });
    connect(m_model, &QAbstractItemModel::modelReset, this, [this] { reopen(); });
    connect(m_model, &QAbstractItemModel::rowsInserted, this, &BrowserPanel::reopenBelow);
    // Whatever a hidden component contains changes its look with it.
    connect(m_model, &QAbstractItemModel::dataChanged, m_tree->viewport(), qOverload<>(&QWidget::update));
}

void BrowserPanel::followClicks()
{
    connect(m_tree->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { select(); });
    connect(m_tree, &QTreeView::pressed, this, [this] { m_checked = false; });
    connect(m_tree, &QTreeView::clicked, this, [this](const QModelIndex& index) {
        if (SelectionCommandInput* input = m_checked ? nullptr : m_marks->toolInput())
            pick(index, *input);
    });
    m_model->renamer(
        [this](const QModelIndex& index, const std::wstring& newName) { rename(index, newName); });
    m_model->shower([this](const QModelIndex& index, bool visible) {
        m_checked = true;
        const std::string id = m_model->component(index)->id;
        runFromContextMenu(visible ? kShowCommand : kHideCommand,
                           {{kObjectsArgument, Vs::pathText(Vs::ObjectPath{id}, *m_model->asset())}});
    });
    connect(m_tree, &QTreeView::customContextMenuRequested, this, &BrowserPanel::showMenu);
    connect(m_tree, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
        if (const Vs::StrongRef<NamedView> view = m_model->namedView(index))
            runFromContextMenu(kRestoreCommand, {{kNameArgument, view->name()}});
        else if (const Vs::Component* component = m_model->component(index);
                 component && index != m_model->rootIndex() && !m_marks->toolInput())
            edit(index, *component);
    });
}

void BrowserPanel::currentSessionChanged(SessionEvent* event)
{
    show(event->assetSession());
}

void BrowserPanel::sessionPostActivateForAsset(SessionEvent* event)
{
    show(event->assetSession());
}

void BrowserPanel::show(AssetSession* session)
{
    Vs::Asset* asset = session ? session->asset() : nullptr;
    if (asset != m_model->asset()) {
        m_open.clear();
        m_marks->follow(nullptr);
        m_model->asset(asset);
        m_filter->clear();
        m_filter->setEnabled(asset != nullptr);
    }
    if (session != m_marks->session())
        m_marks->follow(session);
}

void BrowserPanel::reopen()
{
    const std::set<std::string> open = m_open;
    for (const std::string& id : open) {
        const QModelIndex index = m_model->indexOf(id);
        if (index.isValid())
            m_tree->expand(index);
        else
            m_open.erase(id);
    }
    m_tree->expand(m_model->rootIndex());
    // A reset has cleared the selection; what still exists is selected again.
    m_marks->mark(true);
}

/// Expands the branches that lead to the filter's results, as far as the user can reasonably look.
void BrowserPanel::showFound()
{
    constexpr size_t kMost = 200;
    const std::vector<std::string> found = m_model->firstFound(kMost);
    for (const std::string& id : found)
        for (QModelIndex above = m_model->indexOf(id).parent(); above.isValid() && !m_tree->isExpanded(above);
             above = above.parent())
            m_tree->expand(above);
    if (!found.empty())
        m_tree->scrollTo(m_model->indexOf(found.front()));
}

bool BrowserPanel::pressInFilter(int key)
{
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    const std::vector<std::string> found = m_model->firstFound(1);
    if (key == Qt::Key_Escape && !m_filter->text().isEmpty()) {
        m_filter->clear();
    } else if ((isEnter || key == Qt::Key_Down) && !found.empty()) {
        const QModelIndex first = m_model->indexOf(found.front());
        m_tree->setFocus(Qt::ShortcutFocusReason);
        m_tree->selectionModel()->setCurrentIndex(first, isEnter ? QItemSelectionModel::ClearAndSelect
                                                                 : QItemSelectionModel::NoUpdate);
    } else {
        return false;
    }
    return true;
}

// Branches that were expanded, or rows that were selected, when they were removed and have come back.
void BrowserPanel::reopenBelow(const QModelIndex& parent, int first, int last)
{
    for (int row = first; row <= last; ++row) {
        const Vs::Component* component = m_model->component(m_model->index(row, 0, parent));
        if (!component)
            continue;
        const std::string below = component->id + '/';
        if (m_open.contains(component->id))
            m_tree->expand(m_model->indexOf(component->id));
        for (auto open = m_open.lower_bound(below); open != m_open.end() && open->starts_with(below); ++open)
            m_tree->expand(m_model->indexOf(*open));
    }
    m_marks->rowsCame(parent, first, last);
}

// Objects of other kinds in the session's selection stay.
void BrowserPanel::select()
{
    const AssetSession* session = assetSession();
    if (!session || m_displaying || m_marks->isMarking())
        return;
    if (m_marks->toolInput()) {
        // The tool takes what is clicked, and the marks follow it.
        QMetaObject::invokeMethod(
            this, [this] { m_marks->mark(false); }, Qt::QueuedConnection);
        return;
    }
    std::vector<Vs::StrongRef<Vs::Selection>> selections;
    for (const auto& selection : session->selectionManager()->selectionSet().selections())
        if (!Vs::cast<NamedViewSelection>(selection.get()) &&
            !Vs::cast<NamedViewsSelection>(selection.get()) &&
            !Vs::cast<Vs::LogicalSelection>(selection.get()))
            selections.push_back(selection);
    for (const QModelIndex& index : m_tree->selectionModel()->selectedIndexes())
        if (const Vs::StrongRef<NamedView> view = m_model->namedView(index))
            selections.emplace_back(new NamedViewSelection(session->asset(), view));
        else if (Vs::NameView::NamedViews* views = m_model->namedViews(index))
            selections.emplace_back(new NamedViewsSelection(views));
        else if (const Vs::Component* component = m_model->component(index);
                 component && index != m_model->rootIndex())
            selections.emplace_back(new Vs::LogicalSelection(session->asset(), component->id, nullptr));
    m_marks->select(selections);
    WorkspaceWindow::invalidate(kInvalidateAll);
}

// If the tool wants bodies, a part represents its own.
void BrowserPanel::pick(const QModelIndex& index, SelectionCommandInput& input)
{
    const Vs::Component* component = m_model->component(index);
    if (!component || index == m_model->rootIndex())
        return;
    const auto keys = static_cast<unsigned>(QApplication::keyboardModifiers());
    for (const Vs::ObjectPath::Leaf leaf : {Vs::ObjectPath::Leaf::Component, Vs::ObjectPath::Leaf::Body})
        if ((leaf == Vs::ObjectPath::Leaf::Component || component->body) &&
            input.pick(Vs::StrongRef<Vs::Selection>(new Vs::LogicalSelection(
                           m_model->asset(), Vs::ObjectPath{component->id, leaf}, nullptr)),
                       keys & (kShiftModifier | kControlModifier)))
            break;
    m_marks->mark(false);
    WorkspaceWindow::invalidate(kInvalidateAll);
}

const AssetSession* BrowserPanel::assetSession() const
{
    return SessionMgr::get()->getOpenAssetSession(m_model->asset());
}

void BrowserPanel::createAndDisplay(const Vs::StrongRef<Vs::LogicalSelection>& selection)
{
    const QModelIndex index =
        selection->asset() == m_model->asset() ? m_model->indexOf(selection->componentId()) : QModelIndex();
    if (!index.isValid())
        return;
    const WorkspaceWindow* window = WorkspaceWindow::activeWorkspaceWindow();
    Area* area = window ? window->area(kArea) : nullptr;
    if (area && !area->visible() && SplitViewMgr::get()->validToShowBrowser())
        LayoutStrategy::activeStrategy()->show(area);
    for (QModelIndex above = index.parent(); above.isValid(); above = above.parent())
        m_tree->expand(above);
    m_displaying = true;
    m_tree->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    m_displaying = false;
    m_tree->scrollTo(index, QAbstractItemView::PositionAtCenter);
}

void BrowserPanel::rename(const QModelIndex& index, const std::wstring& newName)
{
    if (const Vs::StrongRef<NamedView> view = m_model->namedView(index)) {
        runFromContextMenu(kRenameViewCommand,
                           {{kNameArgument, view->name()}, {kNewViewNameArgument, newName}});
        return;
    }
    // The command renames the whole selection; only one was meant here.
    m_tree->selectionModel()->select(index, QItemSelectionModel::ClearAndSelect);
    runFromContextMenu(kRenameCommand, {{kNewNameArgument, newName}});
}

bool BrowserPanel::eventFilter(QObject* watched, QEvent* event)
{
    const auto* key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event) : nullptr;
    if (key && watched == m_filter && pressInFilter(key->key()))
        return true;
    if (!key || watched != m_tree || !key->matches(QKeySequence::Delete))
        return QWidget::eventFilter(watched, event);
    removeSelected();
    return true;
}

void BrowserPanel::edit(const QModelIndex& index, const Vs::Component& component)
{
    m_tree->expand(index);
    runFromContextMenu(kEditCommand,
                       {{kComponentArgument, Vs::pathText({.component = component.id}, *m_model->asset())}});
}

void BrowserPanel::removeSelected()
{
    const Vs::StrongRef<NamedView> view = m_model->namedView(m_tree->currentIndex());
    if (!view)
        runFromContextMenu(kDeleteCommand);
    else if (view->enableModify())
        runFromContextMenu(kRemoveCommand, {{kNameArgument, view->name()}});
}

void BrowserPanel::showMenu(const QPoint& place)
{
    const QModelIndex index = m_tree->indexAt(place);
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (m_model->namedView(index))
        if (const CommandDefinition* restore =
                CommandDefinitionMgr::get()->findCommandDefinitionById(kRestoreCommand))
            addContextCommand(*menu, *restore);
    addContextCommands(*menu, MarkingMenuEventSource::ESource::Browser);
    if (m_model->flags(index).testFlag(Qt::ItemIsEditable)) {
        const QAction* rename = menu->addAction(told("BrowserRename", "Rename"));
        connect(rename, &QAction::triggered, this,
                [this, at = QPersistentModelIndex(index)] { m_tree->edit(at); });
    }
    if (menu->isEmpty())
        delete menu;
    else
        menu->popup(m_tree->viewport()->mapToGlobal(place));
}

} // namespace Vu
