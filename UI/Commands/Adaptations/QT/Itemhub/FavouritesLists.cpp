// The bookmarked items: a section of the home screen, and the foot of the browser. Both show what the
// command's list control holds.

#include "Server/Itemhub/ItemhubEvents.h"
#include "Server/Itemhub/ItemhubUtilities.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/QtIcon.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Commands/Adaptations/QT/Shell/FlowLayout.h"
#include "UI/Commands/Itemhub/ItemhubItems.h"
#include "UI/Commands/Itemhub/ItemhubMyFavoritesCmds.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

#include <QBoxLayout>
#include <QLabel>
#include <QToolButton>

#include <algorithm>

namespace Vu::Commands {
namespace {

constexpr int kSideMargin = 40, kSpacing = 12, kHomeWidth = 260, kHomeIcon = 32, kFootIcon = 18;

/// A button for each favourite below a heading; absent while there are none. A press opens the item.
class Favourites : public QWidget, private InputControlSite, private Vs::ItemhubEventSite
{
public:
    enum class Place { Home, Foot };

    Favourites(Place place, QWidget* parent) : QWidget(parent), m_place(place)
    {
        const bool home = place == Place::Home;
        setObjectName(home ? QStringLiteral("homeFavourites") : QStringLiteral("browserFavourites"));
        auto* column = new QVBoxLayout(this);
        const int side = home ? kSideMargin : kMargin;
        column->setContentsMargins(side, kMargin, side, kMargin);
        column->setSpacing(home ? kSpacing : 0);
        m_head = PlainText::label(this, QString::fromStdWString(ItemhubMyFavoritesCmdDef::info()->name()));
        QFont font = m_head->font();
        font.setBold(true);
        if (home)
            font.setPointSizeF(font.pointSizeF() * 1.25);
        else
            m_head->setForegroundRole(QPalette::PlaceholderText);
        m_head->setFont(font);
        column->addWidget(m_head);
        m_rows = new QWidget(this);
        if (home) {
            m_flow = new FlowLayout(m_rows, kSpacing);
        } else {
            m_column = new QVBoxLayout(m_rows);
            m_column->setContentsMargins(0, kMargin / 2, 0, 0);
            m_column->setSpacing(0);
        }
        QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
        policy.setHeightForWidth(home);
        m_rows->setSizePolicy(policy);
        setSizePolicy(policy);
        column->addWidget(m_rows);
        hide();
        Vs::ItemhubEventSource::get()->subscribe(this);
        follow();
    }
    ~Favourites() override
    {
        Vs::ItemhubEventSource::get()->unsubscribe(this);
        if (m_control)
            m_control->unsubscribe(this);
    }

private:
    void sessionChanged(Vs::ItemhubEvent*) override { follow(); }
    void inputControlChanged(InputControl*) override { fill(); }
    void inputControlDestroyed(InputControl*) override
    {
        m_control = nullptr;
        fill();
    }

    /// The list exists from the first sign-in on.
    void follow()
    {
        ItemhubMyFavoritesCmdDef* definition = ItemhubMyFavoritesCmdDef::get();
        if (!m_control && definition && isSignedInToItemhub()) {
            m_control = Vs::cast<ListControl>(definition->inputControl());
            if (m_control)
                m_control->subscribe(this);
        }
        fill();
    }

    void fill()
    {
        for (QToolButton* button : m_buttons) {
            m_rows->layout()->removeWidget(button);
            button->hide();
            button->deleteLater();
        }
        m_buttons.clear();
        const std::vector<Info*> items = m_control ? m_control->items() : std::vector<Info*>();
        for (Info* item : items)
            add(*item);
        setVisible(!items.empty());
        updateGeometry();
    }

    void add(const Info& item)
    {
        const bool home = m_place == Place::Home;
        auto* button = new QToolButton(m_rows);
        const QString caption = QString::fromStdWString(item.name()).simplified();
        button->setObjectName(home ? QStringLiteral("shellButton") : QStringLiteral("favourite"));
        button->setProperty("flat", !home);
        button->setAutoRaise(!home);
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        button->setIcon(iconOf(Resources::CloudOpen()));
        const int side = home ? kHomeIcon : kFootIcon;
        button->setIconSize(QSize(side, side));
        button->setFocusPolicy(Qt::StrongFocus);
        button->setSizePolicy(home ? QSizePolicy::Fixed : QSizePolicy::Ignored, QSizePolicy::Fixed);
        if (home)
            button->setFixedWidth(kHomeWidth);
        // An ampersand in a caption isn't a mnemonic. The style elides what is too long.
        button->setText(u' ' + QString(caption).replace(u'&', QStringLiteral("&&")));
        button->setAccessibleName(caption);
        PlainText::setTooltip(button, caption);
        // The list may have changed by the time of the click.
        connect(button, &QToolButton::clicked, this, [this, key = item.key()] { choose(key); });
        if (m_flow)
            m_flow->addWidget(button);
        else
            m_column->addWidget(button);
        button->show();
        m_buttons.push_back(button);
    }

    void choose(const std::wstring& key)
    {
        if (!m_control)
            return;
        const auto items = m_control->items();
        const auto found = std::ranges::find(items, key, [](const Info* item) { return item->key(); });
        if (found == items.end())
            return;
        m_control->selectedItem(*found, true);
        ItemhubItems::openLater(std::stoi(key));
    }

    Place m_place;
    QLabel* m_head;
    QWidget* m_rows;
    FlowLayout* m_flow = nullptr;
    QVBoxLayout* m_column = nullptr;
    ListControl* m_control = nullptr; ///< Null before the first sign-in.
    std::vector<QToolButton*> m_buttons;
};

const AreaContents kHome("HomeFavourites",
                         [](QWidget* parent) { return new Favourites(Favourites::Place::Home, parent); });
const AreaContents kFoot("BrowserFoot",
                         [](QWidget* parent) { return new Favourites(Favourites::Place::Foot, parent); });

} // namespace
} // namespace Vu::Commands
