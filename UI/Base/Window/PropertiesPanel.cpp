#include "UI/Base/Window/PropertiesPanel.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/Selection/PartHistory.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Types/Units/Expression.h"
#include "Server/Types/UnitsOptionGroup.h"
#include "UI/Base/Command/ColourCommandInput.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/AreaContents.h"
#include "UI/Base/Program/LocalNumbers.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Window/ColourButton.h"
#include "UI/Base/Window/PlainText.h"
#include "UI/Base/Window/PropertyEdits.h"
#include "UI/Base/Window/PropertyTexts.h"
#include "UI/Base/Window/RestingCommand.h"
#include "UI/Base/Window/Theme.h"
#include "UI/Base/Window/Told.h"
#include "UI/Base/Window/ValueLine.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>

namespace Vu {
namespace {

const AreaContents kProperties(
    "Properties", [](QWidget* parent) { return new PropertiesPanel(parent); },
    [] { return localized("AreaProperties", "Properties"); });

/// Nothing is measured while the user keeps clicking from thing to thing.
constexpr int kPause = 250;
constexpr int kMostNameLetters = 1000;
constexpr int kLeastValue = 60;
/// In a narrower panel the values are below their titles.
constexpr int kLeastBeside = 215;

QLabel* valueLabel(QWidget* parent)
{
    QLabel* label = PlainText::label(parent);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    return label;
}

QGridLayout* makeGrid(QBoxLayout* column)
{
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(2 * kMargin);
    grid->setVerticalSpacing(kMargin);
    grid->setColumnStretch(1, 1);
    column->addLayout(grid);
    return grid;
}

void seat(QGridLayout* grid, int row, QLabel* title, QWidget* value, bool isNarrow)
{
    if (isNarrow) {
        grid->addWidget(title, 2 * row, 0, 1, 2);
        grid->addWidget(value, 2 * row + 1, 0, 1, 2);
    } else {
        grid->addWidget(title, row, 0);
        grid->addWidget(value, row, 1);
    }
}

void giveWay(QWidget* value)
{
    // The rest of the policy stays: whether its height depends on its width is part of it.
    QSizePolicy policy = value->sizePolicy();
    policy.setHorizontalPolicy(QSizePolicy::Ignored);
    value->setSizePolicy(policy);
    value->setMinimumWidth(kLeastValue);
}

} // namespace

PropertiesPanel::PropertiesPanel(QWidget* parent)
    : QWidget(parent), m_measurer([this](const Vs::MeasuredParts& measured) { showMeasured(measured); })
{
    setObjectName(QStringLiteral("properties"));
    setAccessibleName(told("AreaProperties", "Properties"));
    auto* page = new QScrollArea(this);
    page->setFrameShape(QFrame::NoFrame);
    page->setWidgetResizable(true);
    page->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    page->setFocusPolicy(Qt::NoFocus);
    auto* within = new QWidget(page);
    auto* column = new QVBoxLayout(within);
    column->setContentsMargins(2 * kMargin, kMargin, kMargin, kMargin);
    column->setSpacing(kMargin);
    m_head = valueLabel(within);
    m_head->setObjectName(QStringLiteral("propertiesHead"));
    column->addWidget(m_head);
    m_grid = makeGrid(column);
    m_facts = makeGrid(column);
    m_hint = PlainText::label(within, told("PropertiesHint", "Select something to see what it measures."));
    m_hint->setWordWrap(true);
    m_hint->setContentsMargins(0, kMargin, 0, 0);
    m_hint->setForegroundRole(QPalette::PlaceholderText);
    column->addWidget(m_hint);
    column->addStretch(1);
    addRows();
    page->setWidget(within);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(page);
    for (QTimer* timer : {&m_soon, &m_editableSoon, &m_measureSoon})
        timer->setSingleShot(true);
    connect(&m_soon, &QTimer::timeout, this, &PropertiesPanel::refresh);
    connect(&m_editableSoon, &QTimer::timeout, this, &PropertiesPanel::showEditable);
    connect(&m_measureSoon, &QTimer::timeout, this, [this] { m_measurer.ask(m_values.parts); });
    m_subscriptions.add(Vs::AssetEventSource::get(), this);
    m_subscriptions.add(Vs::DocumentEventSource::get(), this);
    m_subscriptions.add(Vs::UnitsOptionGroup::get(), this);
    m_subscriptions.add(DocumentRemarkSource::get(), this);
    m_subscriptions.add(CommandEventSource::get(), this);
    m_subscriptions.add(SessionEventSource::get(), this);
}

PropertiesPanel::~PropertiesPanel()
{
    m_followed.follow(nullptr);
    m_subscriptions.clear();
}

PropertiesPanel::Field& PropertiesPanel::addField(Row row, const QString& title, QWidget* value)
{
    QLabel* label = PlainText::label(value->parentWidget(), title);
    label->setBuddy(value);
    giveWay(value);
    seat(m_grid, static_cast<int>(row), label, value, m_isNarrow);
    return m_fields[row] = {label, value};
}

void PropertiesPanel::addLine(Row row, const char* name, const QString& title)
{
    const int axis = static_cast<int>(row) - static_cast<int>(Row::X);
    auto* line = new ValueLine(
        name, title,
        [this, row, axis](const QString& typed) {
            if (row != Row::Name)
                return enterPosition(axis, typed);
            PropertyEdits::rename(typed.toStdWString());
            return QString();
        },
        m_head->parentWidget());
    line->setMaxLength(kMostNameLetters);
    addField(row, title, line).line = line;
}

void PropertiesPanel::addValue(Row row, const char* name, const QString& title)
{
    QLabel* label = valueLabel(m_head->parentWidget());
    label->setObjectName(QLatin1String(name));
    addField(row, title, label).text = label;
}

void PropertiesPanel::addRows()
{
    addLine(Row::Name, "propertyName", told("PropertyName", "Name"));
    m_colour = new ColourButton(
        told("PropertyColour", "Colour"), [](const std::wstring& code) { PropertyEdits::colour(code); },
        m_head->parentWidget());
    m_colour->setObjectName(QStringLiteral("propertyColour"));
    addField(Row::Colour, told("PropertyColour", "Colour"), m_colour);
    addLine(Row::X, "propertyX", told("PropertyX", "Position X"));
    addLine(Row::Y, "propertyY", told("PropertyY", "Position Y"));
    addLine(Row::Z, "propertyZ", told("PropertyZ", "Position Z"));
    addValue(Row::Size, "propertySize", told("PropertySize", "Size"));
    addValue(Row::Diameter, "propertyDiameter", told("PropertyDiameter", "Diameter"));
    addValue(Row::Length, "propertyLength", told("PropertyLength", "Length"));
    addValue(Row::Area, "propertyArea", told("PropertyArea", "Area"));
    addValue(Row::Volume, "propertyVolume", told("PropertyVolume", "Volume"));
}

void PropertiesPanel::sessionClosed(SessionEvent*)
{
    // Of any session: what is followed must not outlive it.
    m_followed.follow(nullptr);
    refreshSoon();
}

// The whole selection is read for one number.
void PropertiesPanel::assetComponentsChanged(Vs::ComponentsEvent* event)
{
    const bool shownStays = isVisible() && !m_followed.empty() && !m_measuresLater &&
                            !m_followed.set()->components().concernedBy(event->changes());
    if (!shownStays)
        refreshSoon();
}

void PropertiesPanel::commandAvailabilitiesChanged(Vs::Event*)
{
    if (isVisible() && !m_editableSoon.isActive())
        m_editableSoon.start(0);
}

void PropertiesPanel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    const bool isNarrow = width() < kLeastBeside;
    if (isNarrow == m_isNarrow)
        return;
    m_isNarrow = isNarrow;
    for (const auto& [row, field] : m_fields)
        seat(m_grid, static_cast<int>(row), field.title, field.value, isNarrow);
    refreshSoon();
}

void PropertiesPanel::showEvent(QShowEvent*)
{
    refresh();
}

void PropertiesPanel::refreshSoon()
{
    m_measurer.cancel();
    m_measureSoon.stop();
    if (isVisible() && !m_soon.isActive())
        m_soon.start(0);
}

void PropertiesPanel::refresh()
{
    m_soon.stop();
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    Vs::SelectionMgr* manager = session ? session->selectionManager() : nullptr;
    m_followed.follow(manager ? &manager->selectionSet() : nullptr);
    m_measuresLater = false;
    const bool any = !m_followed.empty();
    m_hint->setVisible(!any);
    if (any)
        showSelection(*manager, *session->asset());
    else
        showDocument(session ? session->documentSession()->document() : nullptr);
}

void PropertiesPanel::showSelection(Vs::SelectionMgr& manager, const Vs::Asset& asset)
{
    showDocument(nullptr);
    m_values = valuesOf(manager, asset);
    m_head->setText(PropertyTexts::kind(m_values, Vs::MeasuredParts::Form::None));
    m_head->show();
    const bool isNamed = m_values.name.isKnown() && !m_values.name.differs();
    m_fields[Row::Name].line->value(isNamed ? QString::fromStdWString(m_values.name.value()) : QString(),
                                    m_values.name.differs() ? PropertyTexts::different() : QString());
    m_fields[Row::Name].title->setText(m_values.areComponents() ? told("PropertyName", "Name")
                                                                : told("PropertyOf", "Of"));
    showRow(Row::Name, true);
    showColour();
    showPlace();
    show(Row::Size, m_values.size ? PropertyTexts::size(*m_values.size, m_values.isSizeExact) : QString());
    // The rows are there before their numbers, so that nothing jumps.
    const QString pending = m_values.parts.empty() ? QString() : QStringLiteral("\u2026");
    const bool whole = m_values.counts[PropertyValues::Face] + m_values.counts[PropertyValues::Edge] == 0;
    show(Row::Diameter, {});
    show(Row::Length, m_values.counts[PropertyValues::Edge] > 0 ? pending : QString());
    show(Row::Area, m_values.counts[PropertyValues::Edge] == 0 ? pending : QString());
    show(Row::Volume, whole ? pending : QString());
    showEditable();
    m_measuresLater = Vs::showsPreview(asset);
    if (!m_values.parts.empty() && !m_measuresLater)
        m_measureSoon.start(kPause);
}

void PropertiesPanel::showColour()
{
    const CommonValue<std::optional<Vs::Colour>>& colour = m_values.colour;
    const bool differs = colour.differs();
    const std::optional<Vs::Colour> one = colour.isKnown() && !differs ? colour.value() : std::nullopt;
    const std::wstring code = one ? ColourCommandInput::codeOf(*one) : std::wstring();
    m_colour->colour(code, differs ? PropertyTexts::different()
                                   : QString::fromStdWString(ColourCommandInput::titleOf(code)));
    showRow(Row::Colour, m_values.haveColour());
}

void PropertiesPanel::showPlace()
{
    const bool shown = m_values.place[0].isKnown() &&
                       m_values.counts[PropertyValues::Face] + m_values.counts[PropertyValues::Edge] == 0;
    for (size_t axis = 0; axis < 3; ++axis) {
        const Row row = static_cast<Row>(static_cast<size_t>(Row::X) + axis);
        const CommonValue<double>& place = m_values.place[axis];
        const bool same = shown && !place.differs();
        m_fields[row].line->value(same ? PropertyTexts::length(place.value()) : QString(),
                                  place.differs() ? PropertyTexts::different() : QString());
        showRow(row, shown);
    }
}

/// A tool has the selection to itself: to change something here, the user ends it first.
void PropertiesPanel::showEditable()
{
    const bool rests = commandRests() && !m_followed.empty();
    const bool own = rests && m_values.areComponents() && !m_values.isRoot;
    m_fields[Row::Name].line->setReadOnly(!own);
    // Values that differ give no position to move from.
    for (size_t axis = 0; axis < 3; ++axis)
        m_fields[static_cast<Row>(static_cast<size_t>(Row::X) + axis)].line->setReadOnly(
            !own || m_values.place[axis].differs());
    m_colour->setEnabled(rests && m_values.haveColour());
}

void PropertiesPanel::showMeasured(const Vs::MeasuredParts& measured)
{
    m_head->setText(PropertyTexts::kind(m_values, measured.form));
    show(Row::Diameter, measured.diameter ? PropertyTexts::length(*measured.diameter) : QString());
    if (measured.size)
        show(Row::Size, PropertyTexts::size(*measured.size, true));
    show(Row::Length, measured.length ? PropertyTexts::length(*measured.length) : QString());
    show(Row::Area, measured.area ? PropertyTexts::area(*measured.area, measured.isExact) : QString());
    show(Row::Volume,
         measured.volume ? PropertyTexts::volume(*measured.volume, measured.isExact) : QString());
}

void PropertiesPanel::show(Row row, const QString& value)
{
    const Field& field = m_fields[row];
    field.text->setText(value);
    PlainText::setTooltip(field.text, value);
    field.text->setAccessibleName(field.title->text() + QStringLiteral(": ") + value);
    showRow(row, !value.isEmpty());
}

void PropertiesPanel::showRow(Row row, bool shown)
{
    const Field& field = m_fields[row];
    field.title->setVisible(shown);
    field.value->setVisible(shown);
}

/// Null removes the texts about a single thing.
void PropertiesPanel::showDocument(const Vs::Document* document)
{
    while (QLayoutItem* item = m_facts->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    if (document) {
        m_values = {};
        m_head->setText(told("PropertiesDocument", "Document"));
        for (auto& [row, field] : m_fields)
            showRow(row, false);
        int row = 0;
        for (const PropertyTexts::Line& line : PropertyTexts::document(*document)) {
            QWidget* within = m_head->parentWidget();
            QLabel* title = PlainText::label(within, line.title);
            QLabel* value = PlainText::label(within, PlainText::breakable(line.value));
            value->setWordWrap(true);
            giveWay(value);
            PlainText::setTooltip(value, line.value);
            value->setObjectName(QStringLiteral("documentFact"));
            value->setAccessibleName(line.title + QStringLiteral(": ") + line.value);
            title->setAlignment(Qt::AlignTop);
            seat(m_facts, row++, title, value, m_isNarrow);
        }
    }
    m_head->setVisible(document != nullptr || !m_followed.empty());
}

QString PropertiesPanel::enterPosition(int axis, const QString& typed)
{
    std::wstring why;
    const auto wanted = Vs::Units::evaluate(plainNumbers(typed.toStdWString()),
                                            Vs::Units::Unit::display(Vs::Units::Quantity::Length), why);
    if (!wanted)
        return QString::fromStdWString(why);
    PropertyEdits::move(axis, *wanted - m_values.place[static_cast<size_t>(axis)].value());
    return {};
}

} // namespace Vu
