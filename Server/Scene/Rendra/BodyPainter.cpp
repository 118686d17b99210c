#include "Server/Scene/Rendra/BodyPainter.h"

#include "Server/Scene/Rendra/CommonShaders.h"
#include "Server/Scene/Rendra/FaceShaders.h"
#include "Server/Scene/Rendra/GlassShaders.h"
#include "Server/Scene/Rendra/ScreenBounds.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Rendra {

namespace {

/// The radius of ambient occlusion, as a fraction of the scene's size.
constexpr double kOcclusionReach = 0.05;

// On faces, edges are dark whatever is behind.
const EdgePainter::Look kLookOnFaces{
    .colour = {0.10f, 0.115f, 0.14f, 0.88f}, .dashPixels = 0, .onFaces = true};
constexpr float kHiddenOpacity = 0.34f;
/// A dash and the gap after it, in pixels of the picture.
constexpr float kDashPixels = 9;

/// The margin around transparent geometry, for the lines on it; and the maximum number of boxes examined to
/// determine where it is.
constexpr int kLineMargin = 4;
constexpr size_t kMostBoxes = 4000;

/// What a visual style draws.
struct Style
{
    bool faces = false;       ///< Lit faces.
    bool depthOnly = false;   ///< Faces that are invisible, but hide what is behind them.
    bool edges = false;       ///< Edges that nothing hides.
    bool hiddenEdges = false; ///< The others, faintly.
    bool outlines = false;    ///< Silhouettes of round faces.
};

Style styleOf(int visualStyle)
{
    switch (visualStyle) {
    case Vs::Scene::kShaded:
    case Vs::Scene::kRealistic:
        return {.faces = true};
    case Vs::Scene::kShadedWithHiddenEdges:
        return {.faces = true, .edges = true, .hiddenEdges = true, .outlines = true};
    case Vs::Scene::kWireframe:
        return {.edges = true, .outlines = true};
    case Vs::Scene::kWireframeWithHiddenEdges:
        return {.depthOnly = true, .edges = true, .hiddenEdges = true, .outlines = true};
    case Vs::Scene::kWireframeWithVisibleEdges:
        return {.depthOnly = true, .edges = true, .outlines = true};
    case Vs::Scene::kHelpersOnly:
        return {};
    default:
        return {.faces = true, .edges = true, .outlines = true};
    }
}

/// Whoever chooses one sample per pixel wants speed: of glass, the mean of all layers is then enough.
bool isFine(const Frame& frame)
{
    return frame.target.samples > 1 || frame.target.pixelScale > 1;
}

/// Where the depths for a part of the picture are drawn: its lower left corner in pixels of the framebuffer,
/// but its size in pixels of the picture.
Area occlusionArea(const Area& part, int pixelScale)
{
    const auto length = [&](int pixels) {
        return (pixels + pixelScale - 1) / pixelScale + 2 * Occlusion::kMargin;
    };
    const int margin = Occlusion::kMargin * pixelScale;
    return {part.x - margin, part.y - margin, length(part.width), length(part.height)};
}

Occlusion::Source sourceOf(const Frame& frame, const Area& depths, double radius, bool lit)
{
    const Vs::Scene::Projection& projection = frame.projection;
    Occlusion::Source source;
    source.scene = frame.scene.root;
    source.shapes = frame.scene.list.shapeRevision();
    for (size_t row = 0; row < 3; ++row)
        for (size_t column = 0; column < 4; ++column)
            source.view[row * 4 + column] = projection.view().entry[row][column];
    source.lens = {double(projection.perspective()),
                   projection.halfWidth(),
                   projection.halfHeight(),
                   projection.clipNear(),
                   projection.clipFar(),
                   double(depths.x - frame.area.x),
                   double(depths.y - frame.area.y),
                   double(frame.area.width),
                   double(frame.area.height),
                   radius,
                   frame.coarse ? 1e9 : double(frame.smallest)};
    if (lit) {
        const GkVector3d& to = frame.scene.lit.toLamp;
        source.toLamp = {to.x, to.y, to.z};
    }
    return source;
}

/// Where bodies are, in pixels of the depths.
Area occludedArea(const Frame& frame, const Area& depths)
{
    const BBox bounds = frame.fragment.viewFragmentNode()->boundingBox();
    const GkVector3d middle = bounds.centre().asVector() - frame.scene.list.origin();
    const GkVector3d half = (bounds.high() - bounds.low()) * 0.5;
    ScreenBounds onScreen(frame);
    onScreen.add(
        {{float(middle.x), float(middle.y), float(middle.z)}, {float(half.x), float(half.y), float(half.z)}});
    const int scale = frame.target.pixelScale;
    const Area seen = onScreen.area(scale);
    return {(seen.x - depths.x) / scale, (seen.y - depths.y) / scale, seen.width / scale + 1,
            seen.height / scale + 1};
}

} // namespace

bool BodyPainter::make(Vs::Status& status)
{
    return makeFaces(kPlainFaces, status) && m_edges.make(status);
}

bool BodyPainter::makeFaces(unsigned kind, Vs::Status& status)
{
    using namespace Shaders;
    m_triedFaces[kind] = true;
    const char* const glass = kind & kGlassFaces ? "#define GLASS\n" : "";
    const char* const finished = kind & kFinishedFaces ? "#define FINISHED\n" : "";
    const char* const finish = kind & kFinishedFaces ? kFinish : "";
    if (kind & kQuickFaces)
        return m_faces[kind].make("quick faces",
                                  {glass, finished, finish, kInstance, kFaceColours, kSurroundings,
                                   ObjectShadow::kNoLookUp, kPlainLight, kFaceFinish, kQuickFaceVertex},
                                  {glass, kFaceResult, kQuickFaceFragment}, status);
    const bool realistic = kind & kRealisticFaces;
    return m_faces[kind].make(
        "faces", {glass, kInstance, kFaceColours, kFaceVertex},
        {glass, finished, realistic ? "#define REALISTIC\n" : "",
         kind & kOccludedFaces ? "#define OCCLUDED\n" : "", kind & kSoftFaces ? "#define FOUND\n" : "",
         finish, kSurroundings, kind & kShadowedFaces ? ObjectShadow::kPlaces : "",
         kind & kShadowedFaces ? ObjectShadow::kLookUp : ObjectShadow::kNoLookUp,
         realistic ? kRealisticLight : kPlainLight, kFaceFinish, kFaceResult, kFaceFragment},
        status);
}

void BodyPainter::release()
{
    for (Program& program : m_faces)
        program.release();
    m_edges.release();
    m_occlusion.release();
    m_shadows.release();
    m_mirror.release();
    m_glass.release();
    m_hidden.release();
}

void BodyPainter::draw(const Frame& frame)
{
    if (frame.scene.list.instances() == 0)
        return;
    const Style style = styleOf(frame.params().visualStyle());
    frame.statistics.unlined =
        frame.statistics.unlined || !style.outlines || frame.coarse || !EdgePainter::linesAll(frame);
    const bool occluded = frame.target.effects && style.faces && findOcclusion(frame);
    frame.drawIntoPicture();
    bool hides = false;
    if (style.faces || style.depthOnly) {
        // Bodies that are hidden here throw shadows as well, which are found before these are left out.
        if (style.faces)
            findShadows(frame);
        hides = m_hidden.begin(frame);
        drawSolids(frame, occluded, style.depthOnly);
        if (hides && m_hidden.findMore(frame))
            drawSolids(frame, occluded, style.depthOnly);
        frame.scene.instances.showInView();
    }

    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    // Without faces, they must contrast with what is behind them.
    EdgePainter::Look look = kLookOnFaces;
    look.onFaces = style.faces;
    if (!style.faces) {
        const Vs::Colour& line = frame.environment.line;
        const float channels[3] = {line.r, line.g, line.b};
        for (int i = 0; i < 3; ++i)
            look.colour[i] = std::pow(channels[i], 1 / 2.2f);
    }
    if (style.hiddenEdges && !frame.coarse) {
        EdgePainter::Look hidden = look;
        hidden.colour[3] = kHiddenOpacity;
        hidden.dashPixels = kDashPixels;
        glDepthFunc(GL_GREATER);
        m_edges.draw(frame, hidden, style.outlines && !style.faces);
        glDepthFunc(GL_LEQUAL);
    }
    if (hides)
        m_hidden.finish(frame);
    if (style.edges && !(frame.coarse && style.faces))
        m_edges.draw(frame, look, style.outlines && !frame.coarse);
    glDepthMask(GL_TRUE);
    glDisable(GL_BLEND);
}

// Faces are pushed back behind the edges that lie in them, and a little more behind transparent ones.
void BodyPainter::drawSolids(const Frame& frame, bool occluded, bool depthOnly)
{
    const FacePrograms faces = useFaces(frame, occluded);
    frame.drawIntoPicture();
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(std::max(1.0f, 0.5f * frame.target.lineWidth + 0.5f), 192.0f);
    if (depthOnly)
        glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    drawOpaqueFaces(frame, faces);
    if (depthOnly)
        drawFaces(frame, faces, Frame::Faces::OfGlass);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDisable(GL_POLYGON_OFFSET_FILL);
}

void BodyPainter::drawFaces(const Frame& frame)
{
    if (!styleOf(frame.params().visualStyle()).faces)
        return;
    drawOpaqueFaces(frame, useFaces(frame, false));
    drawGlass(frame, false);
}

void BodyPainter::drawFaces(const Frame& frame, const FacePrograms& programs, Frame::Faces which,
                            bool opaqueOnly)
{
    const auto draw = [&](const Program* program, Frame::Materials materials) {
        if (!program)
            return;
        program->use();
        if (opaqueOnly)
            glUniform1i(program->uniform("opaqueOnly"), true);
        frame.drawFaces(which, materials);
        if (opaqueOnly)
            glUniform1i(program->uniform("opaqueOnly"), false);
    };
    draw(programs.plain, Frame::Materials::OfNone);
    draw(programs.finished, Frame::Materials::OfSome);
}

void BodyPainter::drawOpaqueFaces(const Frame& frame, const FacePrograms& programs)
{
    drawFaces(frame, programs, Frame::Faces::OfOpaque);
    drawFaces(frame, programs, Frame::Faces::OfMixed, true);
}

void BodyPainter::drawGlass(const Frame& frame)
{
    const Style style = styleOf(frame.params().visualStyle());
    if (style.faces)
        drawGlass(frame, style.edges && !frame.coarse);
}

void BodyPainter::drawGlass(const Frame& frame, bool lined)
{
    ScreenBounds bounds(frame);
    size_t boxes = 0;
    bool alone = true;
    for (size_t i = 0; i < frame.scene.list.batches().size(); ++i) {
        const Batch& batch = *frame.scene.list.batches()[i];
        if (frame.scene.instances.ranges()[i].count == 0)
            continue;
        alone = alone && batch.transparent && !batch.mixed;
        if (!batch.transparent)
            continue;
        boxes += batch.boxes.size();
        for (size_t box = 0; box < batch.boxes.size() && boxes < kMostBoxes; ++box)
            bounds.add(batch.boxes[box]);
    }
    if (boxes == 0)
        return;
    const Area touched = boxes < kMostBoxes ? bounds.area(kLineMargin) : frame.part;
    const bool fine = isFine(frame);
    const FacePrograms faces = useGlass(frame, fine ? Kind::Glass : Kind::FaintGlass);
    const auto isRefused = [](const Program* program) { return program && !*program; };
    if (isRefused(faces.plain) || isRefused(faces.finished) || !m_glass.begin(frame, touched, fine, alone)) {
        drawUnsorted(frame);
        return;
    }
    glViewport(frame.part.x - frame.tile.x, frame.part.y - frame.tile.y, frame.part.width, frame.part.height);
    using Step = GlassLayers::Step;
    if (fine && alone) {
        m_glass.take(Step::Foremost);
        drawFaces(frame, faces, Frame::Faces::FrontsOfGlass);
        const FacePrograms faint = useGlass(frame, Kind::FaintGlass);
        m_glass.take(Step::Behind);
        drawFaces(frame, faint, Frame::Faces::OfGlass);
    } else {
        m_glass.take(Step::Sum);
        drawFaces(frame, faces, Frame::Faces::OfGlass);
        if (fine) {
            m_glass.take(Step::Foremost);
            drawFaces(frame, faces, Frame::Faces::FrontsOfGlass);
        }
    }
    lined = lined && fine;
    if (lined) {
        m_glass.beginLines();
        EdgePainter::Look look = kLookOnFaces;
        look.ofGlass = true;
        m_edges.draw(frame, look, true);
    }
    m_glass.finish(frame, lined);
}

BodyPainter::FacePrograms BodyPainter::useGlass(const Frame& frame, Kind which)
{
    const FacePrograms faces = useFaces(frame, false, which);
    for (const Program* program : {faces.plain, faces.finished}) {
        if (!program || !*program)
            continue;
        program->use();
        glUniform2f(program->uniform("clipRange"), float(frame.projection.clipNear()),
                    float(frame.projection.clipFar()));
        glUniform1i(program->uniform("parallel"), !frame.projection.perspective());
    }
    return faces;
}

// For drivers that can't do better.
void BodyPainter::drawUnsorted(const Frame& frame)
{
    const FacePrograms faces = useFaces(frame, false);
    frame.drawIntoPicture();
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    drawFaces(frame, faces, Frame::Faces::OfGlass);
    frame.drawIntoPicture();
}

// If the driver rejects the program, a simpler one still shades: that is better than no picture.
const Program& BodyPainter::faceProgram(unsigned kind)
{
    Vs::Status ignored;
    for (const unsigned each : {kind, kind & unsigned(kGlassFaces)}) {
        if (!m_triedFaces[each])
            makeFaces(each, ignored);
        if (m_faces[each])
            return m_faces[each];
    }
    return m_faces[kind & kGlassFaces];
}

// False if neither corners nor soft shadows are darker.
bool BodyPainter::findOcclusion(const Frame& frame)
{
    const bool soft = findShadows(frame) && ObjectShadow::areSoft(frame);
    const bool corners = frame.params().ambientOcclusionEnabled();
    if (!soft && !corners)
        return false;
    const double size = frame.fragment.viewFragmentNode()->boundingBox().diagonal();
    const double radius = corners ? size * kOcclusionReach : 0;
    const int scale = frame.target.pixelScale;
    const Area depths = occlusionArea(frame.part, scale);
    if (m_occlusion.isOf(sourceOf(frame, depths, radius, soft)))
        return true;
    if (!m_occlusion.begin(depths.width, depths.height, soft))
        return false;
    const Area reach{depths.x, depths.y, depths.width * scale, depths.height * scale};
    frame.setView(m_occlusion.depthProgram(), reach);
    frame.drawFaces(Frame::Faces::OfOpaque);
    const Area& area = frame.area;
    const auto partOf = [](int at, int from, int length) { return double(at - from) / length; };
    m_occlusion.finish(frame, partOf(reach.x, area.x, area.width), partOf(reach.y, area.y, area.height),
                       partOf(reach.x + reach.width, area.x, area.width),
                       partOf(reach.y + reach.height, area.y, area.height), radius,
                       occludedArea(frame, depths));
    return true;
}

BodyPainter::FacePrograms BodyPainter::useFaces(const Frame& frame, bool occluded, Kind which)
{
    const bool lit = styleOf(frame.params().visualStyle()).faces;
    const bool realistic = frame.params().visualStyle() == Vs::Scene::kRealistic;
    const bool shadowed = lit && findShadows(frame);
    unsigned kind = kPlainFaces;
    kind |= realistic ? kRealisticFaces : kPlainFaces;
    kind |= shadowed ? kShadowedFaces : kPlainFaces;
    kind |= occluded ? kOccludedFaces : kPlainFaces;
    kind |= occluded && shadowed && ObjectShadow::areSoft(frame) ? kSoftFaces : kPlainFaces;
    // Without a GPU, lighting costs more than all else.
    if (kind == kPlainFaces && (frame.quick || (which == Kind::FaintGlass && frame.software)))
        kind = kQuickFaces;
    kind |= which == Kind::Opaque ? kPlainFaces : kGlassFaces;
    FacePrograms programs;
    if (frame.shows(Frame::Materials::OfNone))
        programs.plain = &useFaceProgram(frame, kind);
    // Colours that tell components apart say nothing about materials.
    const bool finished = lit && !frame.params().colorCyclingEnabled();
    if (frame.shows(Frame::Materials::OfSome))
        programs.finished = &useFaceProgram(frame, finished ? kind | kFinishedFaces : kind);
    return programs;
}

const Program& BodyPainter::useFaceProgram(const Frame& frame, unsigned kind)
{
    const bool occluded = kind & kOccludedFaces;
    const Program& program = faceProgram(kind);
    if (!program)
        return program;
    frame.setView(program);
    frame.setLight(program);
    frame.setHighlights(program);
    glUniform1i(program.uniform("cycling"), frame.params().colorCyclingEnabled());
    if (kind & kRealisticFaces) {
        const Vs::Colour uncoloured;
        glUniform3f(program.uniform("uncoloured"), uncoloured.r, uncoloured.g, uncoloured.b);
        m_mirror.set(program, frame.environment);
    }
    if (kind & kShadowedFaces)
        ObjectShadow::set(program, frame);
    if (!occluded)
        return program;
    const int scale = frame.target.pixelScale;
    const Area depths = occlusionArea(frame.part, scale);
    const float perX = 1.0f / float(depths.width * scale);
    const float perY = 1.0f / float(depths.height * scale);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, m_occlusion.texture());
    glUniform1i(program.uniform("occlusion"), 0);
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, m_occlusion.depths());
    glActiveTexture(GL_TEXTURE0);
    glUniform1i(program.uniform("occlusionDepths"), 1);
    glUniform4f(program.uniform("occlusionPlace"), perX, perY, float(frame.tile.x - depths.x) * perX,
                float(frame.tile.y - depths.y) * perY);
    return program;
}

} // namespace Rendra
