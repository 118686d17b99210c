#include "Server/Scene/Rendra/Frame.h"

#include "Server/Scene/Rendra/BufferOffset.h"

#include <algorithm>
#include <iterator>

namespace Rendra {

namespace {

bool isOf(const Batch& batch, Frame::Materials materials)
{
    return materials == Frame::Materials::Ignored ||
           batch.finished == (materials == Frame::Materials::OfSome);
}

/// Of the program that was current when it was made.
class FinishUniforms
{
public:
    explicit FinishUniforms(Frame::Materials materials)
    {
        if (materials != Frame::Materials::OfSome)
            return;
        GLint program = 0;
        glGetIntegerv(GL_CURRENT_PROGRAM, &program);
        m_finish = glGetUniformLocation(GLuint(program), "finish");
        m_emission = glGetUniformLocation(GLuint(program), "emission");
    }
    void set(const Vs::Finish& finish) const
    {
        if (m_finish >= 0)
            glUniform2f(m_finish, finish.isKnown ? finish.metallic : -1, finish.roughness);
        if (m_emission >= 0)
            glUniform3fv(m_emission, 1, finish.emissive.data());
    }

private:
    GLint m_finish = -1, m_emission = -1;
};

} // namespace

Area intersection(const Area& a, const Area& b)
{
    const int left = std::max(a.x, b.x), bottom = std::max(a.y, b.y);
    const int right = std::min(a.x + a.width, b.x + b.width), top = std::min(a.y + a.height, b.y + b.height);
    return {left, bottom, std::max(0, right - left), std::max(0, top - bottom)};
}

void Frame::drawIntoPicture() const
{
    glBindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
    glViewport(part.x - tile.x, part.y - tile.y, part.width, part.height);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDepthMask(GL_TRUE);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDisable(GL_BLEND);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
}

void Frame::setView(const Program& program, const Area& into) const
{
    program.use();
    const GkMatrix3d view = projection.view() * GkMatrix3d::translation(scene.list.origin());
    program.setMatrix("view", view.entry);
    double clip[4][4];
    clipMatrix(into, clip);
    program.setMatrix("projection", clip);
    glUniform1i(program.uniform("perspective"), projection.perspective());
}

void Frame::clipMatrix(const Area& into, double (&rows)[4][4]) const
{
    const double left = into.x - area.x - target.shiftX, bottom = into.y - area.y - target.shiftY;
    projection.clipMatrix(rows, left / area.width, bottom / area.height, (left + into.width) / area.width,
                          (bottom + into.height) / area.height);
}

void Frame::sceneToClip(double (&rows)[4][4]) const
{
    const GkMatrix3d view = projection.view() * GkMatrix3d::translation(scene.list.origin());
    double clip[4][4];
    clipMatrix(part, clip);
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column) {
            rows[row][column] = 0;
            for (int i = 0; i < 4; ++i)
                rows[row][column] += clip[row][i] * view.entry[i][column];
        }
}

HighlightColours::HighlightColours(const Vs::Scene::Environment& environment)
{
    const bool dark = environment.isDark();
    // One is twice as bright as the other, for users who can't distinguish hues.
    const float near[2][3] = {{0.10f, 0.50f, 0.90f}, {0.62f, 0.84f, 1.00f}};
    const float chosen[2][3] = {{0.00f, 0.20f, 0.66f}, {0.15f, 0.50f, 1.00f}};
    std::copy(std::begin(near[dark]), std::end(near[dark]), pointed);
    std::copy(std::begin(chosen[dark]), std::end(chosen[dark]), selected);
}

void Frame::setHighlights(const Program& program) const
{
    const HighlightColours colours(environment);
    glUniform1i(program.uniform("tinted"),
                target.selectionEffect != kSimplifiedEffect && target.selectionEffect != kNoEffect);
    constexpr float kCover = 0.2f, kCoverAlone = 0.5f;
    glUniform1f(program.uniform("cover"), target.selectionEffect == kNormalEffect ? kCover : kCoverAlone);
    glUniform3fv(program.uniform("pointedColour"), 1, colours.pointed);
    glUniform3fv(program.uniform("selectedColour"), 1, colours.selected);
}

void Frame::setLight(const Program& program) const
{
    light.set(program,
              EnvironmentLight::orientation(params().groundPlaneOrientation()) * projection.view().inverse(),
              target.exposure);
}

float Frame::lineWidth(float wanted) const
{
    float widths[2] = {1, 1};
    glGetFloatv(target.samples > 1 ? GL_SMOOTH_LINE_WIDTH_RANGE : GL_ALIASED_LINE_WIDTH_RANGE, widths);
    return std::clamp(wanted, widths[0], widths[1]);
}

// In software, triangles smaller than a pixel are most of the work. What is kept or stands out has them all.
bool Frame::maySmooth(const Batch& batch) const
{
    return software && target.shiftX == 0 && target.pixelScale == 1 && batch.lit == 0 &&
           std::ranges::none_of(scene.list.partlyLit(),
                                [&](const PartlyLit& lit) { return lit.slot->batch == &batch; });
}

const GlMesh& Frame::meshOf(const Batch& batch, const InstanceStore::Range& range) const
{
    using Form = MeshStore::Form;
    const std::shared_ptr<const Vs::BodyMesh>& shown = coarse ? batch.mesh : shownOf(batch);
    if (!coarse && !maySmooth(batch))
        return meshes.get(shown, statistics.uploadedMeshes);
    const size_t triangles = shown->triangles.size() / 3;
    const GkVector3d size = shown->bounds.high() - shown->bounds.low();
    const double pixels = range.pixels * std::max({size.x, size.y, size.z}) / std::max(size.length(), 1e-30);
    // Reducing moves faces by less than half a pixel. It takes longest, and on what is large its facets would
    // be seen.
    constexpr double kDeviation = 0.5, kMostPixels = 250;
    constexpr size_t kFewestToReduce = 40, kMostToReduce = 100000;
    const bool reduces = !coarse && pixels <= kMostPixels && triangles <= kMostToReduce;
    // On a smooth surface, what is within cells of that size moves by a quarter of a pixel at most.
    constexpr double kCellPixels = 5 * 1.4, kSmoothCellPixels = 3;
    constexpr int kFewestCells = 4, kMostCells = 512;
    const double cellPixels = coarse ? kCellPixels : reduces ? kDeviation : kSmoothCellPixels;
    int cells = kFewestCells;
    while (cells * cellPixels < pixels && cells <= kMostCells)
        cells *= 2;
    // A surface has hardly more triangles than that in so many cells: a mesh with fewer is coarse already.
    const size_t fewest = reduces ? kFewestToReduce : size_t(cells) * size_t(cells) * 5;
    if (cells > kMostCells || triangles <= fewest)
        return meshes.get(shown, statistics.uploadedMeshes);
    return meshes.coarser(shown,
                          coarse    ? Form::Coarse
                          : reduces ? Form::Reduced
                                    : Form::Smoothed,
                          cells, statistics.uploadedMeshes);
}

bool Frame::showsGlass() const
{
    for (size_t i = 0; i < scene.list.batches().size(); ++i)
        if (scene.list.batches()[i]->transparent && scene.instances.ranges()[i].count > 0)
            return true;
    return false;
}

bool Frame::shows(Materials materials) const
{
    for (size_t i = 0; i < scene.list.batches().size(); ++i)
        if (isOf(*scene.list.batches()[i], materials) && scene.instances.ranges()[i].count > 0)
            return true;
    return false;
}

void Frame::drawFaces(Faces which, Materials materials, Sides sides) const
{
    const auto isMeant = [&](const Batch& batch) {
        return isOf(batch, materials) &&
               (which == Faces::OfMixed ? batch.mixed : batch.transparent == (which != Faces::OfOpaque));
    };
    const FinishUniforms uniforms(materials);
    for (size_t i = 0; i < scene.list.batches().size(); ++i) {
        const Batch& batch = *scene.list.batches()[i];
        const InstanceStore::Range& range = scene.instances.ranges()[i];
        if (!isMeant(batch) || range.count == 0)
            continue;
        const GlMesh& mesh = meshOf(batch, range);
        // Half of the triangles of a solid face away; culling them early saves most in software.
        const bool outsideOnly =
            mesh.closed && batch.mirrored == 0 &&
            (which == Faces::OfOpaque || (which == Faces::FrontsOfGlass && !batch.mixed));
        glBindVertexArray(mesh.faceArray);
        InstanceStore::bind(range);
        const size_t indexSize = mesh.indexType == GL_UNSIGNED_SHORT ? sizeof(uint16_t) : sizeof(uint32_t);
        for (const GlMesh::Run& run : mesh.runs) {
            const bool oneSided = run.finish.isOneSided() && sides == Sides::AsSeen;
            outsideOnly || oneSided ? glEnable(GL_CULL_FACE) : glDisable(GL_CULL_FACE);
            if (batch.turned)
                glCullFace(oneSided ? GL_FRONT : GL_BACK);
            uniforms.set(run.finish);
            glDrawElementsInstanced(GL_TRIANGLES, run.count, mesh.indexType,
                                    bufferOffset(size_t(run.first) * indexSize), range.count);
            ++statistics.drawCalls;
        }
        if (batch.turned)
            glCullFace(GL_BACK);
        statistics.triangles += uint64_t(mesh.indexCount / 3) * uint64_t(range.count);
    }
    glDisable(GL_CULL_FACE);
}

} // namespace Rendra
