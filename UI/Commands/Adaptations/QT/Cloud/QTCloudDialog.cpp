#include "UI/Commands/Adaptations/QT/Cloud/QTCloudDialog.h"

#include "Server/Base/Progress.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudCacheFiles.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudFolderModel.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudHead.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudList.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudName.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudTexts.h"
#include "UI/Commands/Adaptations/QT/Cloud/FolderName.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include <tuple>

namespace Vu::Commands {
namespace {

using CloudTexts::text;
using Kind = CloudDialog::Kind;

constexpr QSize kSize(720, 500);
constexpr int kBorder = 16, kSpacing = 10;

/// The place of the last choice in this run.
std::string& lastFolder()
{
    static std::string folder = "/";
    return folder;
}

} // namespace

QTCloudDialog::QTCloudDialog(CloudDialog::Request request, const QString& name, QWidget* parent)
    : QDialog(parent), m_request(std::move(request)), m_model(new CloudFolderModel(this))
{
    setObjectName(QStringLiteral("cloudDialog"));
    setWindowTitle(CloudTexts::title(m_request.kind));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kBorder, kBorder, kBorder, kBorder);
    column->setSpacing(kSpacing);
    m_head = makeHead();
    column->addWidget(m_head);
    m_list = makeList();
    column->addWidget(m_list, 1);
    m_message = PlainText::label(this);
    m_message->setObjectName(QStringLiteral("cloudMessage"));
    m_message->setWordWrap(true);
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_message->hide();
    column->addWidget(m_message);
    m_name = makeName(name);
    column->addWidget(m_name);
    column->addWidget(makeButtons());
    m_model->patterns(m_name->kinds());
    resize(kSize);
    if (m_request.kind == Kind::SaveAs)
        m_name->goToName();
    else
        m_list->setFocus();
    showState();
}

CloudHead* QTCloudDialog::makeHead()
{
    CloudHead::Actions actions;
    actions.open = [this](const std::string& folder) { std::ignore = open(folder); };
    actions.goAbove = [this] { goAbove(); };
    actions.makeFolder = [this] { makeFolder(); };
    actions.readAgain = [this] { refresh(); };
    actions.search = [this](const QString& wanted) {
        m_model->search(wanted);
        showState();
    };
    actions.toList = [this] {
        if (m_model->rowCount() == 0)
            return;
        m_list->setFocus(Qt::TabFocusReason);
        m_list->stand({}, m_request.kind == Kind::Document);
    };
    return new CloudHead(std::move(actions), m_request.kind != Kind::Document, this);
}

CloudList* QTCloudDialog::makeList()
{
    auto* list = new CloudList(
        m_model,
        {.activate = [this](const QModelIndex& index) { activate(index); }, .goAbove = [this] { goAbove(); }},
        this);
    list->setAccessibleName(windowTitle());
    connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &QTCloudDialog::selectionChanged);
    connect(m_model, &QAbstractItemModel::modelReset, this, &QTCloudDialog::showState);
    return list;
}

CloudName* QTCloudDialog::makeName(const QString& name)
{
    CloudName::Actions actions;
    // A user who types a name means the shown folder, no longer one that was selected in it.
    actions.begin = [this] {
        if (const Vs::SkyvaultNodeData* selected = m_list->selected(); selected && selected->isFolder())
            m_list->clearSelection();
    };
    actions.change = [this] {
        tell({});
        showState();
    };
    actions.kinds = [this](const QStringList& patterns) {
        m_model->patterns(patterns);
        showState();
    };
    return new CloudName(m_request, name, std::move(actions), this);
}

QWidget* QTCloudDialog::makeButtons()
{
    auto* part = new QWidget(this);
    auto* row = new QHBoxLayout(part);
    row->setContentsMargins(0, 0, 0, 0);
    m_progress = new QProgressBar(part);
    m_progress->setRange(0, 0);
    constexpr int kWidth = 160;
    m_progress->setFixedWidth(kWidth);
    m_progress->setTextVisible(false);
    m_progress->hide();
    row->addWidget(m_progress);
    row->addStretch();
    m_choose = new QPushButton(part);
    m_choose->setObjectName(QStringLiteral("cloudChoose"));
    m_choose->setDefault(true);
    auto* cancel = new QPushButton(text("CloudLoginCancel", "Cancel"), part);
    cancel->setObjectName(QStringLiteral("cloudCancel"));
    cancel->setAutoDefault(false);
    row->addWidget(m_choose);
    row->addWidget(cancel);
    connect(m_choose, &QPushButton::clicked, this, &QTCloudDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QTCloudDialog::reject);
    return part;
}

QString QTCloudDialog::name() const
{
    return m_name->name();
}

// A copy of the name: what it was read from goes with the list.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
bool QTCloudDialog::open(std::string folder)
{
    if (m_isBusy)
        return false;
    tell({});
    busy(true, text("CloudReading", "Reading the folder..."));
    Vs::SkyvaultNodeData read;
    const Vs::CloudErrorState state =
        Vs::SkyvaultUtilities::GetFolderNode(Vs::MeshportAuth::globalInstance(), folder, read);
    busy(false);
    // A user who doesn't wait for the first folder sees what is stored on this computer; later, the previous
    // folder stays.
    const bool isAway = state == Vs::CloudErrorState::Unreachable ||
                        (state == Vs::CloudErrorState::Cancelled && (m_folder.id().empty() || m_isAway));
    const bool isRead = state == Vs::CloudErrorState::Success || isAway;
    if (isRead)
        take(std::move(read), isAway);
    else if (state != Vs::CloudErrorState::Cancelled)
        tell(QString::fromStdWString(Vs::SkyvaultUtilities::getErrorString(state)));
    showState();
    if (m_closes)
        QDialog::reject();
    return isRead;
}

void QTCloudDialog::take(Vs::SkyvaultNodeData folder, bool isAway)
{
    const std::string left = m_folder.id();
    m_folder = std::move(folder);
    m_isAway = isAway;
    if (isAway && m_request.kind == Kind::Document)
        m_folder.children(CloudCacheFiles::openable(m_folder.children()));
    m_head->clearSearch();
    m_model->nodes(m_folder.children());
    m_head->show(m_folder.id());
    // In a list for choosing a place, nothing is selected until the user does so.
    m_list->stand(folderAbove(left) == m_folder.id() ? left.substr(left.rfind('/') + 1) : std::string(),
                  m_request.kind == Kind::Document);
    tell({});
}

void QTCloudDialog::refresh()
{
    if (m_folder.id().empty()) {
        std::ignore = open("/");
        return;
    }
    const int row = m_list->currentIndex().row();
    const QString current = row >= 0 ? m_model->name(row) : QString();
    if (open(m_folder.id()))
        if (const int again = m_model->rowOf(current); again >= 0)
            m_list->setCurrentIndex(m_model->index(again, 0));
}

void QTCloudDialog::goAbove()
{
    if (!m_folder.id().empty() && m_folder.id() != "/")
        std::ignore = open(folderAbove(m_folder.id()));
}

void QTCloudDialog::makeFolder()
{
    if (m_isBusy || m_folder.id().empty())
        return;
    const QString name = askFolderName(this);
    if (name.isEmpty())
        return;
    std::vector<boost::filesystem::path> stack;
    for (const auto& part : boost::filesystem::path(inFolder(m_folder.id(), name)).relative_path())
        stack.push_back(part);
    busy(true, text("CloudMaking", "Making the folder..."));
    Vs::SkyvaultNodeData made;
    const bool isMade =
        Vs::SkyvaultUtilities::ensureCloudPath(Vs::MeshportAuth::globalInstance(), stack, made);
    busy(false);
    if (!isMade)
        tell(QString::fromStdWString(Vs::SkyvaultUtilities::getErrorString(Vs::CloudErrorState::NoFolders)));
    else
        std::ignore = open(inFolder(m_folder.id(), name));
}

void QTCloudDialog::activate(const QModelIndex& index)
{
    if (!index.isValid() || m_isBusy)
        return;
    if (m_model->node(index.row()).isFolder())
        std::ignore = open(m_model->node(index.row()).id());
    else
        accept();
}

void QTCloudDialog::selectionChanged()
{
    const Vs::SkyvaultNodeData* selected = m_list->selected();
    if (m_request.kind == Kind::SaveAs && selected && !selected->isFolder())
        m_name->name(m_list->selectedName());
    showState();
}

void QTCloudDialog::showState()
{
    const bool isRead = !m_folder.id().empty();
    const Vs::SkyvaultNodeData* selected = m_list->selected();
    const bool isFolder = selected && selected->isFolder();
    QString title = text("CloudOpen", "Open");
    bool can = isRead && !m_isBusy;
    if (m_request.kind == Kind::SaveAs && !isFolder) {
        title = text("CloudSave", "Save");
        can = can && !name().isEmpty();
    } else if (m_request.kind == Kind::Folder) {
        title =
            isFolder ? text("CloudChooseThere", "Save in the Folder") : text("CloudChooseHere", "Save Here");
    } else if (m_request.kind == Kind::Document) {
        can = can && selected;
    }
    m_choose->setText(title);
    m_choose->setEnabled(can);
    m_head->enable(isRead, m_isBusy);
    m_list->setEnabled(!m_isBusy);
    m_name->enableKinds(!m_isBusy);
    m_list->emptyText(m_isBusy || m_model->rowCount() > 0
                          ? QString()
                          : CloudTexts::nothingListed(isRead, !m_folder.children().empty(), m_isAway));
}

void QTCloudDialog::busy(bool value, const QString& what)
{
    if (value)
        m_focus = focusWidget();
    m_isBusy = value;
    m_progress->setVisible(value);
    if (value) {
        m_message->setPalette(palette());
        m_message->setText(what);
        m_message->show();
    } else {
        m_message->hide();
    }
    showState();
    // A disabled widget loses the focus.
    if (!value && m_focus && m_focus->isEnabled())
        m_focus->setFocus();
}

void QTCloudDialog::tell(const QString& content)
{
    QPalette colours = palette();
    if (!content.isEmpty())
        colours.setColor(QPalette::WindowText, errorColour());
    m_message->setPalette(colours);
    m_message->setText(!content.isEmpty() || !m_isAway ? content : CloudTexts::away(m_request.kind));
    m_message->setVisible(!m_message->text().isEmpty());
}

void QTCloudDialog::accept()
{
    if (m_isBusy || m_folder.id().empty() || !m_choose->isEnabled())
        return;
    const Vs::SkyvaultNodeData* selected = m_list->selected();
    if (selected && selected->isFolder() && !(m_request.kind == Kind::Document && m_request.foldersToo)) {
        if (!open(selected->id()) || m_request.kind != Kind::Folder)
            return;
        selected = nullptr;
    }
    if (const QString fault = m_request.kind == Kind::SaveAs ? faultOfName(name()) : QString();
        !fault.isEmpty()) {
        tell(fault);
        m_name->goToName();
        return;
    }
    if (m_request.kind == Kind::Document && !selected)
        return;
    m_chosen = m_request.kind == Kind::Document ? *selected : m_folder;
    lastFolder() = m_folder.id();
    QDialog::accept();
}

void QTCloudDialog::reject()
{
    if (m_isBusy)
        Vs::Progress::requestCancel();
    else
        QDialog::reject();
}

void QTCloudDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    // After the first frame, so that the window isn't empty meanwhile.
    if (m_folder.id().empty())
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_folder.id().empty() && !open(lastFolder()) && lastFolder() != "/" && isVisible())
                    std::ignore = open("/");
            },
            Qt::QueuedConnection);
}

void QTCloudDialog::closeEvent(QCloseEvent* event)
{
    m_closes = m_isBusy;
    if (m_isBusy) {
        event->ignore();
        reject();
        return;
    }
    QDialog::closeEvent(event);
}

void QTCloudDialog::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Find))
        m_head->goToSearch();
    else if (event->key() == Qt::Key_Up && event->modifiers() == Qt::AltModifier)
        goAbove();
    else
        QDialog::keyPressEvent(event);
}

namespace {

const bool registered = [] {
    CloudDialog::asker(
        [](const CloudDialog::Request& request, Vs::SkyvaultNodeData& node, std::wstring& name) {
            Application::get()->needGui();
            QTCloudDialog dialog(request, QString::fromStdWString(name), Application::get()->mainWidget());
            if (dialog.exec() != QDialog::Accepted)
                return false;
            node = dialog.node();
            name = dialog.name().toStdWString();
            return true;
        });
    return true;
}();

} // namespace
} // namespace Vu::Commands
