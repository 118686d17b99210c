#include "Server/DataModel/Exchange/ForeignTranslator.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Progress.h"
#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/Body/Body.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/Exchange/ExportedMeshes.h"
#include "Server/DataModel/Exchange/ForeignImport.h"
#include "Server/DataModel/Exchange/ImportCache.h"
#include "Server/DataModel/Exchange/MeshExport.h"
#include "Server/DataModel/Exchange/Private/ScratchFile.h"
#include "Server/DataModel/Exchange/WantedParts.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/NewFile.h"
#include "Server/DataModel/Private/ProgressText.h"
#include "Server/DataModel/Transaction.h"
#include "Server/Types/LengthUnit.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace Vs::Exchange {

namespace {

using Save = ForeignTranslator::Save;

// clang-format off
const ForeignTranslator::Row kRows[] = {
    //  format        saved         identifier        name                  extensions, the preferred one first
    {Format::Step, Save::Worker, "StepTranslator", L"STEP Files",        {L".stp", L".step"},  {.unit = true}},
    {Format::Iges, Save::Worker, "IgesTranslator", L"IGES Files",        {L".igs", L".iges"},  {.unit = true}},
    {Format::Brep, Save::Worker, "BrepTranslator", L"BREP Files",        {L".brep", L".brp"},  {}},
    {Format::Stl,  Save::Mesh,   "StlTranslator",  L"STL Files",         {L".stl"},            {true, true, true, true}},
    {Format::Obj,  Save::Mesh,   "ObjTranslator",  L"OBJ Files",         {L".obj"},            {true, true, false, true}},
    {Format::Gltf, Save::Mesh,   "GltfTranslator", L"glTF Files",        {L".gltf"},           {.refinement = true}},
    {Format::Glb,  Save::Mesh,   "GlbTranslator",  L"glTF Binary Files", {L".glb"},            {.refinement = true}},
    {Format::Vrml, Save::None,   "VrmlTranslator", L"VRML Files",        {L".wrl", L".vrml"},  {}},
};
// clang-format on

std::wstring fileName(const std::wstring& path)
{
    return boost::filesystem::path(path).filename().wstring();
}

bool insertInto(Asset& asset, const ModelFile& model, const std::wstring& path, Status& status)
{
    try {
        const std::unique_ptr<ModelKernel> parts = ModelKernel::read(model.kernelData());
        Transaction transaction(&asset, L"Import " + fileName(path));
        asset.data().history().changeModel([&](ModelKernel& kernel) { kernel.insert(*parts); });
        transaction.commit();
        return true;
    } catch (const std::runtime_error& error) {
        status.addError(L"\"" + path + L"\" can't be inserted: " + Strings::widen(error.what()) + L".");
        return false;
    }
}

const LengthUnit& unitOf(TranslatorSaveOptions& options)
{
    if (const LengthUnit* unit = LengthUnit::find(options.unit()))
        return *unit;
    return options.exportInDisplayUnit() ? LengthUnit::display() : LengthUnit::all().front();
}

// The room that the model's exact data may take.
uint64_t roomFor(const Asset& asset)
{
    constexpr uint64_t kUnknown = uint64_t(64) << 20;
    const ModelSource& source = asset.data().source();
    return source.file ? std::max(source.file->size(), kUnknown) : kUnknown;
}

std::vector<std::string> argumentsFor(Format format, const Asset& asset, const std::string& data,
                                      const std::string& target, TranslatorSaveOptions& options)
{
    std::vector<std::string> arguments{"export", keyOf(format), data, target};
    if (options.combineSolids())
        arguments.push_back("--combine=" +
                            std::filesystem::path(Strings::narrow(options.fileName())).stem().string());
    arguments.push_back(std::string("--unit=") + unitOf(options).key);
    std::string name = Strings::narrow(asset.document()->displayName());
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return c < ' '; }, ' ');
    arguments.push_back("--document=" + name);
    arguments.push_back("--software=Quillet " + SoftwareVersion::currentSoftwareVersion());
    return arguments;
}

/// The exact data of those components alone.
void writeData(Asset& asset, const WantedParts& wanted, std::ostream& stream)
{
    ModelSource& source = asset.data().source();
    if (wanted.isWhole()) {
        if (source.file && !source.kernelLoaded())
            stream << source.file->kernelData();
        else
            source.withKernel([&](ModelKernel& kernel) { kernel.write(stream); });
        return;
    }
    const std::unique_ptr<ModelKernel> parts = ModelKernel::create();
    source.withKernel([&](ModelKernel& kernel) {
        parts->begin();
        parts->paste(kernel, wanted.tops());
        parts->commit();
    });
    parts->begin();
    parts->remove(wanted.unwanted(parts->tree()));
    parts->commit();
    parts->write(stream);
}

} // namespace

const std::vector<Translator*>& ForeignTranslator::all()
{
    static const std::vector<Translator*> translators = [] {
        std::vector<Translator*> made;
        static std::vector<std::unique_ptr<ForeignTranslator>> owned;
        for (const Row& row : kRows) {
            owned.push_back(std::make_unique<ForeignTranslator>(row));
            made.push_back(owned.back().get());
        }
        return made;
    }();
    return translators;
}

bool ForeignTranslator::open(TranslatorOpenOptions& options, TranslatorContext& context, Status& status)
{
    context.document(nullptr);
    Asset* target = context.asset() ? context.asset() : DocumentMgr::get()->activeAsset();
    if (!context.open() && !target) {
        status.addError(L"There is no model that \"" + options.fileName() + L"\" could be inserted into.");
        return false;
    }
    ForeignImport import(PathInfo::absolute(options.fileName()).wstring());
    import.strict(options.isStrict());
    {
        ProgressScope progress(ProgressText::opening(options.fileName()));
        ForeignImport* imports[] = {&import};
        ForeignImport::run(imports, importCache(), [&](double fraction, const std::wstring& step) {
            return progress.update(fraction, step);
        });
    }
    status.merge(import.status());
    if (!import.model())
        return false;
    if (!context.open())
        return insertInto(*target, *import.model(), options.fileName(), status);
    context.document(DocumentMgr::get()->createFromModel(import.path(), import.model(), status));
    return context.document() != nullptr;
}

bool ForeignTranslator::save(TranslatorSaveOptions& options, TranslatorContext& context, Status& status)
{
    Asset* asset = context.asset() ? context.asset() : DocumentMgr::get()->activeAsset();
    if (!asset) {
        status.addError(L"There is no model that \"" + options.fileName() + L"\" could hold.");
        return false;
    }
    if (m_row.save == Save::None) {
        status.addError(L"\"" + options.fileName() + L"\" is of a format that can't be written.");
        return false;
    }
    if (m_row.save != Save::Mesh)
        return saveByWorker(*asset, options, status);
    const WantedParts wanted(*asset->components(), options);
    if (!wanted.root()) {
        status.addError(L"\"" + options.fileName() + L"\" can't be written: " + WantedParts::kNothing + L".");
        return false;
    }
    ProgressScope progress(ProgressText::writing(options.fileName()));
    const MeshExport job{
        *wanted.root(),
        options.fileName(),
        options.refinement(),
        unitOf(options),
        options.combineSolids(),
        options.asText(),
        options.upAxis(),
        [&](double fraction) { return progress.update(fraction, ProgressText::step("writing triangles")); }};
    switch (m_row.format) {
    case Format::Stl:
        return writeStl(job, status);
    case Format::Obj:
        return writeObj(job, status);
    default:
        return writeGltf(job, m_row.format == Format::Glb, status);
    }
}

uint64_t ForeignTranslator::countTriangles(TranslatorSaveOptions& options, TranslatorContext& context,
                                           const std::function<bool()>& goOn) const
{
    const Asset* asset = context.asset() ? context.asset() : DocumentMgr::get()->activeAsset();
    if (!asset || m_row.save != Save::Mesh)
        return 0;
    const WantedParts wanted(*asset->components(), options);
    if (!wanted.root())
        return 0;
    const MeshExport job{.root = *wanted.root(),
                         .path = {},
                         .refinement = options.refinement(),
                         .unit = unitOf(options),
                         .watch = [&](double) { return goOn(); }};
    try {
        ExportedMeshes meshes;
        return meshes.make(job) ? meshes.triangles() : 0;
    } catch (const std::runtime_error&) {
        return 0;
    }
}

// The kernel's writers are as large as its readers, and stay in the worker with them.
bool ForeignTranslator::saveByWorker(Asset& asset, TranslatorSaveOptions& options, Status& status) const
{
    const std::wstring& path = options.fileName();
    const auto fault = [&](const std::wstring& cause) {
        status.addError(L"\"" + path + L"\" " + cause + L".");
        return false;
    };
    try {
        if (asset.components()->children.empty())
            return fault(L"can't be written: there is nothing in the model");
        const WantedParts wanted(*asset.components(), options);
        if (!wanted.root())
            return fault(std::wstring(L"can't be written: ") + WantedParts::kNothing);
        // The worker goes to the file's folder.
        NewFile file(PathInfo::absolute(path).wstring());
        const ScratchFile data(importCache().scratchPath(roomFor(asset)));
        {
            std::ofstream stream(data.path(), std::ios::binary);
            writeData(asset, wanted, stream);
            if (!stream.flush())
                return fault(L"can't be written: there is no room for the model's data");
        }
        Worker worker(workerOf(m_row.format),
                      argumentsFor(m_row.format, asset, data.path(), file.scratch(), options),
                      WorkerLimits::forFile(std::filesystem::file_size(data.path()) * 10));
        ProgressScope progress(ProgressText::writing(path));
        Worker* workers[] = {&worker};
        Worker::run(workers,
                    [&] { return progress.update(worker.fraction(), ProgressText::step(worker.step())); });
        if (worker.end() == Worker::End::Cancelled)
            return false;
        if (worker.end() != Worker::End::Done)
            return fault(worker.end() == Worker::End::Failed
                             ? Strings::widen(worker.fault())
                             : L"can't be written: " + Strings::widen(worker.fault()));
        file.commit();
        return true;
    } catch (const std::runtime_error& error) {
        return fault(L"can't be written: " + Strings::widen(error.what()));
    }
}

} // namespace Vs::Exchange
