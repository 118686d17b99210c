#include "Server/DataModel/Native/NativeLoad.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Server/DataModel/Native/Package.h"

#include <algorithm>
#include <stdexcept>
#include <tuple>

namespace Vs::Native {

namespace {

std::shared_ptr<const ModelFile> readInPlace(const Manifest::Asset& asset,
                                             const std::shared_ptr<const FileMapping>& file)
{
    if (asset.place == 0)
        return nullptr;
    try {
        auto model = ModelFile::open(file, asset.place, asset.size);
        return model->hash() == asset.hash ? model : nullptr;
    } catch (const std::runtime_error&) {
        return nullptr;
    }
}

// The content is where the manifest says and is mapped there, unless another program packed the file anew.
std::shared_ptr<const ModelFile> readModel(const Manifest::Asset& asset, Package& package)
{
    if (auto model = readInPlace(asset, package.file()))
        return model;
    try {
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

} // namespace

NativeLoad NativeLoad::read(const std::string& path, const Watch& watch)
{
    NativeLoad load;
    load.file = FileMapping::openGuarded(path);
    Package package(load.file);
    load.manifest = Manifest::read(package.read(kManifestName, Package::kMostManifest));
    const size_t count = load.manifest.assets.size();
    for (const Manifest::Asset& asset : load.manifest.assets) {
        if (watch && !watch(double(load.models.size()) / double(count)))
            throw Cancelled();
        Model model;
        if (!asset.part.empty()) {
            model.model = readModel(asset, package);
            model.part = {model.model->file(), model.model->place(), model.model->size(), model.model->hash(),
                          std::nullopt};
        }
        load.models.push_back(std::move(model));
    }
    refuseOverlaps(load.models);
    return load;
}

} // namespace Vs::Native
