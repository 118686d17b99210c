#pragma once

#include "Server/Base/OptionGroup.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/DocumentEvents.h"
#include "UI/Base/Command/CommandEvents.h"
#include "UI/Base/Session/DocumentRemark.h"
#include "UI/Base/Session/SessionEvents.h"
#include "UI/Base/Window/FollowedSelection.h"
#include "UI/Base/Window/PartMeasurer.h"
#include "UI/Base/Window/PropertyValues.h"

#include <QTimer>
#include <QWidget>

#include <map>

class QGridLayout;
class QLabel;

namespace Vu {

class ColourButton;
class ValueLine;

/// The properties of the selection: name, kind, colour, position, size, volume and area; for faces and edges
/// also shape, diameter and length. For several things it shows what they have in common, and totals. Name,
/// colour and position can be changed while no tool runs (PropertyEdits). Slow properties are measured on a
/// thread a moment after the last click (PartMeasurer). Without a selection the panel describes the document,
/// including what add-ins know about it (DocumentFacts). Nothing is queried while it is hidden.
class PropertiesPanel : public QWidget,
                        private Vs::SelectionSetSite,
                        private Vs::AssetEventSite,
                        private Vs::DocumentEventSite,
                        private Vs::OptionEventSite,
                        private DocumentRemarkSite,
                        private CommandEventSite,
                        private SessionEventSite
{
public:
    explicit PropertiesPanel(QWidget* parent);
    ~PropertiesPanel() override;

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Field
    {
        QLabel* title;
        QWidget* value;
        QLabel* text = nullptr; ///< The value, if it is read-only.
        ValueLine* line = nullptr;
    };

    enum class Row { Name, Colour, X, Y, Z, Size, Diameter, Length, Area, Volume };

    void selectionSetChanged() override { refreshSoon(); }
    void assetComponentsChanged(Vs::ComponentsEvent* event) override;
    void documentUpdated(Vs::DocumentEvent*) override { refreshSoon(); }
    void documentSaved(Vs::DocumentEvent*) override { refreshSoon(); }
    void optionChanged(Vs::OptionEvent*) override { refreshSoon(); }
    void documentRemarksChanged(Vs::Event*) override { refreshSoon(); }
    void commandAvailabilitiesChanged(Vs::Event*) override;
    void currentSessionChanged(SessionEvent*) override { refreshSoon(); }
    void sessionPostActivateForAsset(SessionEvent*) override { refreshSoon(); }
    void sessionDeactivated(SessionEvent*) override { refreshSoon(); }
    void sessionClosed(SessionEvent* event) override;

    Field& addField(Row row, const QString& title, QWidget* value);
    void addLine(Row row, const char* name, const QString& title);
    void addValue(Row row, const char* name, const QString& title);
    void addRows();

    void refreshSoon();
    void refresh();
    void showSelection(Vs::SelectionMgr& manager, const Vs::Asset& asset);
    void showDocument(const Vs::Document* document);
    void showEditable();
    void showColour();
    void showPlace();
    void showMeasured(const Vs::MeasuredParts& measured);
    void show(Row row, const QString& text);
    void showRow(Row row, bool shown);
    QString enterPosition(int axis, const QString& text);

    QLabel* m_head;
    QLabel* m_hint;
    QGridLayout* m_grid;
    QGridLayout* m_facts;    ///< Of the document.
    bool m_isNarrow = false; ///< The values stand below their titles.
    std::map<Row, Field> m_fields;
    ColourButton* m_colour = nullptr;
    QTimer m_soon, m_editableSoon, m_measureSoon;
    FollowedSelection m_followed{*this}; ///< Of the active session, as long as that lasts.
    PropertyValues m_values;
    bool m_measuresLater = false; ///< When the shown preview ends.
    PartMeasurer m_measurer;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
