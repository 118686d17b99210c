#include "Server/CommonData/CommonDataAssetSettings.h"

#include "Server/Base/Warning.h"
#include "Server/CommonData/NamedViews.h"
#include "Server/DataModel/Asset.h"
#include "Server/Types/PointText.h"

#include <optional>
#include <set>

namespace Vs::CommonData {

namespace {

constexpr const char* kSceneUp = "sceneUp";
constexpr const char* kSceneFront = "sceneFront";
constexpr const char* kHomeEye = "homeEye";
constexpr const char* kHomeUp = "homeUp";
constexpr const char* kOrthoFaces = "perspWithOrthoFaces";
constexpr const wchar_t* kOn = L"true";

const GkVector3d kDefaultUp(0, 0, 1), kDefaultFront(0, -1, 0);

/// `front` made perpendicular to `up`, or nothing if they don't span a plane.
std::optional<GkVector3d> frontBeside(const GkVector3d& up, const GkVector3d& front)
{
    // A vector whose length exceeds the range of numbers has no normal and counts as none.
    const GkVector3d upward = up.normal(), forward = front.normal();
    const GkVector3d level = forward - upward * upward.dotProduct(forward);
    if (!(upward.length() > 0.5) || !(level.length() > GkContext::gTol.equalVector))
        return std::nullopt;
    return level.normal();
}

/// Whether the value hasn't been reported yet; marks it as reported.
bool isNew(const std::wstring& value, std::set<std::wstring>& told)
{
    return told.insert(value).second;
}

} // namespace

CommonDataAssetSettings::CommonDataAssetSettings(Asset* asset)
    : Implements(asset), m_namedViews(std::make_unique<NameView::NamedViews>(*this))
{
}

CommonDataAssetSettings::~CommonDataAssetSettings() = default;

const CommonDataAssetSettings::Orientation& CommonDataAssetSettings::orientation() const
{
    const std::wstring up = asset()->setting(kSceneUp), front = asset()->setting(kSceneFront);
    if (up == m_upText && front == m_frontText)
        return m_orientation;
    m_upText = up;
    m_frontText = front;
    m_orientation = {kDefaultUp, kDefaultFront};
    if (up.empty() && front.empty())
        return m_orientation;
    Orientation read = m_orientation;
    const bool readable = (up.empty() || Types::StringToVector3d(up, read.up)) &&
                          (front.empty() || Types::StringToVector3d(front, read.front));
    const std::optional<GkVector3d> level = readable ? frontBeside(read.up, read.front) : std::nullopt;
    if (level)
        m_orientation = {read.up.normal(), *level};
    else
        warn(asset()->name() + L": the saved orientation of the model, up " + up + L" and front " + front +
             L", is not two directions; Z is taken for up.");
    return m_orientation;
}

GkVector3d CommonDataAssetSettings::sceneUp() const
{
    return orientation().up;
}

GkVector3d CommonDataAssetSettings::sceneFront() const
{
    return orientation().front;
}

bool CommonDataAssetSettings::sceneOrientation(const GkVector3d& up, const GkVector3d& front)
{
    const std::optional<GkVector3d> level = frontBeside(up, front);
    if (!level)
        return false;
    asset()->setting(kSceneUp, Types::Vector3dToString(up.normal()));
    asset()->setting(kSceneFront, Types::Vector3dToString(*level));
    return true;
}

CommonDataAssetSettings::HomeView CommonDataAssetSettings::homeView() const
{
    const std::wstring eyeText = asset()->setting(kHomeEye), upText = asset()->setting(kHomeUp);
    GkVector3d eye, up;
    if (Types::StringToVector3d(eyeText, eye) && Types::StringToVector3d(upText, up))
        if (const std::optional<GkVector3d> level = frontBeside(eye, up))
            return {eye.normal(), *level};
    if (!eyeText.empty() && isNew(eyeText, m_unreadable))
        warn(asset()->name() + L": the saved home view, from " + eyeText + L" with " + upText +
             L" upwards, is not two directions; Home looks as usual.");
    const GkVector3d sideways = sceneUp().crossProduct(sceneFront()) + sceneFront() + sceneUp();
    return {sideways.normal(), *frontBeside(sideways, sceneUp())};
}

bool CommonDataAssetSettings::homeView(const HomeView& view)
{
    const std::optional<GkVector3d> level = frontBeside(view.eye, view.up);
    if (!level)
        return false;
    asset()->setting(kHomeEye, Types::Vector3dToString(view.eye.normal()));
    asset()->setting(kHomeUp, Types::Vector3dToString(*level));
    return true;
}

bool CommonDataAssetSettings::perspWithOrthoFaces() const
{
    const std::wstring value = asset()->setting(kOrthoFaces);
    if (value.empty() || value == kOn)
        return !value.empty();
    if (isNew(value, m_unreadable))
        warn(asset()->name() + L": the saved value \"" + value +
             L"\" of perspWithOrthoFaces is neither true nor empty; the perspective stays as it is.");
    return false;
}

void CommonDataAssetSettings::perspWithOrthoFaces(bool on)
{
    asset()->setting(kOrthoFaces, on ? kOn : L"");
}

} // namespace Vs::CommonData
