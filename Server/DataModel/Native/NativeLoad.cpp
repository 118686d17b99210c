#include "Server/DataModel/Native/NativeLoad.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Server/DataModel/Native/Package.h"
#include "Server/DataModel/Native/ZipReader.h"

#include <algorithm>
#include <set>
#include <stdexcept>
#include <tuple>

namespace Vs::Native {

namespace {

std::shared_ptr<const ModelFile> readInPlace(const Manifest::Asset& asset, const Package& package)
{
    const Packing packing = package.packing(asset.part);
    if (asset.place == 0 || packing.method != 0 || packing.size != asset.size)
        return nullptr;
    try {
        auto model = ModelFile::open(package.file(), asset.place, asset.size);
        return model->hash() == asset.hash ? model : nullptr;
    } catch (const std::runtime_error&) {
        return nullptr;
    }
}

// The content is where the manifest says and is mapped there, unless another program repacked the file.
std::shared_ptr<const ModelFile> readModel(const Manifest::Asset& asset, Package& package)
{
    try {
        if (auto model = readInPlace(asset, package))
            return model;
        const auto unpacked = package.unpack(asset.part);
        auto model = ModelFile::open(unpacked, 0, unpacked->bytes().size());
        if (asset.hash != 0 && asset.hash != model->hash())
            throw std::runtime_error("it isn't the one that was saved");
        return model;
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("the model of \"" + Strings::narrow(asset.name) +
                                 "\" can't be read: " + error.what());
    }
}

// Each model is one asset's alone: a small file could hold any number of copies of one.
void refuseOverlaps(const std::vector<NativeLoad::Model>& models)
{
    using Stretch = std::tuple<const FileMapping*, uint64_t, uint64_t>;
    std::vector<Stretch> stretches;
    for (const NativeLoad::Model& each : models)
        if (each.model)
            stretches.emplace_back(each.model->file().get(), each.model->place(),
                                   each.model->place() + each.model->size());
    std::sort(stretches.begin(), stretches.end());
    const auto overlap = [](const Stretch& first, const Stretch& second) {
        return std::get<0>(first) == std::get<0>(second) && std::get<2>(first) > std::get<1>(second);
    };
    if (std::adjacent_find(stretches.begin(), stretches.end(), overlap) != stretches.end())
        throw std::runtime_error("its table of contents is damaged: two models lie one over the other");
}

// An extra is never a reason to refuse a file: one that is listed and isn't there, or can't be kept under its
// name beside what every file has, is ignored.
void keepOnlyFitting(Manifest& manifest, const Package& package)
{
    std::set<std::string> taken{kTypeName, kManifestName, kThumbnailName};
    std::set<boost::uuids::uuid> assets{{}};
    for (const Manifest::Asset& asset : manifest.assets) {
        taken.insert(asset.part);
        assets.insert(asset.guid);
    }
    std::erase_if(manifest.extras, [&](const Manifest::Extra& extra) {
        return !package.has(extra.entry) || !assets.contains(extra.asset) ||
               !taken.insert(extra.entry).second;
    });
}

} // namespace

NativeLoad NativeLoad::read(const std::string& path, const Watch& watch)
{
    NativeLoad load;
    load.file = FileMapping::openGuarded(path);
    Package package(load.file);
    load.manifest = Manifest::read(package.read(kManifestName, Package::kMostManifest));
    keepOnlyFitting(load.manifest, package);
    load.hasPicture = package.has(kThumbnailName);
    const size_t count = load.manifest.assets.size();
    for (const Manifest::Asset& asset : load.manifest.assets) {
        if (watch && !watch(double(load.models.size()) / double(count)))
            throw Cancelled();
        Model model;
        if (!asset.part.empty()) {
            model.model = readModel(asset, package);
            model.part = {model.model->file(), model.model->place(), model.model->size(), model.model->hash(),
                          package.packing(asset.part).crc};
        }
        load.models.push_back(std::move(model));
    }
    refuseOverlaps(load.models);
    return load;
}

} // namespace Vs::Native
