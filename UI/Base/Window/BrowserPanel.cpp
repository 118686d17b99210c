#include "UI/Base/Window/BrowserPanel.h"

#include "Server/CommonData/NamedViewSelection.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "UI/Base/AssetSession.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Icon.h"
#include "UI/Base/Localized.h"
#include "UI/Base/SessionMgr.h"
#include "UI/Base/Window/BrowserModel.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/WorkspaceWindow.h"

#include <QMenu>
#include <QShortcut>
#include <QTreeView>
#include <QVBoxLayout>

#include <map>
#include <string_view>

namespace Vu {
namespace {
using Vs::NameView::NamedView;
using Vs::NameView::NamedViewSelection;
using Vs::NameView::NamedViewsSelection;

constexpr int kTreeIcon = 18;
constexpr int kIndentation = 16;

constexpr std::wstring_view kRestoreCommand = L"RestoreCameraCommand";
constexpr std::wstring_view kRemoveCommand = L"RemoveNamedViewCommand";
constexpr std::wstring_view kRenameCommand = L"UpdateNamedViewNameCommand";
constexpr const char* kNameArgument = "NamedViewName";
constexpr const char* kNewNameArgument = "NewNamedViewName";

/// Behind the event, which may belong to an item that the command takes away.
void run(std::wstring_view key, const std::map<const char*, std::wstring>& arguments)
{
    CommandDefinition* definition = CommandDefinitionMgr::get()->findCommandDefinitionById(key);
    CommandContext context = CommandContext::activeContext();
    context.accessPoint(ECommandAccessPoint::ContextMenu);
    if (!definition || !definition->isAvailable(&context))
        return;
    for (const auto& [name, value] : arguments)
        context.addArgument(Vs::UniqueString::find(name, true), value);
    context.executeImmediately(false);
    definition->executeCommand(context);
}

} // namespace

BrowserPanel::BrowserPanel(QWidget* parent)
    : QWidget(parent), m_tree(new QTreeView(this)), m_model(new BrowserModel(this))
{
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_tree);
    m_tree->setHeaderHidden(true);
    m_tree->setUniformRowHeights(true);
    m_tree->setIconSize(QSize(kTreeIcon, kTreeIcon));
    m_tree->setIndentation(kIndentation);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tree->setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    // A double click on a branch opens it, on a named view it looks from there.
    m_tree->setModel(m_model);
    // The style draws the frame of a check box in a tone of the window's colour, which a dark list swallows.
    QPalette colours = m_tree->palette();
    colours.setColor(QPalette::Window, colours.color(QPalette::PlaceholderText));
    m_tree->setPalette(colours);

    const auto idOf = [this](const QModelIndex& index) {
        return m_model->data(index, BrowserModel::ComponentIdRole).toString().toStdString();
    };
    connect(m_tree, &QTreeView::expanded, this,
            [this, idOf](const QModelIndex& index) { m_open.insert(idOf(index)); });
    connect(m_tree, &QTreeView::collapsed, this,
            [this, idOf](const QModelIndex& index) { m_open.erase(idOf(index)); });
    connect(m_model, &QAbstractItemModel::modelReset, this, [this] { reopen(); });
    connect(m_tree->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { highlightSelection(); });
    m_model->renamer([](const std::wstring& name, const std::wstring& newName) {
        run(kRenameCommand, {{kNameArgument, name}, {kNewNameArgument, newName}});
    });
    connect(m_tree, &QTreeView::customContextMenuRequested, this, &BrowserPanel::showMenu);
    connect(m_tree, &QTreeView::doubleClicked, this, [this](const QModelIndex& index) {
        if (const Vs::StrongRef<NamedView> view = m_model->namedView(index))
            run(kRestoreCommand, {{kNameArgument, view->name()}});
    });
    const auto* remove = new QShortcut(QKeySequence::Delete, m_tree, nullptr, nullptr, Qt::WidgetShortcut);
    connect(remove, &QShortcut::activated, this, [this] {
        const Vs::StrongRef<NamedView> view = m_model->namedView(m_tree->currentIndex());
        if (view && view->enableModify())
            run(kRemoveCommand, {{kNameArgument, view->name()}});
    });

    SessionEventSource::get()->subscribe(this);
    show(SessionMgr::get()->currentAssetSession());
}

BrowserPanel::~BrowserPanel()
{
    SessionEventSource::get()->unsubscribe(this);
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
    if (asset == m_model->asset())
        return;
    highlight(m_highlighted, false);
    m_highlighted.clear();
    m_open.clear();
    m_model->asset(asset);
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
}

void BrowserPanel::highlight(const std::vector<std::string>& ids, bool on)
{
    const Vs::Asset* asset = m_model->asset();
    auto* scene = asset ? Vs::cast<Vs::Scene::SceneAssetAdapter>(asset->adapter()) : nullptr;
    if (!scene)
        return;
    for (const std::string& id : ids)
        if (Rendra::Graphics::Node* node = scene->node(id))
            Vs::Scene::NodeChange(node).highlight(on ? Rendra::Graphics::Highlight::Selected
                                                     : Rendra::Graphics::Highlight::None);
}

void BrowserPanel::highlightSelection()
{
    highlight(m_highlighted, false);
    m_highlighted.clear();
    for (const QModelIndex& index : m_tree->selectionModel()->selectedIndexes())
        if (const Vs::Component* component = m_model->component(index))
            m_highlighted.push_back(component->id);
    highlight(m_highlighted, true);
    selectNamedViews();
    WorkspaceWindow::invalidate(kInvalidateAll);
}

// What else the session has selected stays; of the named views it has those that are selected here.
void BrowserPanel::selectNamedViews()
{
    const AssetSession* session = SessionMgr::get()->getOpenAssetSession(m_model->asset());
    if (!session)
        return;
    Vs::SelectionSet& set = session->selectionManager()->selectionSet();
    const std::vector<Vs::StrongRef<Vs::Selection>> before = set.selections();
    for (const auto& selection : before)
        if (Vs::cast<NamedViewSelection>(selection.get()) || Vs::cast<NamedViewsSelection>(selection.get()))
            set.remove(*selection);
    for (const QModelIndex& index : m_tree->selectionModel()->selectedIndexes())
        if (const Vs::StrongRef<NamedView> view = m_model->namedView(index))
            set.add(Vs::StrongRef<Vs::Selection>(new NamedViewSelection(session->asset(), view)));
        else if (Vs::NameView::NamedViews* views = m_model->namedViews(index))
            set.add(Vs::StrongRef<Vs::Selection>(new NamedViewsSelection(views)));
}

void BrowserPanel::showMenu(const QPoint& place)
{
    const QModelIndex index = m_tree->indexAt(place);
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](CommandDefinition* definition) {
        const Info* info = definition->info();
        const QAction* action = menu->addAction(iconOf(info->icon()), QString::fromStdWString(info->name()));
        connect(action, &QAction::triggered, menu, [key = definition->id()] { run(key, {}); });
    };
    const CommandDefinitionMgr* definitions = CommandDefinitionMgr::get();
    const Vs::StrongRef<NamedView> view = m_model->namedView(index);
    if (CommandDefinition* restore = view ? definitions->findCommandDefinitionById(kRestoreCommand) : nullptr)
        add(restore);
    CommandContext context = CommandContext::activeContext();
    for (CommandDefinition* definition : definitions->commandDefinitions())
        if (definition->addToContextMenu() && definition->isAvailable(&context))
            add(definition);
    if (view && view->enableModify()) {
        const QAction* rename =
            menu->addAction(QString::fromStdWString(localized("BrowserRename", "Rename")));
        connect(rename, &QAction::triggered, this,
                [this, at = QPersistentModelIndex(index)] { m_tree->edit(at); });
    }
    if (menu->isEmpty())
        delete menu;
    else
        menu->popup(m_tree->viewport()->mapToGlobal(place));
}

} // namespace Vu
