#include "UI/Commands/Camera/Turntable.h"

#include "Server/Base/ChildProcess.h"
#include "Server/Base/Progress.h"
#include "Server/Base/ResourceMgr.h"
#include "Server/Base/ScratchFolder.h"
#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Server/Geometry/GkMatrix3d.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/CameraParameters.h"
#include "Server/Scene/ViewFragment.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Commands/Documents/CaptureView.h"
#include "UI/Commands/Localized.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <array>
#include <cwctype>
#include <sys/wait.h>

namespace Vu::Commands {
namespace {

namespace fs = boost::filesystem;

constexpr const char* kPicturesPerSecond = "25";
constexpr std::array<std::wstring_view, 3> kFilms = {L".mp4", L".webm", L".gif"};
constexpr std::array<std::wstring_view, 3> kPictures = {L".png", L".jpg", L".tif"};

/// Puts a camera back where it was.
class CameraGuard
{
public:
    explicit CameraGuard(Vs::Scene::Camera& camera) : m_camera(camera), m_before(camera) {}
    ~CameraGuard() { m_before.applyTo(m_camera); }
    CameraGuard(const CameraGuard&) = delete;
    CameraGuard& operator=(const CameraGuard&) = delete;

    /// As if the model had turned by an angle.
    void turn(double angle, const GkVector3d& up, const GkPoint3d& middle) const
    {
        const GkMatrix3d around = GkMatrix3d::rotation(angle, up, middle);
        Vs::Scene::CameraParameters turned = m_before;
        turned.position = around * m_before.position;
        turned.target = around * m_before.target;
        turned.up = around * m_before.up;
        turned.applyTo(m_camera);
    }

private:
    Vs::Scene::Camera& m_camera;
    Vs::Scene::CameraParameters m_before;
};

fs::path numbered(const fs::path& folder, const std::wstring& name, int number, const std::wstring& suffix)
{
    std::wstring digits = std::to_wstring(number);
    digits.insert(0, 4 - std::min<size_t>(4, digits.size()), L'0');
    return folder / (name + L"-" + digits + suffix);
}

bool drawAll(GraphicsView& view, const fs::path& folder, const std::wstring& name, const std::wstring& suffix,
             int pictures, const ImageOptions& options, Vs::Status& status)
{
    Vs::Scene::ViewFragment* model = view.modelFragment();
    const CameraGuard camera(*model->camera());
    const GkVector3d up = model->renderParams()->groundPlaneOrientation();
    const GkPoint3d middle = model->bounds().centre();
    Vs::ProgressScope progress(localized("TurntableProgress", "Drawing pictures from all sides"));
    for (int i = 0; i < pictures; ++i) {
        if (!progress.update(double(i) / pictures, {})) {
            status.addError(localized("TurntableCancelled", "The pictures were cancelled."));
            return false;
        }
        camera.turn(2 * 3.14159265358979323846 * i / pictures, up, middle);
        Vs::ImageResource file(numbered(folder, name, i + 1, suffix).wstring());
        if (!captureView(view, file, options, status))
            return false;
    }
    return true;
}

/// What formats need: few players show other pixels in a film, and a .gif has colours of its own.
std::vector<std::string> formatArguments(const std::wstring& suffix)
{
    if (suffix == L".gif")
        return {"-vf", "split[a][b];[a]palettegen[p];[b][p]paletteuse"};
    return {"-pix_fmt", "yuv420p", "-vf", "pad=ceil(iw/2)*2:ceil(ih/2)*2"};
}

bool makeFilm(const fs::path& frames, const fs::path& film, const std::wstring& suffix, Vs::Status& status)
{
    // Made beside its place, so that one that fails doesn't replace an older one.
    const fs::path made = frames / ("film" + Vs::Strings::narrow(suffix));
    Vs::ChildSetup setup;
    setup.program = "ffmpeg";
    setup.arguments = {"-nostdin",   "-y",
                       "-loglevel",  "error",
                       "-framerate", kPicturesPerSecond,
                       "-i",         (frames / "frame-%04d.png").string()};
    for (const std::string& argument : formatArguments(suffix))
        setup.arguments.push_back(argument);
    setup.arguments.push_back(made.string());
    setup.isSilent = true;
    Vs::ChildProcess ffmpeg;
    if (ffmpeg.start(setup) != 0) {
        status.addError(localized("TurntableNoFfmpeg",
                                  "A film needs the program ffmpeg, which isn't installed; pictures (.png) "
                                  "don't."));
        return false;
    }
    while (!ffmpeg.endsWithin(std::chrono::milliseconds(50))) {
        Vs::Progress::keepAlive();
        if (Vs::Progress::cancelled()) {
            status.addError(localized("TurntableCancelled", "The pictures were cancelled."));
            return false;
        }
    }
    const std::optional<int> state = ffmpeg.collect();
    boost::system::error_code error;
    if (!state || *state != 0 || !fs::is_regular_file(made, error)) {
        status.addError(
            localizedFormat("TurntableFilmFailed", "ffmpeg could not make \"%1%\".", film.wstring()));
        return false;
    }
    fs::copy_file(made, film, fs::copy_options::overwrite_existing, error);
    if (error)
        status.addError(localizedFormat("TurntableNotWritten", "\"%1%\" can't be written: %2%.",
                                        film.wstring(), Vs::Strings::widen(error.message())));
    return !error;
}

bool mayBeWritten(const fs::path& folder, Vs::Status& status)
{
    boost::system::error_code error;
    if (fs::is_directory(folder.empty() ? "." : folder, error))
        return true;
    status.addError(localizedFormat("TurntableNoFolder", "There is no folder \"%1%\".", folder.wstring()));
    return false;
}

} // namespace

int makeTurntable(GraphicsView& view, const std::wstring& path, int pictures, const ImageOptions& options,
                  Vs::Status& status)
{
    const fs::path whole = fs::absolute(path);
    std::wstring suffix = whole.extension().wstring();
    std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                   [](wchar_t letter) { return wchar_t(std::towlower(wint_t(letter))); });
    const bool film = std::ranges::find(kFilms, suffix) != kFilms.end();
    if (!film && std::ranges::find(kPictures, suffix) == kPictures.end()) {
        status.addError(localizedFormat("TurntableSuffix",
                                        "\"%1%\" must end in .png, .jpg or .tif for pictures, or in .mp4, "
                                        ".webm or .gif for a film.",
                                        path));
        return 0;
    }
    if (!view.modelFragment() || !mayBeWritten(whole.parent_path(), status))
        return 0;
    if (!film)
        return drawAll(view, whole.parent_path(), whole.stem().wstring(), suffix, pictures, options, status)
                   ? pictures
                   : 0;
    const Vs::ScratchFolder frames;
    if (frames.path().empty()) {
        status.addError(localizedFormat("TurntableNoScratch",
                                        "No folder for the pictures of the film can be made in %1%.",
                                        Vs::Strings::widen(frames.why())));
        return 0;
    }
    const bool done = drawAll(view, frames.path(), L"frame", L".png", pictures, options, status) &&
                      makeFilm(frames.path(), whole, suffix, status);
    return done ? pictures : 0;
}

} // namespace Vu::Commands
