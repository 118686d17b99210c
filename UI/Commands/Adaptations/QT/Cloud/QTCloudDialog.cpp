#include "UI/Commands/Adaptations/QT/Cloud/QTCloudDialog.h"

#include "Server/Base/Progress.h"
#include "Server/Skyvault/MeshportAuth.h"
#include "Server/Skyvault/SkyvaultUtilities.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/FileDialog.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudFolderModel.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudPath.h"
#include "UI/Commands/Adaptations/QT/Cloud/CloudTexts.h"
#include "UI/Commands/Adaptations/QT/Cloud/FolderName.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QComboBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QToolButton>
#include <QTreeView>

#include <tuple>

namespace Vu::Commands {
namespace {

using CloudTexts::named;
using CloudTexts::text;
using Kind = CloudDialog::Kind;

constexpr QSize kSize(720, 500);
constexpr int kBorder = 16, kSpacing = 10;

/// Where the last choice was made, of this run.
std::string& lastFolder()
{
    static std::string folder = "/";
    return folder;
}

std::string parentOf(const std::string& folder)
{
    const size_t cut = folder.rfind('/');
    return cut == std::string::npos || cut == 0 ? "/" : folder.substr(0, cut);
}

std::string joined(const std::string& folder, const QString& name)
{
    return (folder == "/" ? folder : folder + '/') + name.toStdString();
}

/// What is in the parentheses of a filter's entry.
QStringList patternsOf(const QString& entry)
{
    const qsizetype open = entry.lastIndexOf(QLatin1Char('(')), end = entry.lastIndexOf(QLatin1Char(')'));
    return open < 0 || end < open
               ? QStringList()
               : entry.mid(open + 1, end - open - 1).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QString titleOf(Kind kind)
{
    return kind == Kind::Folder   ? named(text("CloudChooseFolder", "Save in a Folder of %1"))
           : kind == Kind::SaveAs ? named(text("CloudChooseName", "Save to %1"))
                                  : named(text("CloudChooseDocument", "Open from %1"));
}

} // namespace

QTCloudDialog::QTCloudDialog(CloudDialog::Request request, const QString& name, QWidget* parent)
    : QDialog(parent), m_request(std::move(request)), m_model(new CloudFolderModel(this))
{
    setObjectName(QStringLiteral("cloudDialog"));
    setWindowTitle(titleOf(m_request.kind));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(kBorder, kBorder, kBorder, kBorder);
    column->setSpacing(kSpacing);
    column->addWidget(makeTop());
    makeList();
    column->addWidget(m_list, 1);
    m_message = PlainText::label(this);
    m_message->setObjectName(QStringLiteral("cloudMessage"));
    m_message->setWordWrap(true);
    m_message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_message->hide();
    column->addWidget(m_message);
    column->addWidget(makeName());
    column->addWidget(makeButtons());
    m_name->setText(name);
    fillFilters();
    resize(kSize);
    (m_request.kind == Kind::SaveAs ? static_cast<QWidget*>(m_name) : m_list)->setFocus();
    showState();
}

QToolButton* QTCloudDialog::button(const QIcon& icon, const char* name, const QString& title,
                                   void (QTCloudDialog::*run)())
{
    auto* made = new QToolButton(this);
    made->setObjectName(QLatin1String(name));
    made->setProperty("flat", true);
    made->setAutoRaise(true);
    made->setIcon(icon);
    made->setIconSize(QSize(kIconSize, kIconSize));
    made->setFocusPolicy(Qt::TabFocus);
    made->setAccessibleName(title);
    PlainText::setTooltip(made, title);
    connect(made, &QToolButton::clicked, this, run);
    return made;
}

QWidget* QTCloudDialog::makeTop()
{
    auto* top = new QWidget(this);
    auto* row = new QHBoxLayout(top);
    row->setContentsMargins(0, 0, 0, 0);
    m_path = new CloudPath([this](const std::string& folder) { std::ignore = open(folder); }, top);
    m_up = button(CloudTexts::icon("Up"), "cloudUp", text("CloudUp", "To the folder above (Backspace)"),
                  &QTCloudDialog::goAbove);
    m_new = button(CloudTexts::icon("NewFolder"), "cloudNewFolder",
                   text("CloudNewFolder", "New folder (Ctrl+Shift+N)"), &QTCloudDialog::makeFolder);
    m_refresh = button(CloudTexts::icon("Refresh"), "cloudRefresh", text("CloudRefresh", "Read again (F5)"),
                       &QTCloudDialog::refresh);
    m_new->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_N);
    m_refresh->setShortcut(Qt::Key_F5);
    m_new->setVisible(m_request.kind != Kind::Document);
    m_search = new QLineEdit(top);
    m_search->setObjectName(QStringLiteral("cloudSearch"));
    m_search->setPlaceholderText(text("CloudSearch", "Search in this folder"));
    m_search->setAccessibleName(m_search->placeholderText());
    m_search->setClearButtonEnabled(true);
    constexpr int kSearchWidth = 190;
    m_search->setFixedWidth(kSearchWidth);
    row->addWidget(m_path, 1);
    for (QWidget* each : std::initializer_list<QWidget*>{m_up, m_new, m_refresh, m_search})
        row->addWidget(each);
    connect(m_search, &QLineEdit::textChanged, this, [this](const QString& wanted) {
        m_model->search(wanted);
        showState();
    });
    return top;
}

void QTCloudDialog::makeList()
{
    m_list = new QTreeView(this);
    m_list->setObjectName(QStringLiteral("cloudList"));
    m_list->setAccessibleName(windowTitle());
    m_list->setModel(m_model);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setAlternatingRowColors(true);
    m_list->setSortingEnabled(true);
    m_list->sortByColumn(CloudFolderModel::Name, Qt::AscendingOrder);
    m_list->setFrameShape(QFrame::NoFrame);
    QHeaderView* head = m_list->header();
    head->setStretchLastSection(false);
    head->setSectionResizeMode(CloudFolderModel::Name, QHeaderView::Stretch);
    constexpr int kSizeWidth = 100, kTimeWidth = 150;
    head->resizeSection(CloudFolderModel::Size, kSizeWidth);
    head->resizeSection(CloudFolderModel::Modified, kTimeWidth);
    m_list->installEventFilter(this);
    m_list->viewport()->installEventFilter(this);
    m_empty = PlainText::label(m_list->viewport());
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setForegroundRole(QPalette::PlaceholderText);
    m_empty->setAttribute(Qt::WA_TransparentForMouseEvents);
    connect(m_list, &QTreeView::activated, this, &QTCloudDialog::activate);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &QTCloudDialog::selectionChanged);
    connect(m_model, &QAbstractItemModel::modelReset, this, &QTCloudDialog::showState);
}

QWidget* QTCloudDialog::makeName()
{
    auto* part = new QWidget(this);
    auto* form = new QFormLayout(part);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_name = new QLineEdit(part);
    m_name->setObjectName(QStringLiteral("cloudName"));
    m_filter = new QComboBox(part);
    m_filter->setObjectName(QStringLiteral("cloudFilter"));
    // A long list of suffixes must not make the dialog wider.
    m_filter->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    form->addRow(text("CloudName", "Name"), m_name);
    form->addRow(text("CloudKinds", "Files"), m_filter);
    m_name->installEventFilter(this);
    form->setRowVisible(m_name, m_request.kind == Kind::SaveAs);
    connect(m_name, &QLineEdit::textChanged, this, [this] {
        tell({});
        showState();
    });
    connect(m_filter, &QComboBox::currentIndexChanged, this, [this] {
        m_model->patterns(patternsOf(m_filter->currentText()));
        showState();
    });
    return part;
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

void QTCloudDialog::fillFilters()
{
    const QString filter = QString::fromStdWString(FileDialogRules::dialogFilter(m_request.filter));
    const QSignalBlocker quiet(m_filter);
    for (const QString& entry : filter.split(QStringLiteral(";;"), Qt::SkipEmptyParts))
        m_filter->addItem(entry);
    if (m_request.kind == Kind::SaveAs)
        m_filter->addItem(text("CloudAllFiles", "All files (*)"));
    m_filter->parentWidget()->setVisible(m_request.kind == Kind::SaveAs || m_filter->count() > 0);
    m_model->patterns(patternsOf(m_filter->currentText()));
}

QString QTCloudDialog::name() const
{
    return m_name->text().trimmed();
}

// A copy of the name: what it was read from goes with the list.
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
    const bool isRead = state == Vs::CloudErrorState::Success;
    if (isRead) {
        const std::string left = m_folder.id();
        m_folder = std::move(read);
        m_search->clear();
        m_model->nodes(m_folder.children());
        m_path->show(folder);
        // Who goes up stands on the folder that he came from.
        const int row = parentOf(left) == folder
                            ? m_model->rowOf(CloudTexts::shown(left.substr(left.rfind('/') + 1)))
                            : -1;
        // In a list where one chooses a place, nothing is chosen until the person does.
        const bool chooses = m_request.kind == Kind::Document || row >= 0;
        if (m_model->rowCount() > 0)
            m_list->selectionModel()->setCurrentIndex(m_model->index(std::max(row, 0), 0),
                                                      chooses ? QItemSelectionModel::ClearAndSelect |
                                                                    QItemSelectionModel::Rows
                                                              : QItemSelectionModel::NoUpdate);
    } else if (state != Vs::CloudErrorState::Cancelled) {
        tell(QString::fromStdWString(Vs::SkyvaultUtilities::getErrorString(state)));
    }
    showState();
    if (m_closes)
        QDialog::reject();
    return isRead;
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
        std::ignore = open(parentOf(m_folder.id()));
}

void QTCloudDialog::makeFolder()
{
    if (m_isBusy || m_folder.id().empty())
        return;
    const QString name = askFolderName(this);
    if (name.isEmpty())
        return;
    std::vector<boost::filesystem::path> stack;
    for (const auto& part : boost::filesystem::path(joined(m_folder.id(), name)).relative_path())
        stack.push_back(part);
    busy(true, text("CloudMaking", "Making the folder..."));
    Vs::SkyvaultNodeData made;
    const bool isMade =
        Vs::SkyvaultUtilities::ensureCloudPath(Vs::MeshportAuth::globalInstance(), stack, made);
    busy(false);
    if (!isMade)
        tell(QString::fromStdWString(Vs::SkyvaultUtilities::getErrorString(Vs::CloudErrorState::NoFolders)));
    else
        std::ignore = open(joined(m_folder.id(), name));
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
    const Vs::SkyvaultNodeData* selected = selectedNode();
    if (m_request.kind == Kind::SaveAs && selected && !selected->isFolder())
        m_name->setText(m_model->name(m_list->selectionModel()->selectedRows().front().row()));
    showState();
}

const Vs::SkyvaultNodeData* QTCloudDialog::selectedNode() const
{
    const QModelIndexList rows = m_list->selectionModel()->selectedRows();
    return rows.isEmpty() ? nullptr : &m_model->node(rows.front().row());
}

void QTCloudDialog::showState()
{
    const bool isRead = !m_folder.id().empty();
    const Vs::SkyvaultNodeData* selected = selectedNode();
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
    m_up->setEnabled(isRead && m_folder.id() != "/" && !m_isBusy);
    m_new->setEnabled(isRead && !m_isBusy);
    for (QWidget* each : std::initializer_list<QWidget*>{m_path, m_refresh, m_search, m_list, m_filter})
        each->setEnabled(!m_isBusy);
    m_empty->setText(m_isBusy || m_model->rowCount() > 0 ? QString()
                     : !isRead                           ? text("CloudNotRead", "Nothing has been read.")
                     : m_folder.children().empty()
                         ? text("CloudEmptyFolder", "This folder is empty.")
                         : text("CloudNothingFound", "Nothing here is of that name and kind."));
    m_empty->setGeometry(m_list->viewport()->rect());
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
    // What is disabled loses the keyboard.
    if (!value && m_focus && m_focus->isEnabled())
        m_focus->setFocus();
}

void QTCloudDialog::tell(const QString& content)
{
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText, errorColour());
    m_message->setPalette(colours);
    m_message->setText(content);
    m_message->setVisible(!content.isEmpty());
}

void QTCloudDialog::accept()
{
    if (m_isBusy || m_folder.id().empty() || !m_choose->isEnabled())
        return;
    const Vs::SkyvaultNodeData* selected = selectedNode();
    if (selected && selected->isFolder() && !(m_request.kind == Kind::Document && m_request.foldersToo)) {
        if (!open(selected->id()) || m_request.kind != Kind::Folder)
            return;
        selected = nullptr;
    }
    if (const QString fault = m_request.kind == Kind::SaveAs ? faultOfName(name()) : QString();
        !fault.isEmpty()) {
        tell(fault);
        m_name->setFocus();
        return;
    }
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
    // Behind the first picture, so that nobody looks at nothing.
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
        m_search->setFocus(Qt::ShortcutFocusReason);
    else if (event->key() == Qt::Key_Up && event->modifiers() == Qt::AltModifier)
        goAbove();
    else
        QDialog::keyPressEvent(event);
}

bool QTCloudDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_list && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Backspace) {
            goAbove();
            return true;
        }
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && m_list->currentIndex().isValid()) {
            activate(m_list->currentIndex());
            return true;
        }
    }
    // Who types a name means the folder that is shown, and no longer one that he had touched in it.
    if (watched == m_name && event->type() == QEvent::FocusIn)
        if (const Vs::SkyvaultNodeData* selected = selectedNode(); selected && selected->isFolder())
            m_list->clearSelection();
    if (watched == m_list->viewport() && event->type() == QEvent::Resize)
        m_empty->setGeometry(m_list->viewport()->rect());
    return QDialog::eventFilter(watched, event);
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
