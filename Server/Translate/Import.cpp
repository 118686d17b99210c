#include "Server/Translate/Import.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Kernel/Mesher.h"
#include "Server/DataModel/Kernel/XdeTree.h"
#include "Server/DataModel/Model/MeshArrays.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Server/Translate/Family.h"
#include "Server/Translate/Parallel.h"

#include <Standard_Failure.hxx>
#include <TopExp_Explorer.hxx>

#include <algorithm>
#include <atomic>
#include <functional>
#include <malloc.h>
#include <mutex>
#include <numeric>
#include <sstream>
#include <utility>

namespace Vs::Translate {

namespace {

int countFaces(const TopoDS_Shape& shape)
{
    int count = 0;
    for (TopExp_Explorer faces(shape, TopAbs_FACE); faces.More(); faces.Next())
        ++count;
    return count;
}

/// With some numbers no surface or no boundary results, which the kernel doesn't report.
size_t facesWithoutTriangles(const BodyMesh& mesh)
{
    return static_cast<size_t>(
        std::count_if(mesh.faces.begin(), mesh.faces.end(),
                      [](const BodyMesh::Face& face) { return face.triangleCount == 0; }));
}

// Adds the progress of one body's meshing to that of all.
class BodyProgress : public Message_ProgressIndicator
{
public:
    BodyProgress(std::function<void(double)> add) : m_add(std::move(add)) {}
    void Show(const Message_ProgressScope&, const Standard_Boolean) override
    {
        const double position = GetPosition();
        m_add(position - std::exchange(m_told, position));
    }

private:
    std::function<void(double)> m_add;
    double m_told = 0;
};

// Meshes each shape once, the big ones first, and reports progress by faces, which reflect the work better
// than parts do.
std::vector<std::shared_ptr<const BodyMesh>> meshAll(const Kernel::XdeTree& tree, const Reading& reading,
                                                     const std::vector<int>& faces, Reporter& reporter,
                                                     std::vector<std::string>& warnings)
{
    if (reading.early)
        reading.early->finish();
    const auto isMeshed = [&](const TopoDS_Shape& shape) {
        return (reading.early && reading.early->hasMeshed(shape)) ||
               (reading.isMeshed && reading.isMeshed(shape));
    };
    std::vector<std::shared_ptr<const BodyMesh>> meshes(tree.shapes.size());
    std::vector<size_t> order(tree.shapes.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) { return faces[a] > faces[b]; });
    const double total = std::max(1, std::accumulate(faces.begin(), faces.end(), 0));
    std::atomic<double> done = 0;
    std::mutex mutex;
    forEachInParallel(order.size(), [&](size_t i) {
        const size_t body = order[i];
        const TopoDS_Shape& shape = tree.shapes[body];
        std::string fault;
        try {
            if (!shape.IsNull()) {
                const Handle(BodyProgress) progress = new BodyProgress([&](double fraction) {
                    const double added = fraction * faces[body];
                    reporter.progress((done.fetch_add(added) + added) / total);
                });
                if (!isMeshed(shape))
                    Kernel::meshShape(shape, {}, progress->Start());
                meshes[body] =
                    std::make_shared<const BodyMesh>(Kernel::extractMesh(shape, tree.colours[body]));
                if (!MeshArrays::of(*meshes[body]).isSound())
                    fault = "its triangles are damaged";
            }
        } catch (const Standard_Failure& failure) {
            fault = failure.GetMessageString();
        }
        const std::string part = '"' + Strings::narrow(tree.tree.bodies[body].name) + '"';
        if (!fault.empty() || (faces[body] > 0 && (!meshes[body] || meshes[body]->triangles.empty()))) {
            const std::lock_guard lock(mutex);
            warnings.push_back("has a part " + part + " that can't be shown" +
                               (fault.empty() ? "" : ": " + fault));
        } else if (const size_t bare = meshes[body] ? facesWithoutTriangles(*meshes[body]) : 0; bare > 0) {
            const std::lock_guard lock(mutex);
            warnings.push_back("has " + std::to_string(bare) + " of " + std::to_string(faces[body]) +
                               " faces of " + part + " that can't be shown");
        }
    });
    return meshes;
}

} // namespace

void importFile(Exchange::Format format, const std::string& path, const std::string& modelPath,
                const ReadingOptions& options, Reporter& reporter)
{
    Reading reading = readFile(format, path, options, reporter);
    Kernel::XdeTree tree = Kernel::readXdeTree(reading.model->document());
    std::vector<int> faces;
    for (const TopoDS_Shape& shape : tree.shapes)
        faces.push_back(shape.IsNull() ? 0 : countFaces(shape));
    if (std::accumulate(faces.begin(), faces.end(), 0) == 0)
        throw Unreadable(reading.ifEmpty);
    for (PartTree::Node& root : tree.tree.roots)
        if (root.name.empty())
            root.name = Strings::widen(stemOf(path));

    std::vector<std::shared_ptr<const BodyMesh>> meshes = std::move(reading.meshes);
    if (meshes.empty()) {
        // The reader has released the file's content. Left in this thread's heap, that memory would be
        // useless to the meshing threads, which need as much again.
        constexpr size_t kWorthIt = 16 << 20;
        if (mallinfo2().fordblks > kWorthIt)
            malloc_trim(0);
        std::vector<std::string> meshWarnings;
        if (reading.later) {
            // A crash in here is reported under this step's name, and the import is tried again without
            // annotations.
            reporter.stage("reading the annotations", 0.65, 0.9);
            forEachInParallel(2, [&](size_t job) {
                if (job == 0) {
                    reading.later(reading.warnings);
                    reporter.stage("meshing the parts", 0.9, 0.95);
                } else {
                    meshes = meshAll(tree, reading, faces, reporter, meshWarnings);
                }
            });
        } else {
            reporter.stage("meshing the parts", 0.65, 0.95);
            meshes = meshAll(tree, reading, faces, reporter, meshWarnings);
        }
        if (options.isStrict && !meshWarnings.empty())
            throw Unreadable(meshWarnings.front());
        reading.warnings.insert(reading.warnings.end(), meshWarnings.begin(), meshWarnings.end());
    }

    reporter.stage("storing the model", 0.95, 1.0);
    ModelFileWriter writer(modelPath);
    for (const auto& mesh : meshes)
        writer.addMesh(mesh.get());
    std::vector<std::wstring> warnings;
    for (const std::string& warning : reading.warnings)
        warnings.push_back(Strings::widen(warning));
    writer.writeIndex(tree.tree, warnings);
    if (reading.stored.empty()) {
        std::ostringstream exact;
        reading.model->write(exact);
        reading.stored = std::move(exact).str();
    }
    writer.addKernelData(reading.stored);
    writer.finish();
}

} // namespace Vs::Translate
