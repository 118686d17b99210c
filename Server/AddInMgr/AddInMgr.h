#pragma once

#include "Server/AddInMgr/IAddIn.h"
#include "Server/Base/Status.h"

#include <boost/filesystem/path.hpp>

#include <memory>
#include <string>
#include <vector>

namespace Vs {

/// What a manifest says about its add-in.
struct AddInManifest
{
    boost::filesystem::path file;
    std::string identifier;            ///< Unique in the program: "Commands".
    std::vector<std::string> required; ///< The identifiers of the add-ins whose libraries this one links.
    std::string library;               ///< `lib/lib<library>.so` under the application's root.
    std::wstring title;
    std::wstring description;
    int loadOrder = 100; ///< Smaller ones are loaded first; equal ones by the names of their manifests.
};

/// Finds the manifests, loads the add-ins they name, and unloads them. Main thread only.
class AddInMgr
{
public:
    static AddInMgr* get();

    /// Loads every add-in whose manifest is `UI/*/Configuration/*.xml` or `Server/*/Configuration/*.xml`
    /// under the root. An add-in that cannot be loaded becomes one error in the status that names the file,
    /// the line if there is one, and the cause; the others are loaded nevertheless. Finding no manifest at
    /// all is an error.
    void loadAddIns(Status& status);
    void loadAddIns(const boost::filesystem::path& root, Status& status);

    /// Unloads everything in reverse order: `unload(false)` for all, then `unload(true)` for all. The
    /// libraries stay in the process to its end, since their objects may live that long.
    void unloadAddIns();

    struct AddIn
    {
        AddInManifest manifest;
        IAddIn* object; ///< The library's.
    };
    /// The loaded add-ins, in the order of loading.
    const std::vector<AddIn>& addIns() const { return m_addIns; }

    /// Reads one manifest, checked against the schema of the same tree. Null, with one error in the status,
    /// if it is missing, malformed or invalid.
    [[nodiscard]] static std::unique_ptr<AddInManifest>
    readManifest(const boost::filesystem::path& root, const boost::filesystem::path& file, Status& status);

private:
    AddInMgr() = default;
    bool loadAddIn(const boost::filesystem::path& root, const AddInManifest& manifest, Status& status);

    std::vector<AddIn> m_addIns;
};

} // namespace Vs
