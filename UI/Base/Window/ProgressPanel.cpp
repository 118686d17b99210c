#include "UI/Base/Window/ProgressPanel.h"

#include "Server/Base/Progress.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/WorksMeanwhile.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/Theme.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QToolButton>

#include <algorithm>

namespace Vu {
namespace {
constexpr int kBarWidth = 180;
constexpr int kBarHeight = 14;
constexpr int kSteps = 1000;
/// A long file name must not widen the window.
constexpr int kLongestText = 420;
} // namespace

ProgressPanel::ProgressPanel(QWidget* parent)
    : QWidget(parent),
      m_text(PlainText::label(this)),
      m_bar(new QProgressBar(this)),
      m_cancel(new QToolButton(this))
{
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, kMargin, 0);
    row->addWidget(m_text);
    row->addWidget(m_bar);
    row->addWidget(m_cancel);
    m_bar->setFixedSize(kBarWidth, kBarHeight);
    m_bar->setRange(0, kSteps);
    m_bar->setTextVisible(false);
    m_cancel->setText(QString::fromStdWString(localized("ButtonCancel", "Cancel")));
    m_cancel->setObjectName(QStringLiteral("cancelProgress"));
    QObject::connect(m_cancel, &QToolButton::clicked, this, [this] { cancel(); });
    setVisible(false);
}

void ProgressPanel::begin(const QString& title)
{
    m_title = title;
    m_cancelled = false;
    m_cancel->setEnabled(true);
    tell(title);
    m_bar->setValue(0);
    setVisible(true);
}

void ProgressPanel::show(double fraction, const QString& step)
{
    if (!step.isEmpty() && !m_cancelled)
        tell(m_title.isEmpty() ? step : m_title + QStringLiteral(": ") + step);
    m_bar->setValue(static_cast<int>(fraction * kSteps));
}

int ProgressPanel::value() const
{
    return m_bar->value();
}

int ProgressPanel::steps()
{
    return kSteps;
}

bool ProgressPanel::isAlive(const QObject* object) const
{
    if (object == m_cancel || worksMeanwhile(object))
        return true;
    const QWidget* widget = qobject_cast<const QWidget*>(object);
    return widget && std::any_of(m_alive.begin(), m_alive.end(), [&](const QWidget* alive) {
               return alive == widget || alive->isAncestorOf(widget);
           });
}

// A menu that is opened there counts, though it is a window of its own.
bool ProgressPanel::worksMeanwhile(const QObject* object)
{
    for (; object; object = object->parent())
        if (object->property(kWorksMeanwhile).toBool())
            return true;
    return false;
}

void ProgressPanel::tell(const QString& text)
{
    m_shownText = text;
    m_text->setText(fontMetrics().elidedText(text, Qt::ElideMiddle, kLongestText));
    PlainText::setTooltip(m_text, text);
}

void ProgressPanel::end()
{
    setVisible(false);
}

void ProgressPanel::cancel()
{
    if (m_cancelled)
        return;
    m_cancelled = true;
    m_cancel->setEnabled(false);
    tell(QString::fromStdWString(localized("Cancelling", "Cancelling...")));
    Vs::Progress::requestCancel();
}

BusyFilter::BusyFilter(ProgressPanel* panel) : m_panel(panel)
{
    qApp->installEventFilter(this);
}

BusyFilter::~BusyFilter()
{
    if (qApp)
        qApp->removeEventFilter(this);
}

bool BusyFilter::eventFilter(QObject* object, QEvent* event)
{
    // A question that the work asks has to be answered.
    if (QApplication::activeModalWidget())
        return false;
    const auto type = event->type();
    const bool typed =
        type == QEvent::KeyPress || type == QEvent::KeyRelease || type == QEvent::ShortcutOverride;
    const bool isEscape = typed && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
    if (typed && !isEscape && ProgressPanel::worksMeanwhile(QApplication::focusWidget()))
        return false;
    switch (type) {
    case QEvent::KeyPress:
        if (!isEscape)
            return !TypedAhead::goesIntoField(object);
        m_panel->cancel();
        return true;
    case QEvent::ShortcutOverride:
        // Tools use it as a shortcut, which would take precedence.
        if (isEscape) {
            event->accept();
            return true;
        }
        // Otherwise a letter that is also a shortcut never arrives as a key press.
        return !qobject_cast<QLineEdit*>(QApplication::focusWidget());
    case QEvent::Wheel:
    case QEvent::ContextMenu:
        return object->isWidgetType() && !ProgressPanel::worksMeanwhile(object);
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::DragEnter:
    case QEvent::Drop:
        return true;
    case QEvent::Close:
        event->ignore();
        return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
        // Events reach the native window first, which passes them on to the widget below the pointer.
        return object->isWidgetType() && !m_panel->isAlive(object);
    default:
        return false;
    }
}

} // namespace Vu
