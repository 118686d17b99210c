#include "UI/Base/Window/BrowserPanel.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "UI/Base/AssetSession.h"
#include "UI/Base/SessionMgr.h"
#include "UI/Base/Window/BrowserModel.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/WorkspaceWindow.h"

#include <QTreeView>
#include <QVBoxLayout>

namespace Vu {
namespace {
constexpr int kTreeIcon = 18;
constexpr int kIndentation = 16;
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
    m_tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
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
    m_tree->expand(m_model->index(0, 0));
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
        m_highlighted.push_back(m_model->data(index, BrowserModel::ComponentIdRole).toString().toStdString());
    highlight(m_highlighted, true);
    WorkspaceWindow::invalidate(kInvalidateAll);
}

} // namespace Vu
