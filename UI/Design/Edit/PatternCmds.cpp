#include "UI/Design/Edit/PatternCmds.h"

#include "UI/Design/Localized.h"
#include "UI/Design/Resources.h"

#include <cmath>
#include <numbers>

namespace Vu::Design {

// clang-format off
constinit const EditRow MirrorCmd::kRow = {
    .key = L"MirrorCommand", .title = "Mirror", .icon = &Resources::Mirror, .tooltip = "Put mirror images of components on the other side of a plane"};

constinit const EditRow LinearPatternCmd::kRow = {
    .key = L"LinearPatternCommand", .title = "Linear Pattern", .icon = &Resources::LinearPattern, .tooltip = "Repeat components along one or two axes"};

constinit const EditRow CircularPatternCmd::kRow = {
    .key = L"CircularPatternCommand", .title = "Circular Pattern", .icon = &Resources::CircularPattern, .tooltip = "Repeat components around an axis"};
// clang-format on

namespace {

constexpr int kMost = 1000;
constexpr double kWholeTurn = 2 * std::numbers::pi;

bool isCount(const IntegerValueCommandInput* input)
{
    return input->value() >= 1 && input->value() <= kMost;
}

std::wstring whyNoCount()
{
    return localizedFormat("EditWrongCount", "A count is a whole number from 1 to %1%.", kMost);
}

} // namespace

void MirrorCmd::onMakeInputs(EditInputs& inputs)
{
    m_components = componentsInput(inputs);
    m_axis =
        inputs.list(L"Across", localized("EditAcross", "Across"), {{L"X", L"X"}, {L"Y", L"Y"}, {L"Z", L"Z"}});
    m_at = inputs.length(L"At", localized("EditAt", "At"), 0);
    m_keep = inputs.choice(L"Keep", localized("EditKeepOriginals", "Keep originals"), true);
}

Vs::ModelEdit MirrorCmd::onMakeEdit(const Vs::Asset&)
{
    const GkVector3d normal = axisOf(*m_axis);
    return Vs::MirrorEdit{componentsOf(*m_components), GkPoint3d() + normal * m_at->value(), normal,
                          m_keep->value()};
}

void LinearPatternCmd::onMakeInputs(EditInputs& inputs)
{
    m_components = componentsInput(inputs);
    m_axis[0] =
        inputs.list(L"Axis", localized("EditAlong", "Along"), {{L"X", L"X"}, {L"Y", L"Y"}, {L"Z", L"Z"}});
    m_spacing[0] = inputs.length(L"Spacing", localized("EditSpacing", "Spacing"), 0);
    m_count[0] = inputs.count(L"Count", localized("EditCount", "Count"), 2);
    m_axis[1] =
        inputs.list(L"SecondAxis", localized("EditThenAlong", "Then along"),
                    {{L"None", localized("EditNone", "None")}, {L"X", L"X"}, {L"Y", L"Y"}, {L"Z", L"Z"}});
    m_spacing[1] = inputs.length(L"SecondSpacing", localized("EditSpacing", "Spacing"), 0);
    m_count[1] = inputs.count(L"SecondCount", localized("EditCount", "Count"), 2);
    for (RealValueCommandInput* spacing : m_spacing)
        spacing->awaitsValue(
            localized("EditNoSpacing", "The copies need a spacing; without one they all lie in one place."));
    m_spacing[1]->hiddenWhileDisabled(true);
    m_count[1]->hiddenWhileDisabled(true);
    onInputChanged();
}

bool LinearPatternCmd::isGrid() const
{
    return m_axis[1]->valueAsString() != L"None";
}

void LinearPatternCmd::onInputChanged()
{
    m_spacing[1]->enabled(isGrid());
    m_count[1]->enabled(isGrid());
}

std::wstring LinearPatternCmd::onWhyInvalid() const
{
    if (!isCount(m_count[0]) || (isGrid() && !isCount(m_count[1])))
        return whyNoCount();
    return {};
}

Vs::ModelEdit LinearPatternCmd::onMakeEdit(const Vs::Asset&)
{
    const auto step = [&](int which, int times) {
        return GkMatrix3d::translation(axisOf(*m_axis[which]) * (m_spacing[which]->value() * times));
    };
    Vs::CopyEdit edit{componentsOf(*m_components), {}};
    const int rows = isGrid() ? m_count[1]->value() : 1;
    edit.motions.reserve(size_t(rows) * size_t(m_count[0]->value()));
    for (int row = 0; row < rows; ++row)
        for (int i = 0; i < m_count[0]->value(); ++i)
            if (i > 0 || row > 0)
                edit.motions.push_back(row > 0 ? step(1, row) * step(0, i) : step(0, i));
    return edit;
}

void CircularPatternCmd::onMakeInputs(EditInputs& inputs)
{
    m_components = componentsInput(inputs);
    m_axis = axisInput(inputs);
    m_angle = inputs.angle(L"Angle", localized("EditAngle", "Angle"), kWholeTurn);
    m_count = inputs.count(L"Count", localized("EditCount", "Count"), 4);
    m_centre.make(inputs, CentreInputs::First::Origin);
}

std::wstring CircularPatternCmd::onWhyInvalid() const
{
    if (!isCount(m_count))
        return whyNoCount();
    if (m_angle->value() == 0 || std::abs(m_angle->value()) > kWholeTurn * (1 + 1e-9))
        return localized("EditWrongAngle",
                         "The angle of a pattern must not be zero nor more than a full turn.");
    return {};
}

Vs::ModelEdit CircularPatternCmd::onMakeEdit(const Vs::Asset& asset)
{
    // The last copy of a full turn would coincide with the first.
    const bool closed = std::abs(std::abs(m_angle->value()) - kWholeTurn) < 1e-9;
    const int count = m_count->value();
    const double step = m_angle->value() / std::max(1, closed ? count : count - 1);
    const std::vector<std::string> components = componentsOf(*m_components);
    const GkPoint3d centre = m_centre.centre(asset, components);
    Vs::CopyEdit edit{components, {}};
    for (int i = 1; i < count; ++i)
        edit.motions.push_back(GkMatrix3d::rotation(i * step, axisOf(*m_axis), centre));
    return edit;
}

} // namespace Vu::Design
