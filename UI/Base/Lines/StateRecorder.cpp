#include "UI/Base/Lines/StateRecorder.h"

#include "Server/Base/NumberText.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TranscriptMgr.h"
#include "Server/Base/TranscriptTrigger.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Selection/SelectedPaths.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "Server/Types/PointText.h"
#include "Server/Types/Uuid.h"
#include "UI/Base/Command/Private/CommandStack.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Session/SessionTranscriptingHelper.h"
#include "UI/Base/View/CameraTransition.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/View/ViewMgr.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace Vu {
namespace {

using Vs::Scene::Camera;
using Vs::Scene::CameraParameters;

/// A line holds this many paths; more selected objects take several lines.
constexpr size_t kPathsOfLine = 500;

/// The camera that the lines of the area Camera set.
Camera* activeCamera()
{
    AssetSession* session = SessionMgr::get()->activeAssetSession();
    ViewMgr* views = session ? session->viewManager() : nullptr;
    GraphicsView* view = views ? views->graphicsView() : nullptr;
    if (view)
        view->settleFit();
    return view && !view->viewFragments().empty() ? view->viewFragments().front()->camera() : nullptr;
}

using CameraState = StateRecorder::CameraState;

/// Writes the line that restores the camera.
class CameraTrigger : public Vs::TranscriptTrigger
{
public:
    explicit CameraTrigger(const CameraState& state) : m_state(state) {}

    std::wstring onCreateTranscriptEntry() override
    {
        const auto& s = m_state;
        std::wstring line = L"Camera.Set " + Vs::Types::Point3dToString({s[0], s[1], s[2]}) + L' ' +
                            Vs::Types::Point3dToString({s[3], s[4], s[5]}) + L' ' +
                            Vs::Types::Vector3dToString({s[6], s[7], s[8]});
        for (size_t i = 9; i < 13; ++i)
            line += L' ' + Vs::numberText(s[i]);
        return line + L' ' + std::to_wstring(int(s[13]));
    }

private:
    const CameraState& m_state;
};

/// To the last digit that `size` has where it is written with so many.
double rounded(double value, double size)
{
    constexpr int kDigits = 10;
    constexpr int kMostDecimals = 15;
    if (!(size > 0) || !std::isfinite(size) || !std::isfinite(value))
        return value;
    const int decimals = kDigits - 1 - static_cast<int>(std::floor(std::log10(size)));
    if (decimals < 0 || decimals > kMostDecimals)
        return value;
    // The number of which that is the text, as a replay reads it.
    std::array<char, 400> text{};
    const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::fixed, decimals);
    double read = value;
    std::from_chars(text.data(), end.ptr, read);
    return read + 0.0; // Never -0.
}

/// Digits beyond those that anybody sees differ from one recording to the next.
CameraParameters inFewDigits(CameraParameters at)
{
    const double size = std::max({(at.position - at.target).length(), at.extentsWidth, at.extentsHeight});
    const auto point = [](const auto& of, double extent) {
        return GkPoint3d(rounded(of.x, extent), rounded(of.y, extent), rounded(of.z, extent));
    };
    at.position = point(at.position, size);
    at.target = point(at.target, size);
    at.up = point(at.up, 1).asVector();
    for (double* value : {&at.clipNear, &at.clipFar, &at.extentsWidth, &at.extentsHeight})
        *value = rounded(*value, size);
    return at;
}

/// Of the open documents, in their order.
std::vector<boost::uuids::uuid> identifiers()
{
    std::vector<boost::uuids::uuid> all;
    const Vs::DocumentMgr* manager = Vs::DocumentMgr::get();
    for (unsigned i = 0; i < manager->documents(); ++i)
        all.push_back(manager->document(i)->identifier());
    return all;
}

/// Gives the identifiers by which later lines know a document that was just opened.
std::wstring lineThatNames(const Vs::Document& document)
{
    std::wstring line = L"Transcripting.Document " + Vs::fromUuid(document.identifier());
    for (unsigned i = 0; i < document.assets(); ++i)
        line += L' ' + Vs::fromUuid(document.asset(i)->guid());
    return line;
}

/// The file whose content equals the document's present state; empty if there is none.
std::wstring fileThatHas(Vs::Document& document)
{
    if (document.isDirty(true))
        return {};
    return document.isOnDisk() ? document.path() : document.importedFrom();
}

/// The number of the active one of several split views, from 1; 0 if there is only one view, or none is
/// active.
size_t activeViewNumber()
{
    std::vector<GraphicsCanvas*> canvases;
    GraphicsCanvas::allCanvases(canvases);
    const auto active = std::find(canvases.begin(), canvases.end(), SplitViewMgr::get()->activeCanvas());
    return canvases.size() < 2 || active == canvases.end()
               ? 0
               : static_cast<size_t>(active - canvases.begin()) + 1;
}

bool recording()
{
    return Vs::TranscriptMgr::get()->takesEntries();
}

} // namespace

StateRecorder::StateRecorder()
{
    m_subscriptions.add(SessionEventSource::get(), this);
}

StateRecorder::~StateRecorder()
{
    m_subscriptions.clear();
    follow(nullptr);
}

StateRecorder::CameraState StateRecorder::stateOf(const CameraParameters& at)
{
    return {at.position.x,    at.position.y,        at.position.z, at.target.x,
            at.target.y,      at.target.z,          at.up.x,       at.up.y,
            at.up.z,          at.clipNear,          at.clipFar,    at.extentsWidth,
            at.extentsHeight, double(at.projection)};
}

// The camera itself gives up the other digits, so that the line says exactly where it is.
void StateRecorder::writeWhereIs(Camera& camera)
{
    const CameraParameters there = inFewDigits(CameraParameters(camera));
    there.applyTo(camera);
    writeWhereEnds(camera, there);
}

void StateRecorder::writeWhereEnds(const Camera& camera, const CameraParameters& end)
{
    TransitionMgr::get()->endAt(camera, end);
    m_camera = stateOf(end);
    m_fits[&camera] = camera.fitRevision();
    CameraTrigger(*m_camera).writeTranscriptEntry();
}

void StateRecorder::begin()
{
    m_documents = identifiers();
    accept();
    m_tellsBeginning = !m_documents.empty() && !SessionTranscriptingHelper::get()->nextStartsAnywhere();
    // As soon as whoever started it has written its own first line; a mouse event may come before any
    // command.
    if (m_tellsBeginning)
        Application::get()->deferredTasks()->post([this] { write(); });
    m_fits.clear();
    m_begun = Camera::make()->revision(); // The newest one of all.
}

void StateRecorder::writeDocuments(const std::wstring& line)
{
    std::vector<boost::uuids::uuid> now = identifiers();
    if (now == m_documents)
        return;
    // Files that were opened together are each known by name.
    const bool oneCame = now.size() == m_documents.size() + 1;
    m_documents = std::move(now);
    const std::wstring identifier =
        Vs::fromUuid(m_documents.empty() ? boost::uuids::uuid() : m_documents.back());
    if (!oneCame || line.find(identifier) != std::wstring::npos)
        return;
    const Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    Vs::writeTranscriptLine(lineThatNames(*documents->document(documents->documents() - 1)));
}

void StateRecorder::write()
{
    if (!recording())
        return;
    writeBeginning();
    writeActiveView();
    writeFitted();
    writeCamera();
    writeSelection();
}

void StateRecorder::writeBeginning()
{
    if (!std::exchange(m_tellsBeginning, false))
        return;
    const AssetSession* session = SessionMgr::get()->activeAssetSession();
    const Vs::Document* active = session ? session->asset()->document() : nullptr;
    // What is opened last is the active one.
    std::vector<Vs::Document*> documents;
    for (unsigned i = 0; i < Vs::DocumentMgr::get()->documents(); ++i)
        documents.push_back(Vs::DocumentMgr::get()->document(i));
    std::ranges::stable_partition(documents, [&](const Vs::Document* each) { return each != active; });
    bool isWhole = true;
    for (Vs::Document* document : documents) {
        const std::wstring file = fileThatHas(*document);
        if (file.empty()) {
            isWhole = false;
            Vs::writeTranscriptLine(L"# When this was recorded, " + document->displayName() +
                                    L" was open, as no file has it. What follows may need it as it was.");
            continue;
        }
        Vs::writeTranscriptLine(L"Document.Open " +
                                Vs::Strings::quote(Vs::TranscriptMgr::get()->portable(file)));
        Vs::writeTranscriptLine(lineThatNames(*document));
    }
    if (!isWhole || !session)
        return;
    if (Camera* camera = activeCamera(); camera && !TransitionMgr::get()->playing())
        writeWhereIs(*camera);
    m_selectionDiffers = !session->selectionManager()->selectionSet().selections().empty();
}

void StateRecorder::writeActiveView()
{
    const size_t now = activeViewNumber();
    if (now == 0 || std::exchange(m_activeView, now) == now)
        return;
    Vs::writeTranscriptLine(L"SplitView.Activate " + std::to_wstring(now));
    // The camera is another view's, which nobody has moved yet.
    m_camera.reset();
    m_goal.reset();
}

void StateRecorder::accept()
{
    m_selectionDiffers = false;
    m_activeView = activeViewNumber();
    m_camera.reset();
    const Camera* camera = activeCamera();
    // Its destination is only known when it has arrived.
    if (camera && !TransitionMgr::get()->playing())
        m_camera = stateOf(CameraParameters(*camera));
}

void StateRecorder::cameraMoved(Camera* camera)
{
    if (!recording() || camera != activeCamera())
        return;
    if (CommandStack::executingAnywhere()) {
        m_goal = CameraParameters(*camera);
        return;
    }
    writeBeginning();
    writeActiveView();
    writeWhereIs(*camera);
}

void StateRecorder::writeCamera()
{
    if (!recording())
        return;
    Camera* camera = activeCamera();
    if (!camera || TransitionMgr::get()->playing())
        return;
    const CameraState now = stateOf(CameraParameters(*camera));
    if (m_camera && *m_camera != now)
        writeWhereIs(*camera);
    else
        m_camera = now;
}

void StateRecorder::writeFitted()
{
    const std::optional<CameraParameters> goal = std::exchange(m_goal, std::nullopt);
    Camera* camera = recording() ? activeCamera() : nullptr;
    if (!camera || camera->fitRevision() <= m_begun || camera->fitRevision() == m_fits[camera])
        return;
    const bool glides = TransitionMgr::get()->playing();
    if (glides && !goal)
        return;
    if (glides)
        writeWhereEnds(*camera, inFewDigits(*goal));
    else
        writeWhereIs(*camera);
}

void StateRecorder::writeSelection()
{
    if (!m_selectionDiffers || !m_session)
        return;
    m_selectionDiffers = false;
    const Vs::SelectionSet& selected = m_session->selectionManager()->selectionSet();
    const std::vector<std::wstring> paths = Vs::pathTextsIn(selected, *m_session->asset());
    if (paths.empty())
        Vs::writeTranscriptLine(L"Selection.Clear");
    for (size_t i = 0; i < paths.size(); i += kPathsOfLine) {
        std::wstring line = i == 0 ? L"Selection.Select" : L"Selection.Add";
        for (size_t k = i; k < std::min(i + kPathsOfLine, paths.size()); ++k)
            line += L' ' + Vs::Strings::quote(paths[k]);
        Vs::writeTranscriptLine(line);
    }
}

void StateRecorder::follow(AssetSession* session)
{
    if (session == m_session)
        return;
    if (m_session)
        m_session->selectionManager()->selectionSet().unsubscribe(this);
    m_session = session;
    if (m_session)
        m_session->selectionManager()->selectionSet().subscribe(this);
    // Another session has its own selection and camera, which nobody has changed yet.
    m_selectionDiffers = false;
    m_camera.reset();
}

void StateRecorder::currentSessionChanged(SessionEvent*)
{
    follow(SessionMgr::get()->activeAssetSession());
}

// The first one of a window becomes the current one before it is active.
void StateRecorder::sessionPostActivateForAsset(SessionEvent*)
{
    follow(SessionMgr::get()->activeAssetSession());
}

void StateRecorder::sessionClosed(SessionEvent* event)
{
    if (event->assetSession() == m_session)
        follow(nullptr);
}

void StateRecorder::selectionSetChanged()
{
    if (!recording())
        return;
    m_selectionDiffers = true;
    if (m_writeLater || CommandStack::executingAnywhere())
        return;
    m_writeLater = true;
    Application::get()->deferredTasks()->post([this] {
        m_writeLater = false;
        write();
    });
}

} // namespace Vu
