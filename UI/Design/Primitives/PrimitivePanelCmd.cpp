#include "UI/Design/Primitives/PrimitivePanelCmd.h"

#include "Server/Base/Strings.h"
#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "Server/Types/PointText.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDialog.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Design/Localized.h"
#include "UI/Design/Primitives/FaceFrame.h"
#include "UI/Design/Primitives/NewPart.h"
#include "UI/Design/Primitives/PrimitiveCmds.h"
#include "UI/Design/Primitives/PrimitiveRequest.h"

#include <algorithm>
#include <cmath>

namespace Vu::Design {
namespace {

using Kind = ManipulatorHandle::Kind;

/// The maximum distance of its position from the origin, in mm: farther away the kernel's accuracy isn't
/// sufficient.
constexpr double kFarthest = 1e8;
/// The share of the view that a part of default size should take up, and the default sizes in mm.
constexpr double kShareOfView = 0.25, kOrdinary = 100;

/// The nearest of 1, 2 and 5, times a power of ten.
double roundNumber(double number)
{
    const double power = std::pow(10, std::floor(std::log10(number)));
    const double digit = number / power;
    return power * (digit < std::sqrt(2) ? 1 : digit < std::sqrt(10) ? 2 : digit < std::sqrt(50) ? 5 : 10);
}

/// The initial scale of the default sizes, so that a new part neither hides what the user is looking at nor
/// is lost beside it.
double startScale(const Vs::Asset* asset, const GraphicsView* view)
{
    const Vs::Scene::ViewFragment* fragment = view ? view->modelFragment() : nullptr;
    if (!fragment || !asset || asset->components()->children.empty())
        return 1;
    const double width = view->canvasWidth(), height = view->canvasHeight();
    const Vs::Scene::Camera& camera = *fragment->camera();
    const double across =
        std::min(width, height) * Vs::Scene::Projection(camera, width, height).pixelSize(camera.distance());
    const double wanted = kShareOfView * across / kOrdinary;
    return std::isfinite(wanted) && wanted > 0 ? std::clamp(roundNumber(wanted), 1e-4, 1e4) : 1;
}

} // namespace

PrimitivePanelCmd::PrimitivePanelCmd(CommandDefinition* definition, CommandContext* context,
                                     const PrimitiveRow& row)
    : Implements(definition, context),
      m_row(row),
      m_place(Manipulator::handlesOf({Kind::Along, Kind::Plane}),
              [this](const Manipulator::Drag& drag) { dragPlace(drag); })
{
    for (size_t i = 0; i < row.sizes.size(); ++i)
        m_grips.emplace_back(std::vector<ManipulatorHandle>{{Kind::Along, row.sizes[i].axis}},
                             [this, i](const Manipulator::Drag& drag) { dragSize(i, drag); });
}

void PrimitivePanelCmd::onMakeInputs(EditInputs& inputs)
{
    const double scale = startScale(commandContext()->asset(), ActiveAssetUtils::graphicsView());
    for (const PrimitiveRow::Size& size : m_row.sizes) {
        m_sizes.push_back(
            inputs.length(Vs::Strings::widen(size.name).c_str(), size.title(), scale * size.ordinary));
        m_sizes.back()->minimumValue(true, size.smallest(), true);
        m_sizes.back()->maximumValue(true, Vs::ModelBuilder::kLargestSize, true);
    }
    m_face = inputs.things(L"Face", localized("PrimitiveFace", "On face"), {Vs::ESelectionType::Face}, true);
    m_face->required(false);
    m_shift[0] = inputs.length(L"X", localized("EditPointX", "X"), 0);
    m_shift[1] = inputs.length(L"Y", localized("EditPointY", "Y"), 0);
    m_shift[2] = inputs.length(L"Z", localized("EditPointZ", "Z"), 0);
    for (RealValueCommandInput* shift : m_shift) {
        shift->minimumValue(true, -kFarthest, true);
        shift->maximumValue(true, kFarthest, true);
    }
}

std::vector<double> PrimitivePanelCmd::sizes() const
{
    std::vector<double> values;
    for (const RealValueCommandInput* size : m_sizes)
        values.push_back(size->value());
    return values;
}

GkVector3d PrimitivePanelCmd::shift() const
{
    return {m_shift[0]->value(), m_shift[1]->value(), m_shift[2]->value()};
}

GkVector3d PrimitivePanelCmd::foot(const std::vector<double>& sizes) const
{
    return m_onFace ? -m_row.foot(sizes.data()) : GkVector3d();
}

GkMatrix3d PrimitivePanelCmd::placement() const
{
    return ground() * GkMatrix3d::translation(shift() + foot(sizes()));
}

PreviewedCmd::OwnedRequest PrimitivePanelCmd::onMakeRequest(Vs::Asset&)
{
    Vs::ModelBuilder::Look look;
    look.placement = placement();
    const std::string parent = assetSession() ? assetSession()->editedComponent() : std::string();
    return OwnedRequest(new PrimitiveRequest(m_row, sizes(), std::move(look), parent));
}

void PrimitivePanelCmd::onDone(const Vs::Request& request, bool)
{
    if (const auto* primitive = Vs::cast<PrimitiveRequest>(&request))
        m_made = primitive->made();
}

std::wstring PrimitivePanelCmd::onWhyInvalid() const
{
    if (!m_face->selectionSet().empty() && !m_onFace)
        return localized("PrimitiveFaceGone", "There is nothing to stand on: the face isn't shown.");
    return m_row.whyInvalid(sizes().data());
}

// It is joined to a part, so the part's faces are different ones during the preview.
bool PrimitivePanelCmd::onPicksInsideBodies() const
{
    const Vs::Asset* asset = commandContext()->asset();
    const std::string parent = assetSession() ? assetSession()->editedComponent() : std::string();
    const Vs::Component* component = asset && !parent.empty() ? asset->findComponent(parent) : nullptr;
    return component && component->body;
}

bool PrimitivePanelCmd::onFilterSelection(const Vs::StrongRef<Vs::Selection>& selection,
                                          const Vs::SelectionFilterContext* context)
{
    const auto* object = Vs::cast<Vs::LogicalSelection>(selection.get());
    if (object && !m_made.empty() && object->componentId() == m_made && !onPicksInsideBodies())
        return false;
    return Implements::onFilterSelection(selection, context);
}

// The position on a curved face is where it was picked, and stays when the face is queried again.
void PrimitivePanelCmd::onInputChanged()
{
    const auto& chosen = m_face->selectionSet().selections();
    const Vs::Asset* asset = commandContext()->asset();
    const auto* face = chosen.empty() ? nullptr : Vs::cast<Vs::LogicalSelection>(chosen.front().get());
    if (face == m_standsOn.get())
        return;
    const bool same = face && m_standsOn && m_standsOn->isEqualTo(*face) && !face->picked();
    m_standsOn = face ? chosen.front() : Vs::StrongRef<Vs::Selection>();
    if (same)
        return;
    m_onFace = face && asset ? frameOnFace(*face, *asset) : std::nullopt;
}

void PrimitivePanelCmd::onShown()
{
    const bool valid = commandInputSet()->valid() && onWhyInvalid().empty();
    const std::vector<double> values = sizes();
    const GkMatrix3d place = placement();
    m_place.show(graphicsView(),
                 valid ? std::optional(ground() * GkMatrix3d::translation(shift())) : std::nullopt);
    for (size_t i = 0; i < m_grips.size(); ++i)
        m_grips[i].show(graphicsView(),
                        valid ? std::optional(place * GkMatrix3d::translation(m_row.grip(values.data(), i)))
                              : std::nullopt);
}

bool PrimitivePanelCmd::isAtLeft() const
{
    constexpr double kLeftPart = 0.45;
    const GraphicsView* view = graphicsView();
    const std::vector<double> values = sizes();
    GkVector3d middle;
    for (size_t i = 0; i < values.size(); ++i)
        middle = middle + m_row.grip(values.data(), i) * (1.0 / double(values.size()));
    const auto seen = view ? view->worldToWindow(placement() * (GkPoint3d() + middle)) : std::nullopt;
    return seen && seen->x < kLeftPart * view->canvasWidth();
}

void PrimitivePanelCmd::onBegin()
{
    Implements::onBegin();
    if (CommandDialog* dialog = commandDialog())
        dialog->atRight(isAtLeft());
}

void PrimitivePanelCmd::onDeactivate()
{
    m_place.hide();
    for (PlaceHandles& grip : m_grips)
        grip.hide();
}

void PrimitivePanelCmd::dragPlace(const Manipulator::Drag& drag)
{
    const CommandInUse inUse(this);
    m_dragged.drive(m_shift, drag);
}

/// How far the grip moves along its axis when its size grows by one.
double PrimitivePanelCmd::gripPerSize(size_t which) const
{
    std::vector<double> values = sizes();
    const auto along = [&] {
        const GkVector3d place = foot(values) + m_row.grip(values.data(), which);
        const double coordinates[] = {place.x, place.y, place.z};
        return coordinates[m_row.sizes[which].axis];
    };
    const double before = along();
    values[which] += 1;
    return along() - before;
}

void PrimitivePanelCmd::dragSize(size_t which, const Manipulator::Drag& drag)
{
    const PrimitiveRow::Size& size = m_row.sizes[which];
    const double shift[] = {drag.shift.x, drag.shift.y, drag.shift.z};
    const CommandInUse inUse(this);
    if (!m_dragging)
        m_from = m_sizes[which]->value();
    m_dragging = !drag.done;
    const double value = m_from + shift[size.axis] / gripPerSize(which);
    PlaceHandles::drive(*m_sizes[which], std::clamp(value, size.smallest(), Vs::ModelBuilder::kLargestSize),
                        drag.done);
}

void PrimitivePanelCmd::onEnd(ETerminationReason reason)
{
    Implements::onEnd(reason);
    Vs::Asset* asset = commandContext()->asset();
    if (reason != ETerminationReason::Commit || !asset)
        return;
    const std::vector<double> values = sizes();
    for (size_t i = 0; i < values.size(); ++i)
        commandContext()->addArgument(Vs::UniqueString::find(m_row.sizes[i].name, true), values[i]);
    const GkMatrix3d place = placement();
    commandContext()->addArgument(PrimitiveCmdDef::originArgumentName(),
                                  Vs::Types::Point3dToString(place * GkPoint3d()));
    if (m_onFace)
        commandContext()->addArgument(PrimitiveCmdDef::directionArgumentName(),
                                      Vs::Types::Vector3dToString(place * GkVector3d::kZAxis));
    if (!m_made.empty())
        presentLater(*asset, m_made);
}

} // namespace Vu::Design
