#include "Server/Translate/Import.h"

#include "Server/Base/Strings.h"
#include "Server/DataModel/Exchange/LostFaces.h"
#include "Server/DataModel/Kernel/Mesher.h"
#include "Server/DataModel/Kernel/PartCount.h"
#include "Server/DataModel/Kernel/XdeTree.h"
#include "Server/DataModel/Model/MeshArrays.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Server/Translate/ExpectedWork.h"
#include "Server/Translate/Family.h"
#include "Server/Translate/MemoryEnd.h"
#include "Server/Translate/Parallel.h"

#include <Standard_Failure.hxx>
#include <Standard_OutOfMemory.hxx>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <malloc.h>
#include <new>
#include <numeric>
#include <sstream>
#include <utility>

namespace Vs::Translate {

namespace {

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

/// The bodies of a file while they become meshes.
class Bodies
{
public:
    Bodies(const Kernel::XdeTree& tree, const Reading& reading) : m_tree(tree), m_reading(reading)
    {
        for (const TopoDS_Shape& shape : tree.shapes)
            m_faces.push_back(shape.IsNull() ? 0 : Kernel::countOf(shape, TopAbs_FACE));
        m_faults.resize(m_faces.size());
        m_order.resize(m_faces.size());
        std::iota(m_order.begin(), m_order.end(), size_t{0});
        std::stable_sort(m_order.begin(), m_order.end(),
                         [&](size_t a, size_t b) { return m_faces[a] > m_faces[b]; });
    }

    size_t faces() const { return std::accumulate(m_faces.begin(), m_faces.end(), size_t{0}); }

    // Each shape once, the big ones first. Progress is by faces, which reflect the work better than parts do.
    void mesh(Reporter& reporter)
    {
        if (m_reading.early)
            m_reading.early->finish();
        const auto total = double(std::max<size_t>(1, faces()));
        std::atomic<double> done = 0;
        forEachInParallel(m_order.size(), [&](size_t i) {
            const size_t body = m_order[i];
            const TopoDS_Shape& shape = m_tree.shapes[body];
            if (shape.IsNull() || isMeshed(shape))
                return;
            const Handle(BodyProgress) progress = new BodyProgress([&](double fraction) {
                const double added = fraction * double(m_faces[body]);
                reporter.progress((done.fetch_add(added) + added) / total);
            });
            try {
                Kernel::meshShape(shape, {}, progress->Start());
            } catch (const Standard_OutOfMemory&) {
                throw;
            } catch (const Standard_Failure& failure) {
                m_faults[body] = failure.GetMessageString();
            }
        });
    }

    /// The meshes, while the model is written beside it: both only look at the shapes.
    std::vector<std::shared_ptr<const BodyMesh>> take(const std::function<void()>& write)
    {
        std::vector<std::shared_ptr<const BodyMesh>> meshes(m_order.size());
        forEachInParallel(m_order.size() + 1, [&](size_t job) {
            if (job == 0) {
                write();
                return;
            }
            const size_t body = m_order[job - 1];
            if (m_tree.shapes[body].IsNull() || !m_faults[body].empty())
                return;
            try {
                meshes[body] = std::make_shared<const BodyMesh>(
                    Kernel::extractMesh(m_tree.shapes[body], m_tree.colours[body]));
                if (!MeshArrays::of(*meshes[body]).isSound())
                    m_faults[body] = "its triangles are damaged";
            } catch (const Standard_Failure& failure) {
                m_faults[body] = failure.GetMessageString();
            }
        });
        return meshes;
    }

    std::vector<std::string> warnings(const std::vector<std::shared_ptr<const BodyMesh>>& meshes) const
    {
        std::vector<std::string> warnings;
        for (const size_t body : m_order) {
            const BodyMesh* const mesh = meshes[body].get();
            const std::string& fault = m_faults[body];
            const size_t all = m_faces[body];
            const bool isNothing = !fault.empty() || !mesh || mesh->triangles.empty();
            const size_t bare = isNothing ? all : facesWithoutTriangles(*mesh);
            if (bare > 0 || !fault.empty())
                warnings.push_back(
                    Exchange::LostFaces{bare, all, Strings::narrow(m_tree.tree.bodies[body].name), true}
                        .warning() +
                    (fault.empty() ? "" : ": " + fault));
        }
        return warnings;
    }

private:
    bool isMeshed(const TopoDS_Shape& shape) const
    {
        return (m_reading.early && m_reading.early->hasMeshed(shape)) ||
               (m_reading.isMeshed && m_reading.isMeshed(shape));
    }

    const Kernel::XdeTree& m_tree;
    const Reading& m_reading;
    std::vector<size_t> m_faces;
    std::vector<std::string> m_faults; ///< Each of one body alone.
    std::vector<size_t> m_order;
};

std::string exactDataOf(Kernel::XdeModel& model)
{
    std::ostringstream exact;
    model.write(exact);
    return std::move(exact).str();
}

} // namespace

void importFile(Exchange::Format format, const std::string& path, const std::string& modelPath,
                const ReadingOptions& options, Reporter& reporter)
{
    Reading reading = readFile(format, path, options, reporter);
    Kernel::XdeTree tree = Kernel::readXdeTree(reading.model->document());
    Bodies bodies(tree, reading);
    if (bodies.faces() == 0)
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
        if (reading.later) {
            // A crash in here is reported under this step's name, and the import is tried again without
            // annotations.
            reporter.stage("reading the annotations", 0.65, 0.9);
            forEachInParallel(2, [&](size_t job) {
                if (job == 0) {
                    reading.later(reading.warnings);
                    reporter.stage("meshing the parts", 0.9, 0.95);
                } else {
                    bodies.mesh(reporter);
                }
            });
        } else {
            reporter.stage("meshing the parts", 0.65, 0.95);
            bodies.mesh(reporter);
        }
        meshes = bodies.take([&] { reading.stored = exactDataOf(*reading.model); });
        const std::vector<std::string> warnings = bodies.warnings(meshes);
        // The kernel leaves out what it has no memory for.
        if (!warnings.empty() && isMemoryShort())
            throw std::bad_alloc();
        if (options.isStrict && !warnings.empty())
            throw Unreadable(warnings.front());
        reading.warnings.insert(reading.warnings.end(), warnings.begin(), warnings.end());
    }

    reporter.stage("storing the model", 0.95, 1.0);
    ModelFileWriter writer(modelPath);
    for (const auto& mesh : meshes)
        writer.addMesh(mesh.get());
    std::vector<std::wstring> warnings;
    for (const std::string& warning : reading.warnings)
        warnings.push_back(Strings::widen(warning));
    writer.writeIndex(tree.tree, warnings);
    if (reading.stored.empty())
        reading.stored = exactDataOf(*reading.model);
    writer.addKernelData(reading.stored);
    writer.finish();
}

} // namespace Vs::Translate
