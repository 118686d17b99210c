#include "UI/Base/Window/EmptyHint.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Session/AssetGraphicsView.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/Window/PlainText.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

namespace Vu {

EmptyHint::EmptyHint(const GraphicsCanvas& canvas, QWidget* frame) : QWidget(frame), m_canvas(&canvas)
{
    setObjectName(QStringLiteral("emptyHint"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* text = PlainText::label(
        this, QString::fromStdWString(
                  localized("EmptyModel", "Nothing is in this model yet.\nInsert a solid, or import a file "
                                          "by File > Import...")));
    text->setObjectName(QStringLiteral("emptyText"));
    text->setAlignment(Qt::AlignCenter);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(text);
    hide();
    m_soon.setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, [this] { refresh(); });
    frame->installEventFilter(this);
    m_subscriptions.add(Vs::AssetEventSource::get(), this);
    m_subscriptions.add(SessionEventSource::get(), this);
    m_subscriptions.add(SplitViewEventSource::get(), this);
}

bool EmptyHint::eventFilter(QObject* frame, QEvent* event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::Show)
        m_soon.start(0);
    return QWidget::eventFilter(frame, event);
}

bool EmptyHint::isWanted() const
{
    const auto canvases = GraphicsCanvas::existingCanvases();
    return std::ranges::find(canvases, m_canvas) != canvases.end() && isEmpty(*m_canvas);
}

bool EmptyHint::isEmpty(const GraphicsCanvas& canvas)
{
    const auto* view = Vs::cast<AssetGraphicsView>(canvas.view());
    const AssetSession* session = view ? view->assetSession() : nullptr;
    const Vs::Component* root = session ? session->asset()->components() : nullptr;
    return root && root->children.empty();
}

void EmptyHint::refresh()
{
    const bool wanted = isWanted();
    if (wanted) {
        adjustSize();
        // Below the origin, which is in the middle.
        move((parentWidget()->width() - width()) / 2, parentWidget()->height() * 2 / 3 - height() / 2);
    }
    setVisible(wanted && width() < parentWidget()->width());
}

} // namespace Vu
