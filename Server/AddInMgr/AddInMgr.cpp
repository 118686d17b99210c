#include "Server/AddInMgr/AddInMgr.h"

#include "Server/AddInMgr/Private/ManifestReader.h"
#include "Server/Base/Exception.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Require.h"
#include "Server/Base/SiblingLibrary.h"
#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <dlfcn.h>
#include <tuple>
#include <utility>

namespace Vs {

namespace fs = boost::filesystem;

namespace {

constexpr const char* kUserInterface = "UI";

/// `UI/*/Configuration/*.xml` and `Server/*/Configuration/*.xml`, sorted. Under UI, a Configuration folder
/// holds only manifests, so an empty one has lost its own.
std::vector<fs::path> manifestFiles(const fs::path& root, Status& status)
{
    std::vector<fs::path> files;
    boost::system::error_code error;
    for (const char* side : {"Server", kUserInterface})
        for (fs::directory_iterator folder(root / side, error), end; !error && folder != end;
             folder.increment(error)) {
            boost::system::error_code none; // Most folders have no Configuration.
            const fs::path configuration = folder->path() / "Configuration";
            const size_t before = files.size();
            for (fs::directory_iterator file(configuration, none); !none && file != end; file.increment(none))
                if (file->path().extension() == ".xml")
                    files.push_back(file->path());
            if (files.size() == before && side == kUserInterface && fs::is_directory(configuration, none))
                status.addError(configuration.wstring() + L": The manifest of the add-in is missing.");
        }
    std::sort(files.begin(), files.end());
    return files;
}

std::wstring lastLoaderError()
{
    const char* text = dlerror();
    return Strings::widen(text ? text : "unknown cause");
}

/// While the manifests are read.
class ManifestLibrary : public SiblingLibrary
{
public:
    ManifestLibrary() : SiblingLibrary("libVsManifest10.so", Open::WhileThisLives) {}
};

} // namespace

std::unique_ptr<AddInManifest> AddInMgr::readManifest(const fs::path& root, const fs::path& file,
                                                      Status& status)
{
    const ManifestLibrary library;
    const auto read = library.function<decltype(&vsReadManifest)>("vsReadManifest");
    return std::unique_ptr<AddInManifest>(read(root, file, status));
}

AddInMgr* AddInMgr::get()
{
    static AddInMgr manager;
    return &manager;
}

void AddInMgr::loadAddIns(Status& status)
{
    loadAddIns(PathInfo::rootDirectory(), status);
}

void AddInMgr::loadAddIns(const fs::path& root, Status& status)
{
    assertMainThread();
    const std::vector<fs::path> files = manifestFiles(root, status);
    if (files.empty() && status.isOk())
        status.addError(L"There are no add-ins: no manifest lies in UI/*/Configuration under " +
                        root.wstring() + L'.');
    std::vector<std::unique_ptr<AddInManifest>> manifests;
    const ManifestLibrary kept; // Opened once for all.
    for (const fs::path& file : files)
        if (std::unique_ptr<AddInManifest> manifest = readManifest(root, file, status))
            manifests.push_back(std::move(manifest));
    std::stable_sort(manifests.begin(), manifests.end(), [](const auto& a, const auto& b) {
        return std::forward_as_tuple(a->loadOrder, a->file.filename()) <
               std::forward_as_tuple(b->loadOrder, b->file.filename());
    });
    for (const std::unique_ptr<AddInManifest>& manifest : manifests)
        loadAddIn(root, *manifest, status);
}

bool AddInMgr::loadAddIn(const fs::path& root, const AddInManifest& manifest, Status& status)
{
    const auto refused = [&](const std::wstring& why) {
        status.addError(manifest.file.wstring() + L": The add-in \"" + Strings::widen(manifest.identifier) +
                        L"\" is not loaded: " + why);
        return false;
    };
    const auto twin = std::find_if(m_addIns.begin(), m_addIns.end(), [&](const AddIn& other) {
        return other.manifest.identifier == manifest.identifier;
    });
    if (twin != m_addIns.end())
        return refused(L"there is one of that identifier already, from " + twin->manifest.file.wstring() +
                       L'.');
    for (const std::string& required : manifest.required)
        if (std::none_of(m_addIns.begin(), m_addIns.end(),
                         [&](const AddIn& other) { return other.manifest.identifier == required; }))
            return refused(L"it needs the add-in \"" + Strings::widen(required) +
                           L"\", which is not loaded.");

    const fs::path library = root / "lib" / ("lib" + manifest.library + ".so");
    // Never closed: definitions, identifiers and types of the library may be known elsewhere until the end.
    void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle)
        return refused(lastLoaderError() + L'.');
    const auto entry = reinterpret_cast<GetIAddInFunction>(dlsym(handle, kGetIAddIn));
    if (!entry)
        return refused(L"its library " + library.wstring() + L" does not export " +
                       Strings::widen(kGetIAddIn) + L'.');
    try {
        IAddIn* const object = entry();
        if (!object)
            return refused(L"its library provides no add-in.");
        object->load();
        m_addIns.push_back({manifest, object});
    } catch (const Exception& error) {
        return refused(error.message());
    } catch (const std::exception& error) {
        return refused(Strings::widen(error.what()));
    }
    return true;
}

void AddInMgr::unloadAddIns()
{
    assertMainThread();
    // Removed first, so that an add-in that asks during its own unload finds no half-unloaded ones.
    const std::vector<AddIn> leaving = std::exchange(m_addIns, {});
    for (const bool last : {false, true})
        for (auto addIn = leaving.rbegin(); addIn != leaving.rend(); ++addIn)
            try {
                addIn->object->unload(last);
            } catch (const std::exception& error) {
                // The others must still be unloaded.
                warn(L"The add-in \"" + Strings::widen(addIn->manifest.identifier) +
                     L"\" failed to unload: " + Strings::widen(error.what()));
            }
}

} // namespace Vs
