#pragma once

/// The shaders that draw the lit faces of bodies.
namespace Rendra::Shaders {

/// The colours of a vertex, with its normal.
inline constexpr const char* kFaceColours = R"(
layout(location = 1) in vec4 normal;
layout(location = 2) in vec4 faceColour;
layout(location = 6) in vec4 colour;
layout(location = 7) in uint flags;

uniform bool tinted;
uniform float cover; // more where no outline tells as well
uniform bool cycling;
uniform bool opaqueOnly;

// A colour of its own for each number. Hues go on by the golden section, which keeps any few neighbours
// apart; brightness changes as well, since hues alone are hard to tell for some.
vec3 cycled(uint number)
{
    float turn = fract(float(number) * 0.61803399);
    vec3 hue = clamp(abs(fract(turn + vec3(0.0, 2.0 / 3.0, 1.0 / 3.0)) * 6.0 - 3.0) - 1.0, 0.0, 1.0);
    float value = 0.94 - 0.12 * float(number % 3u), saturation = 0.48 + 0.12 * float(number % 2u);
    return value * mix(vec3(1.0), hue, saturation);
}

vec4 baseOfVertex()
{
    vec4 own = cycling ? vec4(cycled(flags >> 8), colour.a)
               : faceColour.a > 0.0 ? vec4(faceColour.rgb, faceColour.a * colour.a) : colour;
    return vec4(pow(own.rgb, vec3(2.2)), own.a);
}

// Faces of one body may be opaque and others not. All corners of a face are alike, so that it vanishes as a whole.
vec4 faceAt(vec4 place, vec4 own)
{
#ifdef GLASS
    bool isDrawn = own.a < 0.999;
    // Which of two faces in the same place is the foremost follows from their colours, and not from their order.
    place.z += place.w * 1.6e-5 * fract(dot(own, vec4(7.13, 17.41, 31.79, 3.37)));
#else
    bool isDrawn = !opaqueOnly || own.a >= 0.999;
#endif
    return isDrawn ? place : vec4(2.0, 2.0, 2.0, 1.0);
}

// With how much of it covers the own colour.
vec4 glowOfVertex()
{
    return !tinted ? vec4(0.0)
           : (flags & 2u) != 0u ? vec4(0.00, 0.16, 0.85, cover) : (flags & 1u) != 0u ? vec4(0.20, 0.60, 1.00, 0.75 * cover) : vec4(0.0);
}
)";

inline constexpr const char* kFaceVertex = R"(
out vec3 viewPosition;
out vec3 viewNormal;
flat out vec4 base;
flat out vec4 glow;

void main()
{
    vec4 seen = placed(position);
    viewPosition = seen.xyz;
    viewNormal = normalize(turned(normal.xyz));
    base = baseOfVertex();
    glow = glowOfVertex();
    gl_Position = faceAt(projection * seen, base);
}
)";

/// What a face's material says; for kPlainLight and kRealisticLight, behind a FINISHED that is defined.
inline constexpr const char* kFinish = R"(
uniform vec2 finish; // metallic, or less than 0 if there is no material; roughness
uniform vec3 emission;
)";

/// The lamps are fixed relative to the viewer, so that a turning model shows all its sides well lit; only the
/// ambient light belongs to the model.
inline constexpr const char* kPlainLight = R"(
const vec3 kKeyDirection = vec3(-0.4082, 0.6532, 0.6379);
const vec3 kFillDirection = vec3(0.8222, -0.0514, 0.5669);

// What is seen of a face in the camera's coordinates; `open` is how much of the sky it sees, and `reaching` how
// much of the first lamp.
vec3 shaded(vec3 colour, vec3 n, vec3 toViewer, float open, vec3 reaching)
{
    vec3 around = toEnvironment * n;
    vec3 light = (lightFromAround(around) * 0.56 + least) * open;
    // A light that throws shadows belongs to the model as they do.
    vec3 key = shadowed ? toLamp : kKeyDirection;
    light += lampColours[0] * (0.8 * max(dot(n, key), 0.0) * mix(1.0, open, 0.7) * reaching);
    light += lampColours[1] * (0.5 * max(dot(n, kFillDirection), 0.0));
    float facing = max(dot(n, toViewer), 0.0);
    light += 0.10 * facing;
    float along = max(dot(n, normalize(key + toViewer)), 0.0), along2 = along * along, along4 = along2 * along2;
    float along16 = along4 * along4 * along4 * along4;
    vec3 gloss = along16 * along16 * along16 * 0.16 * reaching;
    float away2 = (1.0 - facing) * (1.0 - facing);
    float rim = away2 * away2 * 0.10 * (around.z * 0.5 + 0.5);
#ifdef FINISHED
    if (finish.x >= 0.0) {
        // As for the usual gloss where the roughness is 0.35: sharper and stronger below, wide and faint above.
        float smoothness = 1.0 - finish.y;
        gloss = pow(max(along, 1e-3), exp2(1.0 + 7.0 * smoothness)) * 0.38 * smoothness * smoothness * reaching;
        vec3 mirrored = mix(vec3(1.0), colour * 2.5, finish.x);
        return colour * light * (1.0 - 0.35 * finish.x) + mirrored * (gloss + rim) + emission;
    }
#endif
    return colour * light + gloss + rim;
}
)";

/// All light belongs to the model, and faces are shaded physically: they scatter the light of lamps and
/// surroundings, and mirror the environment as EnvironmentMirror holds it, by the fit of Karis (2014).
/// Replaces kPlainLight.
inline constexpr const char* kRealisticLight = R"(
uniform samplerCube mirrored;
uniform float mirrorLevels; // the last is for a roughness of 1
uniform vec3 uncoloured;    // what bodies have that nobody has coloured

// No model says what its bodies are made of, but mostly its colour does: greys are metals; white, light grey, black and
// what is coloured are plastics and paints, and so is what has no colour of its own.
float metalOf(vec3 colour)
{
    if (all(lessThan(abs(colour - uncoloured), vec3(0.008))))
        return 0.0;
    float most = max(colour.r, max(colour.g, colour.b)), least = min(colour.r, min(colour.g, colour.b));
    float saturation = (most - least) / max(most, 1e-3);
    return (1.0 - smoothstep(0.10, 0.30, saturation)) * smoothstep(0.10, 0.25, most) * (1.0 - smoothstep(0.55, 0.70, most));
}

vec3 shaded(vec3 colour, vec3 n, vec3 toViewer, float open, vec3 reaching)
{
    n = toEnvironment * n;
    toViewer = toEnvironment * toViewer;
    float metal = metalOf(colour);
    float roughness = mix(0.34, 0.27, metal);
    // Even dark metals mirror half of the light.
    vec3 mirror = mix(vec3(0.04), colour * 0.65 + 0.3, metal);
    vec3 own = vec3(0.0);
#ifdef FINISHED
    if (finish.x >= 0.0) {
        metal = finish.x;
        roughness = max(finish.y, 0.03);
        mirror = mix(vec3(0.04), colour, metal);
        own = emission;
    }
#endif

    vec3 light = (lightFromAround(n) + least) * open;
    for (int i = 0; i < 3; ++i) {
        vec3 reach = mix(1.0, open, 0.7) * (i == 0 ? reaching : vec3(1.0));
        light += lampColours[i] * max(dot(n, lampDirections[i]), 0.0) * reach;
    }

    float facing = max(dot(n, toViewer), 1e-3);
    vec3 around = textureLod(mirrored, reflect(-toViewer, n), roughness * mirrorLevels).rgb;
    vec4 fit = roughness * vec4(-1.0, -0.0275, -0.572, 0.022) + vec4(1.0, 0.0425, 1.04, -0.04);
    float bend = min(fit.x * fit.x, exp2(-9.28 * facing)) * fit.x + fit.y;
    vec2 share = vec2(-1.04, 1.04) * bend + fit.zw;
    around += least * metal;
    // What is hidden from the sky, or from the first lamp, mirrors what hides it.
    around *= mix(0.25, 1.0, open);
    vec3 sum = exposure * (colour * (1.0 - metal) * light + around * (mirror * share.x + share.y) + own);
    // Highlights approach white without reaching it, as on film.
    return mix(sum, 0.6 + 0.4 * (1.0 - exp((0.6 - sum) / 0.4)), greaterThan(sum, vec3(0.6)));
}
)";

/// From light to what is seen on the screen.
inline constexpr const char* kFaceFinish = R"(
vec3 finished(vec3 shade, vec4 glow, float facing)
{
    shade = mix(shade, glow.rgb * (0.45 + 0.55 * max(facing, 0.0)), glow.a);
#ifndef REALISTIC
    // Bright parts bend over softly in place of being cut off.
    shade = shade / (1.0 + max(shade - 0.75, vec3(0.0)) * 0.55);
#endif
    return pow(clamp(shade, 0.0, 1.0), vec3(1.0 / 2.2));
}
)";

inline constexpr const char* kFaceFragment = R"(
in vec3 viewPosition;
in vec3 viewNormal;
flat in vec4 base;
flat in vec4 glow;

uniform bool perspective;
#ifdef OCCLUDED
uniform sampler2D occlusion;
uniform vec4 occlusionPlace; // from pixels of the framebuffer: factors and offsets
#ifdef FOUND
uniform sampler2D occlusionDepths;
#endif
#endif

void main()
{
    vec3 toViewer = perspective ? normalize(-viewPosition) : vec3(0.0, 0.0, 1.0);
    // Both sides of a face are lit: which one is seen follows from the triangle, not from its winding.
    vec3 flatNormal = cross(dFdx(viewPosition), dFdy(viewPosition));
    if (dot(flatNormal, toViewer) < 0.0)
        flatNormal = -flatNormal;
    vec3 n = normalize(viewNormal);
    if (dot(n, flatNormal) < 0.0)
        n = -n;

    float open = 1.0, found = 1.0;
#ifdef OCCLUDED
    vec4 there = texture(occlusion, gl_FragCoord.xy * occlusionPlace.xy + occlusionPlace.zw);
    open = there.r;
#ifdef FOUND
    // A pixel at the rim of a body shows both this and what is behind it.
    float behind = gl_FragCoord.z - texture(occlusionDepths, gl_FragCoord.xy * occlusionPlace.xy + occlusionPlace.zw).r;
    float slack = 2.0 * (abs(dFdx(gl_FragCoord.z)) + abs(dFdy(gl_FragCoord.z))) + 3e-5;
    found = behind > slack ? there.b : behind < -slack ? there.a : there.g;
#endif
#endif
    vec3 reaching = vec3(1.0);
    if (shadowed) {
        flatNormal = normalize(flatNormal);
        // Where the light only grazes a face, its own roundness would shade it in steps; there is hardly any light.
        float facing = dot(n, toLamp);
        reaching = lampReaches(viewPosition, flatNormal, found);
        reaching = mix(vec3(1.0), reaching, smoothstep(0.02, 0.12, facing)) * smoothstep(-0.15, 0.0, facing);
        // A lamp lights its surroundings too, so that its shadow is a little darker than without it.
        float kept = dot(reaching, vec3(0.3, 0.6, 0.1));
        open *= 1.0 - 0.32 * (1.0 - kept) * smoothstep(0.0, 0.2, facing);
    }
    vec3 shade = shaded(base.rgb, n, toViewer, open, reaching);
    vec3 seen = finished(shade, glow, dot(n, toViewer));
#ifndef GLASS
    // A grain finer than one step of the colours hides their bands.
    seen += (fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715)))) - 0.5) / 255.0;
#endif
    give(vec4(seen, base.a));
}
)";

/// For moving pictures without a GPU: lighting is computed only at the corners of triangles.
inline constexpr const char* kQuickFaceVertex = R"(
uniform bool perspective;
out vec4 shade;

void main()
{
    vec4 seen = placed(position);
    vec3 toViewer = perspective ? normalize(-seen.xyz) : vec3(0.0, 0.0, 1.0);
    vec3 n = normalize(turned(normal.xyz));
    if (dot(n, toViewer) < 0.0)
        n = -n;
    vec4 base = baseOfVertex();
    shade = vec4(finished(shaded(base.rgb, n, toViewer, 1.0, vec3(1.0)), glowOfVertex(), dot(n, toViewer)), base.a);
    gl_Position = faceAt(projection * seen, base);
}
)";

inline constexpr const char* kQuickFaceFragment = R"(
in vec4 shade;

void main()
{
    give(shade);
}
)";

} // namespace Rendra::Shaders
