#include "Server/CommonData/NamedViews.h"

#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"
#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/CommonData/NamedViewRequests.h"
#include "Server/CommonData/Private/Texts.h"
#include "Server/DataModel/Asset.h"
#include "Server/Types/PointText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <cwctype>
#include <memory>

namespace Vs::NameView {

using CommonData::localized;
using CommonData::localizedFormat;
using Scene::Camera;

namespace {

constexpr const char* kSetting = "namedViews";

/// A number of a camera, and its name in the file.
struct Number
{
    const char* key;
    double (Camera::*get)() const;
    void (Camera::*set)(double);
};

constexpr Number kNumbers[] = {
    {"near", &Camera::clipNear, &Camera::clipNear},
    {"far", &Camera::clipFar, &Camera::clipFar},
    {"width", &Camera::extentsWidth, &Camera::extentsWidth},
    {"height", &Camera::extentsHeight, &Camera::extentsHeight},
};

QString toQt(const std::wstring& text)
{
    return QString::fromStdWString(text);
}

QJsonObject write(const NamedView& view)
{
    const Camera& camera = *view.camera();
    QJsonObject object{{"name", toQt(view.name())},
                       {"position", toQt(Types::Point3dToString(camera.position()))},
                       {"target", toQt(Types::Point3dToString(camera.target()))},
                       {"up", toQt(Types::Vector3dToString(camera.up()))},
                       {"projection", camera.projection()}};
    for (const Number& number : kNumbers)
        object[number.key] = (camera.*number.get)();
    return object;
}

/// Null if anything is missing or isn't a number.
StrongRef<NamedView> read(const QJsonObject& object)
{
    const std::wstring name = object["name"].toString().toStdWString();
    GkPoint3d position, target;
    GkVector3d up;
    const auto text = [&](const char* key) { return object[key].toString().toStdWString(); };
    if (name.empty() || !Types::StringToPoint3d(text("position"), position) ||
        !Types::StringToPoint3d(text("target"), target) || !Types::StringToVector3d(text("up"), up))
        return nullptr;
    StrongRef<Camera> camera = Camera::make();
    camera->position(position);
    camera->target(target);
    camera->up(up);
    camera->projection(object["projection"].toInt());
    for (const Number& number : kNumbers) {
        if (!object[number.key].isDouble())
            return nullptr;
        (camera.get()->*number.set)(object[number.key].toDouble());
    }
    return makeStrong<NamedView>(name, false, std::move(camera));
}

struct StandardView
{
    const char* key;
    const char* english;
    /// The eye's position along right, front and up.
    double right, front, up;
    bool upIsFront; ///< Up in the picture is the back of the model, not its top.
};

constexpr StandardView kStandardViews[] = {
    {"StandardViewHome", "Home", 1, 1, 1, false},
    {"StandardViewTop", "Top", 0, 0, 1, true},
    {"StandardViewFront", "Front", 0, 1, 0, false},
    {"StandardViewRight", "Right", 1, 0, 0, false},
};

std::wstring nameOf(const StandardView& standard)
{
    return localized(standard.key, standard.english);
}

StrongRef<NamedView> make(const StandardView& standard, const GkVector3d& up, const GkVector3d& front)
{
    StrongRef<Camera> camera = Camera::make();
    const GkVector3d eye =
        up.crossProduct(front) * standard.right + front * standard.front + up * standard.up;
    camera->look(-eye, standard.upIsFront ? -front : up);
    return makeStrong<NamedView>(nameOf(standard), true, std::move(camera));
}

const StandardView* standardOf(const std::wstring& name)
{
    for (const StandardView& standard : kStandardViews)
        if (Strings::widen(standard.english) == name || nameOf(standard) == name)
            return &standard;
    return nullptr;
}

NamedViews::Views::const_iterator byName(const NamedViews::Views& views, const std::wstring& name)
{
    return std::find_if(views.begin(), views.end(), [&](const auto& view) { return view->name() == name; });
}

std::wstring trimmed(const std::wstring& text)
{
    const auto inner = [](wchar_t c) { return !std::iswspace(static_cast<wint_t>(c)); };
    const auto first = std::find_if(text.begin(), text.end(), inner);
    const auto last = std::find_if(text.rbegin(), std::make_reverse_iterator(first), inner).base();
    return {first, last};
}

} // namespace

Asset* NamedViews::asset() const
{
    return m_settings.asset();
}

const NamedViews::Views& NamedViews::views() const
{
    const GkVector3d up = m_settings.sceneUp(), front = m_settings.sceneFront();
    const CommonData::CommonDataAssetSettings::HomeView home = m_settings.homeView();
    const std::string text = Strings::narrow(asset()->setting(kSetting));
    std::string source = StringTable::language() + '\n';
    for (const GkVector3d& direction : {up, front, home.eye, home.up})
        source += Strings::narrow(Types::Vector3dToString(direction)) + '\n';
    source += text;
    if (source == m_readFrom)
        return m_views;
    m_readFrom = std::move(source);
    m_views.clear();
    for (const StandardView& standard : kStandardViews)
        m_views.push_back(make(standard, up, front));
    m_views.front()->camera()->look(-home.eye, home.up);
    if (text.empty())
        return m_views;
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(text));
    int unreadable = document.isArray() ? 0 : 1;
    const QJsonArray list = document.array();
    for (const auto& value : list) {
        StrongRef<NamedView> view = read(value.toObject());
        if (view && byName(m_views, view->name()) == m_views.end())
            m_views.push_back(std::move(view));
        else
            ++unreadable;
    }
    if (unreadable > 0)
        warn(localizedFormat("NamedViewsUnreadable",
                             "%1%: some of the saved named views can't be read and are left out.",
                             asset()->name()));
    return m_views;
}

NamedViews::Views NamedViews::own() const
{
    Views own = views();
    std::erase_if(own, [](const auto& view) { return view->isFixed(); });
    return own;
}

void NamedViews::keep(const Views& own)
{
    QJsonArray array;
    for (const auto& view : own)
        array.append(write(*view));
    const QByteArray text = QJsonDocument(array).toJson(QJsonDocument::Compact);
    asset()->setting(kSetting, own.empty() ? std::wstring() : Strings::widen(text.toStdString()));
}

StrongRef<NamedView> NamedViews::find(const std::wstring& name) const
{
    const Views& all = views();
    const auto found = byName(all, name);
    if (found != all.end())
        return *found;
    const StandardView* standard = standardOf(name);
    return standard ? all[static_cast<size_t>(standard - kStandardViews)] : nullptr;
}

std::wstring NamedViews::generateNamedViewName(const std::wstring& base) const
{
    std::wstring name = base;
    for (unsigned number = 1; find(name); ++number)
        name = base + std::to_wstring(number);
    return name;
}

bool NamedViews::updateNamedViewCamera(const std::wstring& name, const Camera* camera, Status& status)
{
    if (!camera)
        return false;
    StrongRef<Camera> copy = Camera::make();
    copy->copyFrom(*camera);
    const std::unique_ptr<UpdateNamedViewCameraRequest> request(
        UpdateNamedViewCameraRequest::make(asset(), name, std::move(copy)));
    return request->execute(asset(), status);
}

bool NamedViews::isFree(const std::wstring& name, Status& status) const
{
    if (name.empty()) {
        status.addError(localized("NamedViewNeedsName", "A named view needs a name."));
        return false;
    }
    if (find(name)) {
        status.addError(localizedFormat("NamedViewNameTaken",
                                        "There is already a named view \"%1%\"; choose another name.", name));
        return false;
    }
    return true;
}

NamedViews::Views::iterator NamedViews::modifiable(Views& own, const std::wstring& name, Status& status) const
{
    const auto found = own.begin() + (byName(own, name) - own.cbegin());
    if (found != own.end())
        return found;
    status.addError(
        find(name)
            ? localizedFormat("NamedViewFixed", "\"%1%\" is a standard view and can't be changed.", name)
            : localizedFormat("NamedViewMissing", "There is no named view \"%1%\".", name));
    return found;
}

bool NamedViews::add(const std::wstring& name, const Camera& camera, Status& status)
{
    const std::wstring plain = trimmed(name);
    if (!isFree(plain, status))
        return false;
    StrongRef<Camera> copy = Camera::make();
    copy->copyFrom(camera);
    Views changed = own();
    changed.push_back(makeStrong<NamedView>(plain, false, std::move(copy)));
    keep(changed);
    return true;
}

bool NamedViews::remove(const std::wstring& name, Status& status)
{
    Views changed = own();
    const auto found = modifiable(changed, name, status);
    if (found == changed.end())
        return false;
    changed.erase(found);
    keep(changed);
    return true;
}

bool NamedViews::rename(const std::wstring& name, const std::wstring& newName, Status& status)
{
    Views changed = own();
    const auto found = modifiable(changed, name, status);
    const std::wstring plain = trimmed(newName);
    if (found == changed.end() || (plain != name && !isFree(plain, status)))
        return false;
    *found = makeStrong<NamedView>(plain, false, StrongRef<Camera>((*found)->camera()));
    keep(changed);
    return true;
}

bool NamedViews::update(const std::wstring& name, const Camera& camera, Status& status)
{
    Views changed = own();
    const auto found = modifiable(changed, name, status);
    if (found == changed.end())
        return false;
    StrongRef<Camera> copy = Camera::make();
    copy->copyFrom(camera);
    *found = makeStrong<NamedView>(name, false, std::move(copy));
    keep(changed);
    return true;
}

} // namespace Vs::NameView
