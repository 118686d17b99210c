#include "Server/Base/Require.h"
#include "Server/Scene/FinerMeshes.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/Rendra/EglContext.h"
#include "Server/Scene/Rendra/Frame.h"
#include "Server/Scene/Rendra/PictureTarget.h"
#include "Server/Scene/Rendra/Rehearsal.h"
#include "Server/Scene/Rendra/Renderer.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <condition_variable>
#include <exception>
#include <functional>
#include <latch>
#include <mutex>
#include <new>
#include <thread>
#include <tuple>
#include <vector>

namespace Vs::Scene {

namespace {

constexpr int kSamples = 4;
/// How many pixels of a picture are drawn at a time. Meanwhile a pixel takes 8 bytes for each of its samples,
/// of which one that is drawn at twice the size has 16.
constexpr int64_t kTilePixels = int64_t(1) << 21;
constexpr int64_t kLargeTilePixels = int64_t(1) << 20;
/// In software, the first use of that memory takes longer than drawing a small scene in parts.
constexpr int64_t kOnlyTilePixels = int64_t(1) << 18;
constexpr uint64_t kFewTriangles = 100000;

/// A fine picture is the mean of several, each shifted by a part of a pixel. Compared with drawing all
/// samples at once, this needs a fraction of the memory, whose first use takes longer than the drawing. Where
/// all faces end in lines, whose coverage is computed, one is enough; transparent faces have one sample in
/// each, and so need the most.
constexpr double kShifts[][2] = {
    {-1.0 / 16, -1.0 / 16}, {1.0 / 16, 1.0 / 16}, {-5.0 / 16, 5.0 / 16}, {5.0 / 16, -5.0 / 16}};
constexpr int kLayersOfLined = 1, kLayers = 2, kLayersWithGlass = 4;

/// Runs one piece of work after the other in a separate thread. The caller waits for each, or for what was
/// started before.
class Worker
{
public:
    Worker() : m_thread([this] { loop(); }) {}
    ~Worker()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_ending = true;
        }
        m_changed.notify_all();
        m_thread.join();
    }
    void begin(std::function<void()> work)
    {
        const std::lock_guard lock(m_mutex);
        m_begun = std::move(work);
        m_work = &m_begun;
        m_changed.notify_all();
    }
    void run(const std::function<void()>& work)
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_work; });
        m_work = &work;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return !m_work; });
    }

private:
    void loop()
    {
        std::unique_lock lock(m_mutex);
        while (true) {
            m_changed.wait(lock, [this] { return m_work || m_ending; });
            if (!m_work)
                return;
            const std::function<void()>& work = *m_work;
            lock.unlock();
            work();
            lock.lock();
            m_work = nullptr;
            m_changed.notify_all();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    const std::function<void()>* m_work = nullptr;
    std::function<void()> m_begun;
    bool m_ending = false;
    std::thread m_thread;
};

/// Whether the system grants as many threads as a software driver uses. Such a driver waits for ever for
/// threads that it was refused.
bool hasThreadsForDriver()
{
    constexpr unsigned kOfCaches = 2;
    std::latch tried(1);
    std::vector<std::jthread> threads;
    bool given = true;
    try {
        for (unsigned i = 0; i < std::thread::hardware_concurrency() + kOfCaches; ++i)
            threads.emplace_back([&] { tried.wait(); });
    } catch (const std::exception&) {
        // Refused, or no memory for one: the existing ones are waiting, and must end nevertheless.
        given = false;
    }
    tried.count_down();
    return given;
}

/// From premultiplied to straight alpha.
void separateOpacity(std::vector<uint8_t>& pixels)
{
    for (size_t i = 0; i + 3 < pixels.size(); i += 4) {
        const unsigned opacity = pixels[i + 3];
        if (opacity == 0 || opacity == 255)
            continue;
        for (size_t channel = i; channel < i + 3; ++channel)
            pixels[channel] = uint8_t(std::min(255u, (pixels[channel] * 255u + opacity / 2) / opacity));
    }
}

void turnUpsideDown(Image& image)
{
    const size_t row = size_t(image.width) * 4;
    for (uint32_t y = 0; y < image.height / 2; ++y)
        std::swap_ranges(image.pixels.begin() + ptrdiff_t(y * row),
                         image.pixels.begin() + ptrdiff_t((y + 1) * row),
                         image.pixels.begin() + ptrdiff_t((image.height - 1 - y) * row));
}

/// Equal tiles along one side, none larger than `most`.
int tileLength(int whole, int most)
{
    const int count = (whole + most - 1) / most;
    return (whole + count - 1) / count;
}

bool isSketched(const std::vector<ViewFragment*>& fragments)
{
    return std::any_of(fragments.begin(), fragments.end(), [](ViewFragment* fragment) {
        return fragment && fragment->renderParams()->nprEffect() != 0;
    });
}

class EglOffscreenRenderer final : public OffscreenRenderer
{
public:
    bool render(const std::vector<ViewFragment*>& fragments, uint32_t width, uint32_t height,
                const ImageOptions& options, Image& image, Status& status) override;
    void expect(bool once) override;
    void settle() override;
    bool prepare(Status& status) override;
    void release() override;
    std::wstring description() const override { return m_description; }

private:
    bool drawSafely(const std::vector<ViewFragment*>& fragments, const Rendra::RenderTarget& current,
                    const ImageOptions& options, Image& image, Status& status);
    bool start(Status& status);
    void stop();
    void rehearse(const Rendra::RenderTarget& current);
    void awaitFiner(const std::vector<ViewFragment*>& fragments, int width, int height,
                    const Rendra::RenderTarget& current, const ImageOptions& options);
    bool draw(const std::vector<ViewFragment*>& fragments, const Rendra::RenderTarget& current,
              const ImageOptions& options, Image& image, Status& status);
    int64_t tileBudget(const std::vector<ViewFragment*>& fragments, bool fine, bool sketched);
    void drawLayers(const std::vector<ViewFragment*>& fragments, Rendra::RenderTarget& picture,
                    const Rendra::Area& part, Image& image);

    std::unique_ptr<Worker> m_worker;
    StrongRef<ViewFragment> m_rehearsal; ///< Drawn by the worker before a picture is requested.
    std::atomic<bool> m_isWanted = false;
    bool m_isOnlyOne = false; ///< As far as is known; read by the worker.
    // All of these live in the worker's thread.
    std::unique_ptr<Rendra::EglContext> m_context;
    std::unique_ptr<Rendra::Renderer> m_renderer;
    Rendra::PictureTarget m_target;
    std::wstring m_description;
};

void EglOffscreenRenderer::expect(bool once)
{
    assertMainThread();
    if (m_worker)
        return;
    m_worker = std::make_unique<Worker>();
    m_rehearsal = Rendra::makeRehearsal();
    m_isWanted = false;
    m_isOnlyOne = once;
    m_worker->begin([this, current = Rendra::RenderTarget::current()] {
        Status ignored; // whoever requests a picture gets the error
        if (start(ignored) && !m_isWanted)
            rehearse(current);
    });
}

// The sides are no powers of two, for which drivers compile something else.
void EglOffscreenRenderer::rehearse(const Rendra::RenderTarget& current)
{
    constexpr uint32_t kWidth = 100, kHeight = 75;
    Image image{kWidth, kHeight, std::vector<uint8_t>(size_t(kWidth) * kHeight * 4)};
    ImageOptions options;
    options.dome = false;
    Status ignored;
    draw({m_rehearsal.get()}, current, options, image, ignored);
}

void EglOffscreenRenderer::settle()
{
    assertMainThread();
    if (m_worker)
        m_worker->run([] {});
    m_rehearsal = nullptr;
}

bool EglOffscreenRenderer::prepare(Status& status)
{
    assertMainThread();
    if (!m_worker)
        m_worker = std::make_unique<Worker>();
    bool ready = false;
    m_worker->run([&] { ready = start(status); });
    return ready;
}

void EglOffscreenRenderer::release()
{
    assertMainThread();
    if (!m_worker)
        return;
    m_worker->run([this] { stop(); });
    m_worker.reset();
}

bool EglOffscreenRenderer::render(const std::vector<ViewFragment*>& fragments, uint32_t width,
                                  uint32_t height, const ImageOptions& options, Image& image, Status& status)
{
    assertMainThread();
    // Reuses the memory of the previous picture: a canvas requests one after the other.
    std::vector<uint8_t> pixels = std::move(image.pixels);
    image = Image();
    if (width == 0 || height == 0 || width > kLargestSide || height > kLargestSide) {
        status.addError(L"A picture of " + std::to_wstring(width) + L" x " + std::to_wstring(height) +
                        L" pixels cannot be made: each side must have from 1 to " +
                        std::to_wstring(kLargestSide) + L".");
        return false;
    }
    for (ViewFragment* fragment : fragments)
        if (fragment)
            std::ignore = fragment->bounds(); // takes in what has arrived, in the thread that owns the scene
    if (!m_worker)
        m_worker = std::make_unique<Worker>();
    m_isWanted = true;
    const Rendra::RenderTarget current = Rendra::RenderTarget::current();
    if (!options.moving && options.finerWait >= 0)
        awaitFiner(fragments, int(width), int(height), current, options);
    bool drawn = false;
    m_worker->run([&] {
        try {
            image.pixels = std::move(pixels);
            image.pixels.resize(size_t(width) * height * 4);
            image.width = width;
            image.height = height;
            drawn = drawSafely(fragments, current, options, image, status);
        } catch (const std::bad_alloc&) {
            status.addError(L"There is not enough memory for a picture of " + std::to_wstring(width) +
                            L" x " + std::to_wstring(height) + L" pixels.");
        }
    });
    m_rehearsal = nullptr;
    m_isOnlyOne = false;
    // What is picked next doesn't depend on a picture that was taken. Nobody draws without asking first, so
    // that another picture finds all of this as it was.
    if (options.finerWait > 0)
        FinerMeshes::get().forget(this);
    if (!drawn)
        image = Image();
    return drawn;
}

void EglOffscreenRenderer::awaitFiner(const std::vector<ViewFragment*>& fragments, int width, int height,
                                      const Rendra::RenderTarget& current, const ImageOptions& options)
{
    std::vector<FinerWish> wishes;
    m_worker->run([&] {
        Status ignored; // of which the picture tells
        if (!start(ignored))
            return;
        Rendra::RenderTarget target = current;
        target.width = width;
        target.height = height;
        wishes = m_renderer->tooCoarse(fragments, target);
    });
    const MeshQuality quality = MeshQuality::current();
    FinerMeshes& finer = FinerMeshes::get();
    const bool isKept = options.finerWait > 0;
    finer.want(this, wishes, isKept ? quality.triangles : quality.trianglesInSoftware);
    if (isKept)
        finer.await(options.finerWait);
}

// A second time, with everything made anew, if the driver was reset since the last picture or meanwhile.
bool EglOffscreenRenderer::drawSafely(const std::vector<ViewFragment*>& fragments,
                                      const Rendra::RenderTarget& current, const ImageOptions& options,
                                      Image& image, Status& status)
{
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (m_context && m_context->isLost())
            stop();
        if (!start(status) || !draw(fragments, current, options, image, status))
            return false;
        if (!m_context->isLost())
            return true;
        stop();
    }
    status.addError(L"The graphics driver was reset while a picture was drawn, and when it was tried again.");
    return false;
}

bool EglOffscreenRenderer::start(Status& status)
{
    if (m_renderer)
        return true;
    if (!hasThreadsForDriver()) {
        status.addError(L"The system gives no more threads, without which nothing can be drawn.");
        return false;
    }
    m_context = Rendra::EglContext::make(status);
    if (!m_context)
        return false;
    m_description = m_context->description();
    m_renderer = std::make_unique<Rendra::Renderer>();
    if (m_renderer->initialize(status))
        return true;
    stop();
    return false;
}

void EglOffscreenRenderer::stop()
{
    if (m_context && m_context->retake()) {
        m_target.release();
        m_renderer.reset();
    } else {
        // What a lost context holds goes with it.
        m_target = Rendra::PictureTarget();
        std::ignore = m_renderer.release();
    }
    m_context.reset();
}

bool EglOffscreenRenderer::draw(const std::vector<ViewFragment*>& fragments,
                                const Rendra::RenderTarget& current, const ImageOptions& options,
                                Image& image, Status& status)
{
    const int width = int(image.width), height = int(image.height);
    // A drawing's strokes depend on the pixels themselves.
    const bool fine = options.antiAliasing && options.fine, sketched = fine && isSketched(fragments);
    const int scale = sketched ? 2 : 1;
    const int samples = options.antiAliasing ? Rendra::PictureTarget::samplesOffered(kSamples) : 1;
    // Whole rows if they fit, as one wide tile is drawn faster than two narrow ones.
    const int64_t budget = tileBudget(fragments, fine, sketched);
    const int tileWidth = tileLength(width, 4096);
    const int tileHeight = tileLength(height, int(std::clamp<int64_t>(budget / tileWidth, 1, 4096)));
    if (!m_target.prepare(tileWidth, tileHeight, scale, samples)) {
        status.addError(L"The graphics driver has no memory for a picture of " + std::to_wstring(width) +
                        L" x " + std::to_wstring(height) + L" pixels.");
        return false;
    }

    Rendra::RenderTarget picture = current;
    picture.framebuffer = m_target.framebuffer();
    picture.width = width * scale;
    picture.height = height * scale;
    picture.samples = samples;
    picture.transparentBackground = options.transparentBackground;
    picture.dome = options.dome;
    if (!options.highlights)
        picture.selectionEffect = Rendra::kNoEffect;
    picture.grid = options.grid;
    picture.gridNumbers = options.gridNumbers;
    picture.axisCross = picture.axisCross && options.marks;
    picture.scaleBar = picture.scaleBar && options.marks;
    picture.lineWidth = Rendra::RenderTarget::kLineWidth * options.pixelRatio * float(scale);
    picture.pixelScale = scale;
    picture.effects = options.fine || options.effects;
    picture.moving = options.moving;
    for (int y = 0; y < height; y += tileHeight)
        for (int x = 0; x < width; x += tileWidth) {
            const int partWidth = std::min(tileWidth, width - x),
                      partHeight = std::min(tileHeight, height - y);
            picture.tileX = x * scale;
            picture.tileY = y * scale;
            picture.tileWidth = partWidth * scale;
            picture.tileHeight = partHeight * scale;
            if (fine && !sketched) {
                drawLayers(fragments, picture, {x, y, partWidth, partHeight}, image);
                continue;
            }
            m_renderer->render(fragments, picture);
            m_target.read(partWidth, partHeight, &image.pixels[(size_t(y) * image.width + size_t(x)) * 4],
                          width);
        }
    // A large target isn't worth keeping; a canvas draws into the same one again and again.
    if (sketched || int64_t(tileWidth) * tileHeight > kTilePixels / 2)
        m_target.release();
    turnUpsideDown(image);
    if (options.transparentBackground)
        separateOpacity(image.pixels);
    return true;
}

int64_t EglOffscreenRenderer::tileBudget(const std::vector<ViewFragment*>& fragments, bool fine,
                                         bool sketched)
{
    const int64_t whole = sketched ? kLargeTilePixels : kTilePixels;
    if (!m_isOnlyOne || !fine || sketched || !m_renderer->drawsInSoftware())
        return whole;
    return m_renderer->triangles(fragments) <= kFewTriangles ? kOnlyTilePixels : whole;
}

void EglOffscreenRenderer::drawLayers(const std::vector<ViewFragment*>& fragments,
                                      Rendra::RenderTarget& picture, const Rendra::Area& part, Image& image)
{
    const auto row = ptrdiff_t(part.width) * 4, stride = ptrdiff_t(image.width) * 4;
    const auto place = image.pixels.begin() + part.y * stride + ptrdiff_t(part.x) * 4;
    const auto drawLayer = [&](int number) {
        picture.shiftX = kShifts[number][0];
        picture.shiftY = kShifts[number][1];
        m_renderer->render(fragments, picture);
        m_target.read(part.width, part.height, &*place, int(image.width));
    };
    drawLayer(0);
    const Rendra::RenderStatistics& seen = m_renderer->statistics();
    const int layers = seen.glass ? kLayersWithGlass : seen.unlined ? kLayers : kLayersOfLined;
    if (layers == 1)
        return;

    std::vector<uint16_t> sums(size_t(row) * size_t(part.height));
    const auto addLayer = [&] {
        for (int y = 0; y < part.height; ++y)
            std::transform(place + y * stride, place + y * stride + row, sums.begin() + y * row,
                           sums.begin() + y * row,
                           [](uint8_t value, uint16_t sum) { return uint16_t(sum + value); });
    };
    addLayer();
    for (int i = 1; i < layers; ++i) {
        drawLayer(i);
        addLayer();
    }
    const int bits = std::countr_zero(unsigned(layers));
    for (int y = 0; y < part.height; ++y)
        std::transform(sums.begin() + y * row, sums.begin() + (y + 1) * row, place + y * stride,
                       [&](uint16_t sum) { return uint8_t((sum + layers / 2) >> bits); });
}

} // namespace

} // namespace Vs::Scene

extern "C" Vs::Scene::OffscreenRenderer* vsOffscreenRenderer()
{
    static auto* const renderer = new Vs::Scene::EglOffscreenRenderer;
    return renderer;
}
