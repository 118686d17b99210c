#include "Server/Scene/EnvironmentManager.h"

#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "Server/Scene/Panorama.h"

#include <boost/filesystem.hpp>

#include <algorithm>
#include <cmath>
#include <cwctype>
#include <string_view>

namespace Vs::Scene {

namespace {

/// GraphicsOptionGroup::activeEnvironment.
constexpr const char* kOption = "activeEnvironment";

/// A colour in screen values, 0xRRGGBB.
Colour screen(unsigned rgb)
{
    const auto linear = [&](int shift) { return float(std::pow(((rgb >> shift) & 255) / 255.0, 2.2)); };
    return {linear(16), linear(8), linear(0), 1};
}

Environment::Lamp lamp(const GkVector3d& direction, unsigned rgb, float strength, float size)
{
    const Colour colour = screen(rgb);
    return {direction.normal(), {colour.r * strength, colour.g * strength, colour.b * strength, 1}, size};
}

std::vector<Environment> makeEnvironments()
{
    std::vector<Environment> made(6);
    made[0] = {.id = L"DarkSky",
               .zenith = screen(0x060A16),
               .horizon = screen(0x3A4C6B),
               .ground = screen(0x1B222C),
               .nadir = screen(0x2B323D),
               .skyFall = 0.45f,
               .groundFall = 0.7f,
               .haze = 0.01f,
               .glow = 0.5f,
               .stars = 0.9f,
               .lamps = {lamp({-0.75, -0.15, 0.6}, 0xBFD4FF, 0.85f, 0.06f),
                         lamp({0.8, -0.4, 0.5}, 0xFFB070, 0.45f, 0.2f),
                         lamp({-0.6, -0.7, 0.3}, 0x7090D0, 0.30f, 0.4f)},
               .plain = screen(0x1F2B45),
               .line = screen(0xC9D4E4),
               .grid = screen(0x77869B)};
    made[1] = {.id = L"GreyRoom",
               .zenith = screen(0xD2D2D0),
               .horizon = screen(0x8B8C8D),
               .ground = screen(0x77787A),
               .nadir = screen(0xA9AAAB),
               .skyFall = 0.8f,
               .groundFall = 0.6f,
               .haze = 0.03f,
               .glow = 0,
               .stars = 0,
               .lamps = {lamp({-0.35, -0.5, 0.8}, 0xFFF6E8, 0.62f, 0.30f),
                         lamp({0.6, 0.5, 0.6}, 0xE8F0FF, 0.35f, 0.35f),
                         lamp({0.7, -0.7, 0.2}, 0xF4F4F4, 0.18f, 0.5f)},
               .plain = screen(0x848E98),
               .line = screen(0x16181C),
               .grid = screen(0x55585C)};
    made[2] = {.id = L"PhotoBooth",
               .zenith = screen(0xF4F6F8),
               .horizon = screen(0xB4C2D0),
               .ground = screen(0xB4C2D0),
               .nadir = screen(0xF4F7F9),
               .skyFall = 0.5f,
               .groundFall = 0.75f,
               .haze = 0.2f,
               .glow = 0,
               .stars = 0,
               .lamps = {lamp({-0.45, -0.55, 0.75}, 0xFFFFFF, 0.70f, 0.22f),
                         lamp({0.75, -0.35, 0.5}, 0xF4F8FF, 0.30f, 0.30f),
                         lamp({0.1, 0.85, 0.5}, 0xFFFFFF, 0.40f, 0.25f)},
               .plain = screen(0xDAE6F4),
               .line = screen(0x1A1D24),
               .grid = screen(0x8A97A6)};
    made[3] = {.id = L"TranquilityBlue",
               .zenith = screen(0x9CC4E8),
               .horizon = screen(0x4F86B8),
               .ground = screen(0x4478AC),
               .nadir = screen(0xA3C8E6),
               .skyFall = 0.7f,
               .groundFall = 0.8f,
               .haze = 0.25f,
               .glow = 0,
               .stars = 0,
               .lamps = {lamp({-0.4, -0.5, 0.8}, 0xF2F8FF, 0.70f, 0.30f),
                         lamp({0.8, -0.2, 0.4}, 0xBBDDFF, 0.30f, 0.40f),
                         lamp({0.0, 0.9, 0.4}, 0xD8ECFF, 0.30f, 0.30f)},
               .plain = screen(0x86B2DA),
               .line = screen(0x0C1C2C),
               .grid = screen(0x2F5C86)};
    made[4] = {.id = L"InfinityPool",
               .zenith = screen(0x5E9ACB),
               .horizon = screen(0xE9F1F2),
               .ground = screen(0xA9D3DA),
               .nadir = screen(0x1F7F96),
               .skyFall = 0.55f,
               .groundFall = 0.5f,
               .haze = 0.004f,
               .glow = 0.35f,
               .stars = 0,
               .lamps = {lamp({0.45, 0.65, 0.6}, 0xFFF3DC, 1.05f, 0.05f),
                         lamp({-0.6, -0.6, 0.5}, 0xB4E6F0, 0.38f, 0.40f),
                         lamp({0.2, -0.8, 0.1}, 0x7CCBD6, 0.30f, 0.50f)},
               .plain = screen(0x7FB9C6),
               .line = screen(0x0B2229),
               .grid = screen(0xD6EEF2)};
    made[5] = {.id = L"SkyRoom",
               .zenith = screen(0x4E8FD6),
               .horizon = screen(0xDCE9F5),
               .ground = screen(0xC6C2BA),
               .nadir = screen(0xE9E6E0),
               .skyFall = 0.6f,
               .groundFall = 0.6f,
               .haze = 0.012f,
               .glow = 0.45f,
               .stars = 0,
               .lamps = {lamp({-0.55, -0.35, 0.75}, 0xFFF2DE, 0.66f, 0.30f),
                         lamp({0.7, 0.4, 0.5}, 0xC8DEFF, 0.40f, 0.40f),
                         lamp({0.6, -0.7, 0.2}, 0xF0E8DC, 0.20f, 0.50f)},
               .plain = screen(0xEFEBE3),
               .line = screen(0x191D24),
               .grid = screen(0x8C8A86)};
    return made;
}

constexpr size_t kFallBack = 2; // PhotoBooth

bool isFile(const std::wstring& id)
{
    constexpr std::wstring_view kSuffix = L".hdr";
    return id.size() > kSuffix.size() &&
           std::equal(kSuffix.rbegin(), kSuffix.rend(), id.rbegin(),
                      [](wchar_t a, wchar_t b) { return a == wchar_t(std::towlower(wint_t(b))); });
}

} // namespace

EnvironmentManager* EnvironmentManager::getEnvManager()
{
    static EnvironmentManager manager;
    return &manager;
}

EnvironmentManager::EnvironmentManager() : m_usual(GraphicsOptionGroup::get()->activeEnvironment.fallBack())
{
}

std::wstring EnvironmentManager::activeEnvironmentID() const
{
    return GraphicsOptionGroup::get()->value(kOption, m_usual);
}

void EnvironmentManager::activeEnvironmentID(const std::wstring& id)
{
    // The option's own default is stored as well, since the default in force may be another.
    if (id != activeEnvironmentID())
        GraphicsOptionGroup::get()->setValue(kOption, id);
}

std::wstring EnvironmentManager::read(const std::wstring& path)
{
    const std::wstring whole = boost::filesystem::absolute(path).wstring();
    m_fromFiles.push_back(std::make_unique<const Environment>(environmentOf(whole, Panorama::read(whole))));
    m_files[whole] = m_fromFiles.back().get();
    return whole;
}

// What was chosen in an earlier run is read now; that it is gone is no reason to show nothing.
const Environment& EnvironmentManager::fromFile(const std::wstring& path) const
{
    const auto found = m_files.find(path);
    if (found != m_files.end())
        return found->second ? *found->second : environments()[kFallBack];
    try {
        m_fromFiles.push_back(std::make_unique<const Environment>(environmentOf(path, Panorama::read(path))));
        m_files[path] = m_fromFiles.back().get();
    } catch (const std::exception& error) {
        warn(Strings::widen(error.what()));
        m_files[path] = nullptr;
    }
    return fromFile(path);
}

const Environment& EnvironmentManager::environment(const std::wstring& id) const
{
    if (isFile(id))
        return fromFile(id);
    const std::vector<Environment>& all = environments();
    const std::wstring& wanted = id == L"SkyRoomPool" ? all.back().id : id;
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const Environment& environment) { return environment.id == wanted; });
    return found != all.end() ? *found : all[kFallBack];
}

const std::vector<Environment>& EnvironmentManager::environments() const
{
    static const std::vector<Environment> all = makeEnvironments();
    return all;
}

} // namespace Vs::Scene
