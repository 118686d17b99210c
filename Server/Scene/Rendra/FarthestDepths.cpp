#include "Server/Scene/Rendra/FarthestDepths.h"

#include "Server/Scene/Rendra/CommonShaders.h"
#include "Server/Scene/Rendra/DepthFormat.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace Rendra {

namespace {

/// The side of the smallest tiles, in pixels.
constexpr int kTile = 4;
/// A box is compared with at most about this many tiles in each direction.
constexpr int kMostTiles = 12;

constexpr const char* kFragment = R"(
uniform sampler2DMS depths;
uniform int samples;
uniform ivec4 part; // its lower left corner, and its last pixel
out float farthest;

void main()
{
    ivec2 from = part.xy + ivec2(gl_FragCoord.xy) * TILE;
    farthest = 0.0;
    for (int y = 0; y < TILE; ++y)
        for (int x = 0; x < TILE; ++x)
            for (int i = 0; i < samples; ++i)
                farthest = max(farthest, texelFetch(depths, min(from + ivec2(x, y), part.zw), i).r);
}
)";

int tilesOf(int pixels)
{
    return (pixels + kTile - 1) / kTile;
}

} // namespace

bool FarthestDepths::read(const Frame& frame)
{
    m_width = frame.part.width;
    m_height = frame.part.height;
    m_levels.resize(1);
    m_levels[0].width = tilesOf(m_width);
    m_levels[0].height = tilesOf(m_height);
    m_levels[0].depths.assign(size_t(m_levels[0].width) * size_t(m_levels[0].height), 0.0f);
    while (glGetError() != GL_NO_ERROR) {
    }
    const bool isRead = frame.target.samples > 1 ? readSamples(frame) : readPixels(frame);
    frame.drawIntoPicture();
    if (isRead)
        makeLevels();
    return isRead;
}

// A few rows at a time, which stay in the processor's cache.
bool FarthestDepths::readPixels(const Frame& frame)
{
    constexpr int kRows = 16 * kTile;
    const int x = frame.part.x - frame.tile.x, y = frame.part.y - frame.tile.y;
    const auto width = size_t(m_width);
    m_rows.resize(width * kRows);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, frame.target.framebuffer);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    for (int row = 0; row < m_height; row += kRows) {
        const int rows = std::min(kRows, m_height - row);
        glReadPixels(x, y + row, m_width, rows, GL_DEPTH_COMPONENT, GL_FLOAT, m_rows.data());
        for (int i = 0; i < rows; i += kTile) {
            // The farthest of each column first, then of the columns of a tile.
            float* const columns = &m_rows[width * size_t(i)];
            for (int j = i + 1; j < std::min(i + kTile, rows); ++j)
                std::transform(columns, columns + width, &m_rows[width * size_t(j)], columns,
                               [](float a, float b) { return a > b ? a : b; });
            float* const tiles = &m_levels[0].depths[size_t((row + i) / kTile) * size_t(m_levels[0].width)];
            for (size_t column = 0; column < width; ++column)
                tiles[column / kTile] = std::max(tiles[column / kTile], columns[column]);
        }
    }
    return glGetError() == GL_NO_ERROR;
}

// Of several samples per pixel, one alone would not tell what is seen past thin bodies.
bool FarthestDepths::readSamples(const Frame& frame)
{
    if (!std::exchange(m_tried, true)) {
        Vs::Status ignored; // then nothing is hidden
        m_program.make("farthest depths", {kWholeVertex},
                       {("#define TILE " + std::to_string(kTile) + "\n").c_str(), kFragment}, ignored);
        glGenVertexArrays(1, &m_noArray);
    }
    glBindFramebuffer(GL_READ_FRAMEBUFFER, frame.target.framebuffer);
    const GLenum format = depthFormat(frame.target.framebuffer);
    if (!m_program || format == 0 ||
        !makeSamples(frame.tile.width, frame.tile.height, frame.target.samples, format))
        return false;
    const int x = frame.part.x - frame.tile.x, y = frame.part.y - frame.tile.y;
    glBindFramebuffer(GL_READ_FRAMEBUFFER, frame.target.framebuffer);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_framebuffers[0]);
    glBlitFramebuffer(x, y, x + m_width, y + m_height, x, y, x + m_width, y + m_height, GL_DEPTH_BUFFER_BIT,
                      GL_NEAREST);
    if (glGetError() != GL_NO_ERROR)
        return false;
    Level& level = m_levels[0];
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffers[1]);
    glViewport(0, 0, level.width, level.height);
    glDisable(GL_DEPTH_TEST);
    m_program.use();
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, m_textures[0]);
    glUniform1i(m_program.uniform("depths"), 0);
    glUniform1i(m_program.uniform("samples"), frame.target.samples);
    glUniform4i(m_program.uniform("part"), x, y, x + m_width - 1, y + m_height - 1);
    glBindVertexArray(m_noArray);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, 0);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, level.width, level.height, GL_RED, GL_FLOAT, level.depths.data());
    return glGetError() == GL_NO_ERROR;
}

bool FarthestDepths::makeSamples(int width, int height, int samples, GLenum format)
{
    if (m_copyWidth >= width && m_copyHeight >= height && m_samples == samples && m_format == format)
        return true;
    glDeleteFramebuffers(2, m_framebuffers);
    glDeleteTextures(2, m_textures);
    glGenFramebuffers(2, m_framebuffers);
    glGenTextures(2, m_textures);
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, m_textures[0]);
    glTexImage2DMultisample(GL_TEXTURE_2D_MULTISAMPLE, samples, format, width, height, GL_TRUE);
    glBindTexture(GL_TEXTURE_2D_MULTISAMPLE, 0);
    glBindTexture(GL_TEXTURE_2D, m_textures[1]);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_R32F, tilesOf(width), tilesOf(height), 0, GL_RED, GL_FLOAT, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glBindTexture(GL_TEXTURE_2D, 0);
    bool works = glGetError() == GL_NO_ERROR;
    const GLenum ofDepths = format == GL_DEPTH24_STENCIL8 ? GL_DEPTH_STENCIL_ATTACHMENT : GL_DEPTH_ATTACHMENT;
    for (int i = 0; i < 2; ++i) {
        glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffers[i]);
        if (i == 0) {
            glFramebufferTexture2D(GL_FRAMEBUFFER, ofDepths, GL_TEXTURE_2D_MULTISAMPLE, m_textures[0], 0);
            glDrawBuffer(GL_NONE);
            glReadBuffer(GL_NONE);
        } else {
            glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, m_textures[1], 0);
        }
        works = works && glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    }
    m_samples = samples;
    m_format = format;
    m_copyWidth = works ? width : 0;
    m_copyHeight = works ? height : 0;
    return works && glGetError() == GL_NO_ERROR;
}

void FarthestDepths::makeLevels()
{
    while (std::max(m_levels.back().width, m_levels.back().height) > kMostTiles) {
        const Level& fine = m_levels.back();
        Level coarse{(fine.width + 1) / 2, (fine.height + 1) / 2, {}};
        coarse.depths.assign(size_t(coarse.width) * size_t(coarse.height), 0.0f);
        for (int y = 0; y < fine.height; ++y) {
            const float* const from = &fine.depths[size_t(y) * size_t(fine.width)];
            float* const to = &coarse.depths[size_t(y / 2) * size_t(coarse.width)];
            for (int x = 0; x < fine.width; ++x)
                to[x / 2] = std::max(to[x / 2], from[x]);
        }
        m_levels.push_back(std::move(coarse));
    }
}

bool FarthestDepths::hide(const Box& box) const
{
    if (!(box.right >= 0 && box.top >= 0 && box.left <= float(m_width) && box.bottom <= float(m_height)))
        return true;
    const auto pixel = [](float at, int length) { return int(std::clamp(at, 0.0f, float(length - 1))); };
    int left = pixel(box.left, m_width) / kTile, right = pixel(box.right, m_width) / kTile;
    int bottom = pixel(box.bottom, m_height) / kTile, top = pixel(box.top, m_height) / kTile;
    size_t level = 0;
    while (std::max(right - left, top - bottom) >= kMostTiles && level + 1 < m_levels.size()) {
        ++level;
        for (int* const each : {&left, &right, &bottom, &top})
            *each /= 2;
    }
    const Level& tiles = m_levels[level];
    for (int y = bottom; y <= top; ++y) {
        const float* const row = &tiles.depths[size_t(y) * size_t(tiles.width)];
        for (int x = left; x <= right; ++x)
            if (row[x] >= box.nearest)
                return false;
    }
    return true;
}

void FarthestDepths::release()
{
    m_program.release();
    glDeleteVertexArrays(1, &m_noArray);
    glDeleteFramebuffers(2, m_framebuffers);
    glDeleteTextures(2, m_textures);
    *this = FarthestDepths();
}

} // namespace Rendra
