#pragma once

/// The programs of the renderer, in GLSL 3.30. Colours come and go as they look on the screen; light is
/// reckoned with linear values in between.
namespace Rendra::Shaders {

/// What surrounds the scene, in the environment's own coordinates; the same as Environment::seen. A piece
/// that other programs begin with (see Program::make).
inline constexpr const char* kSurroundings = R"(
uniform mat3 toEnvironment; // from the camera's coordinates
uniform vec3 zenith;
uniform vec3 horizon;
uniform vec3 ground;
uniform vec3 nadir;
uniform vec4 falls; // of sky and ground, the haze, the glow
uniform vec3 irradiance[9];
uniform vec3 least;
uniform float exposure;
uniform vec3 lampDirections[3];
uniform vec3 lampColours[3];
uniform float lampSizes[3];

vec3 surroundings(vec3 d, float blur)
{
    vec3 above = mix(horizon, zenith, pow(max(d.z, 0.0), falls.x));
    vec3 below = mix(ground, nadir, pow(max(-d.z, 0.0), falls.y));
    float haze = falls.z + blur;
    return mix(below, above, smoothstep(-haze, haze, d.z));
}

vec3 lightFromAround(vec3 n)
{
    vec3 sum = irradiance[0] * 0.282095;
    sum += 0.488603 * (irradiance[1] * n.y + irradiance[2] * n.z + irradiance[3] * n.x);
    sum += 1.092548 * (irradiance[4] * n.x * n.y + irradiance[5] * n.y * n.z + irradiance[7] * n.x * n.z);
    sum += irradiance[6] * (0.315392 * (3.0 * n.z * n.z - 1.0)) + irradiance[8] * (0.546274 * (n.x * n.x - n.y * n.y));
    return max(sum, vec3(0.0));
}
)";

inline constexpr const char* kFaceVertex = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 1) in vec4 normal;
layout(location = 2) in vec4 faceColour;
layout(location = 3) in vec4 row0;
layout(location = 4) in vec4 row1;
layout(location = 5) in vec4 row2;
layout(location = 6) in vec4 colour;
layout(location = 7) in uint flags;

uniform mat4 view;
uniform mat4 projection;

uniform bool tinted;
uniform bool cycling;

out vec3 viewPosition;
out vec3 viewNormal;
flat out vec4 base;
flat out vec3 glow;

// A colour of its own for each number. Hues go on by the golden section, which keeps any few neighbours
// apart; brightness changes as well, since hues alone are hard to tell for some.
vec3 cycled(uint number)
{
    float turn = fract(float(number) * 0.61803399);
    vec3 hue = clamp(abs(fract(turn + vec3(0.0, 2.0 / 3.0, 1.0 / 3.0)) * 6.0 - 3.0) - 1.0, 0.0, 1.0);
    float value = 0.94 - 0.12 * float(number % 3u), saturation = 0.48 + 0.12 * float(number % 2u);
    return value * mix(vec3(1.0), hue, saturation);
}

void main()
{
    vec4 p = vec4(position, 1.0);
    vec4 seen = view * vec4(dot(row0, p), dot(row1, p), dot(row2, p), 1.0);
    viewPosition = seen.xyz;
    // The cofactors keep normals right under scaling, without an inverse.
    vec3 x = vec3(row0.x, row1.x, row2.x), y = vec3(row0.y, row1.y, row2.y), z = vec3(row0.z, row1.z, row2.z);
    vec3 turned = cross(y, z) * normal.x + cross(z, x) * normal.y + cross(x, y) * normal.z;
    viewNormal = mat3(view) * normalize(turned);
    vec4 own = cycling ? vec4(cycled(flags >> 8), colour.a)
               : faceColour.a > 0.0 ? vec4(faceColour.rgb, faceColour.a * colour.a) : colour;
    base = vec4(pow(own.rgb, vec3(2.2)), own.a);
    glow = !tinted ? vec3(0.0)
           : (flags & 2u) != 0u ? vec3(0.01, 0.20, 0.80) : (flags & 1u) != 0u ? vec3(0.10, 0.45, 0.90) : vec3(0.0);
    gl_Position = projection * seen;
}
)";

/// Without REALISTIC, the lamps stand still relative to the viewer, so that a turning model shows all its
/// sides well lit; only the light from around belongs to the model. With it, all light does, and faces are
/// shaded by their physics: the microfacets of Trowbridge and Reitz (GGX) with Smith's shadowing in the form
/// of Hammon, Schlick's Fresnel term, and for the light from around the fit of Karis (2014).
inline constexpr const char* kFaceFragment = R"(
in vec3 viewPosition;
in vec3 viewNormal;
flat in vec4 base;
flat in vec3 glow;

uniform bool perspective;
uniform bool occluded;
uniform sampler2D occlusion;
uniform vec4 occlusionPlace; // from pixels of the framebuffer: factors and offsets

out vec4 result;

#ifdef REALISTIC
const float kPi = 3.14159265;

// No model says what its bodies are made of, but mostly its colour does: greys are metals, white, black and
// what is coloured are plastics and paints.
float metalOf(vec3 colour)
{
    float most = max(colour.r, max(colour.g, colour.b)), least = min(colour.r, min(colour.g, colour.b));
    float saturation = (most - least) / max(most, 1e-3);
    return (1.0 - smoothstep(0.10, 0.30, saturation)) * smoothstep(0.10, 0.25, most) * (1.0 - smoothstep(0.80, 0.88, most));
}

vec3 shaded(vec3 n, vec3 toViewer, float open, float reaching)
{
    float metal = metalOf(base.rgb);
    float roughness = mix(0.34, 0.50, metal);
    vec3 diffuse = base.rgb * (1.0 - metal);
    vec3 mirror = mix(vec3(0.04), base.rgb, metal);
    float facing = max(dot(n, toViewer), 1e-3);

    vec3 sum = diffuse * (lightFromAround(n) + least) * open;
    for (int i = 0; i < 3; ++i) {
        vec3 to = lampDirections[i];
        float lit = max(dot(n, to), 0.0);
        vec3 halfway = normalize(to + toViewer);
        float a = min(roughness * roughness + lampSizes[i] * 0.5, 1.0);
        float nh = max(dot(n, halfway), 0.0);
        float spread = nh * nh * (a * a - 1.0) + 1.0;
        float facets = a * a / (kPi * spread * spread);
        float shadowing = 0.5 / max(mix(2.0 * lit * facing, lit + facing, a), 1e-4);
        vec3 fresnel = mirror + (1.0 - mirror) * pow(1.0 - max(dot(halfway, toViewer), 0.0), 5.0);
        float reach = mix(1.0, open, 0.7) * (i == 0 ? reaching : 1.0);
        sum += (diffuse * (1.0 - fresnel) + fresnel * (facets * shadowing * kPi)) * lampColours[i] * (lit * reach);
    }

    vec3 bounced = reflect(-toViewer, n);
    vec3 around = mix(surroundings(bounced, roughness * 0.5), lightFromAround(bounced) + least, roughness * roughness);
    vec4 fit = roughness * vec4(-1.0, -0.0275, -0.572, 0.022) + vec4(1.0, 0.0425, 1.04, -0.04);
    float bend = min(fit.x * fit.x, exp2(-9.28 * facing)) * fit.x + fit.y;
    vec2 share = vec2(-1.04, 1.04) * bend + fit.zw;
    // What is hidden from the sky mirrors what hides it.
    sum = exposure * (sum + around * (mirror * share.x + share.y) * mix(0.25, 1.0, open));
    // Highlights approach white without reaching it, as on film.
    return mix(sum, 0.6 + 0.4 * (1.0 - exp((0.6 - sum) / 0.4)), greaterThan(sum, vec3(0.6)));
}
#else
const vec3 kKeyDirection = vec3(-0.4082, 0.6532, 0.6379);
const vec3 kFillDirection = vec3(0.8222, -0.0514, 0.5669);

vec3 shaded(vec3 n, vec3 toViewer, float open, float reaching)
{
    vec3 around = toEnvironment * n;
    vec3 light = (lightFromAround(around) * 0.56 + least) * open;
    // A light that throws shadows belongs to the model as they do.
    vec3 key = shadowed ? toLamp : kKeyDirection;
    light += lampColours[0] * (0.8 * max(dot(n, key), 0.0) * mix(1.0, open, 0.7) * reaching);
    light += lampColours[1] * (0.5 * max(dot(n, kFillDirection), 0.0));
    float facing = max(dot(n, toViewer), 0.0);
    light += 0.10 * facing;
    vec3 halfway = normalize(key + toViewer);
    float gloss = pow(max(dot(n, halfway), 0.0), 48.0) * 0.16 * reaching;
    float rim = pow(1.0 - facing, 4.0) * 0.10;
    return base.rgb * light + vec3(gloss + rim * (around.z * 0.5 + 0.5));
}
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

    float open = occluded ? texture(occlusion, gl_FragCoord.xy * occlusionPlace.xy + occlusionPlace.zw).r : 1.0;
    flatNormal = normalize(flatNormal);
    float reaching = lampReaches(viewPosition, flatNormal);
    // A lamp lights its surroundings too, so that its shadow is a little darker than without it.
    open *= 1.0 - 0.32 * (1.0 - reaching) * smoothstep(0.0, 0.35, dot(flatNormal, toLamp));
#ifdef REALISTIC
    vec3 shade = shaded(toEnvironment * n, toEnvironment * toViewer, open, reaching);
#else
    vec3 shade = shaded(n, toViewer, open, reaching);
#endif
    if (glow != vec3(0.0))
        shade = mix(shade, glow * (0.45 + 0.55 * max(dot(n, toViewer), 0.0)), 0.68);
#ifndef REALISTIC
    // Bright parts bend over softly in place of being cut off.
    shade = shade / (1.0 + max(shade - 0.75, vec3(0.0)) * 0.55);
#endif
    result = vec4(pow(clamp(shade, 0.0, 1.0), vec3(1.0 / 2.2)), base.a);
}
)";

/// Edges fade away on bodies that cover only some pixels, where lines would be all that is to be seen. Dashes
/// are measured along the edge, in pixels at the distance of the body's middle, so that they neither crawl
/// when the camera moves nor begin anew at each piece of a curve.
inline constexpr const char* kEdgeVertex = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 1) in float along;
layout(location = 3) in vec4 row0;
layout(location = 4) in vec4 row1;
layout(location = 5) in vec4 row2;
layout(location = 6) in vec4 colour;
layout(location = 7) in uint flags;

uniform mat4 view;
uniform mat4 projection;
uniform vec4 edgeColour;
uniform bool tinted;
uniform vec3 pointedColour;
uniform vec3 selectedColour;
uniform vec4 middle;        // of the body, and its size
uniform float pixelsOfUnit; // at distance 1 in a perspective
uniform bool perspective;

flat out vec4 line;
out float dash;

void main()
{
    vec4 p = vec4(position, 1.0), m = vec4(middle.xyz, 1.0);
    vec4 seen = view * vec4(dot(row0, p), dot(row1, p), dot(row2, p), 1.0);
    gl_Position = projection * seen;
    float away = perspective ? max(-(view * vec4(dot(row0, m), dot(row1, m), dot(row2, m), 1.0)).z, 1e-6) : 1.0;
    dash = along * pixelsOfUnit / away;
    float across = middle.w * pixelsOfUnit / (perspective ? max(-seen.z, 1e-6) : 1.0);
    float strength = smoothstep(9.0, 60.0, across);
    vec3 tint = !tinted || (flags & 3u) == 0u ? edgeColour.rgb : (flags & 2u) != 0u ? selectedColour : pointedColour;
    line = vec4(tint, edgeColour.a * strength * mix(0.5, 1.0, colour.a));
    // What cannot be seen goes where it is thrown away before it costs pixels.
    if (strength < 0.03)
        gl_Position = vec4(2.0, 2.0, 2.0, 1.0);
}
)";

inline constexpr const char* kEdgeFragment = R"(#version 330 core
flat in vec4 line;
in float dash;
uniform float dashLength; // in the units of `dash`, the gap included; 0 for a line without gaps
out vec4 result;

void main()
{
    if (dashLength > 0.0 && fract(dash / dashLength) > 0.58)
        discard;
    result = line;
}
)";

/// The outline of round faces: within a triangle, the line on which the surface turns away from the viewer,
/// found from the normals of its corners. Flat faces have none but their edges.
inline constexpr const char* kOutlineVertex = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 1) in vec4 normal;
layout(location = 3) in vec4 row0;
layout(location = 4) in vec4 row1;
layout(location = 5) in vec4 row2;
layout(location = 6) in vec4 colour;
layout(location = 7) in uint flags;

uniform mat4 view;
uniform vec4 edgeColour;
uniform bool tinted;
uniform vec3 pointedColour;
uniform vec3 selectedColour;
uniform vec4 middle;
uniform float pixelsOfUnit;
uniform bool perspective;

out vec3 cornerPlace;
out float cornerFacing;
out vec4 cornerLine;

void main()
{
    vec4 p = vec4(position, 1.0);
    cornerPlace = (view * vec4(dot(row0, p), dot(row1, p), dot(row2, p), 1.0)).xyz;
    vec3 x = vec3(row0.x, row1.x, row2.x), y = vec3(row0.y, row1.y, row2.y), z = vec3(row0.z, row1.z, row2.z);
    vec3 turned = mat3(view) * (cross(y, z) * normal.x + cross(z, x) * normal.y + cross(x, y) * normal.z);
    cornerFacing = dot(turned, perspective ? -normalize(cornerPlace) : vec3(0.0, 0.0, 1.0));
    float across = middle.w * pixelsOfUnit / (perspective ? max(-cornerPlace.z, 1e-6) : 1.0);
    vec3 tint = !tinted || (flags & 3u) == 0u ? edgeColour.rgb : (flags & 2u) != 0u ? selectedColour : pointedColour;
    cornerLine = vec4(tint, edgeColour.a * smoothstep(9.0, 60.0, across) * mix(0.5, 1.0, colour.a));
}
)";

inline constexpr const char* kOutlineGeometry = R"(#version 330 core
layout(triangles) in;
layout(line_strip, max_vertices = 2) out;
in vec3 cornerPlace[];
in float cornerFacing[];
in vec4 cornerLine[];
uniform mat4 projection;
uniform vec4 middle;
uniform bool perspective;
uniform vec2 pixels; // half the size of what is drawn into
flat out vec4 line;
out float dash;

void main()
{
    // Corners that face neither way, to rounding, count as facing away: planes seen from their side have no line.
    bool seen0 = cornerFacing[0] > 1e-6, seen1 = cornerFacing[1] > 1e-6, seen2 = cornerFacing[2] > 1e-6;
    if (seen0 == seen1 && seen1 == seen2)
        return;
    if (cornerLine[0].a < 0.02)
        return;
    // The line runs between the two sides that meet in the corner which differs from the others.
    int tip = seen1 == seen2 ? 0 : seen0 == seen2 ? 1 : 2;
    vec4 ends[2];
    for (int i = 0; i < 2; ++i) {
        int other = (tip + 1 + i) % 3;
        float part = cornerFacing[tip] / (cornerFacing[tip] - cornerFacing[other]);
        vec3 place = mix(cornerPlace[tip], cornerPlace[other], clamp(part, 0.0, 1.0));
        // A little nearer, so that the flat pieces which a round face is made of do not hide its outline.
        float nearer = 0.003 * middle.w;
        place += perspective ? -normalize(place) * nearer : vec3(0.0, 0.0, nearer);
        ends[i] = projection * vec4(place, 1.0);
    }
    vec2 from = ends[0].xy / ends[0].w * pixels, to = ends[1].xy / ends[1].w * pixels;
    bool level = abs(to.x - from.x) > abs(to.y - from.y);
    for (int i = 0; i < 2; ++i) {
        line = cornerLine[tip];
        vec2 at = i == 0 ? from : to;
        dash = level ? at.x : at.y;
        gl_Position = ends[i];
        EmitVertex();
    }
    EndPrimitive();
}
)";

/// One triangle over the whole tile.
inline constexpr const char* kBackgroundVertex = R"(#version 330 core
uniform vec4 rays; // of the lower left and the upper right corner, at distance 1 from the camera
out vec2 ray;

void main()
{
    vec2 corner = vec2((gl_VertexID & 1) * 4 - 1, (gl_VertexID >> 1) * 4 - 1);
    ray = mix(rays.xy, rays.zw, corner * 0.5 + 0.5);
    gl_Position = vec4(corner, 1.0, 1.0);
}
)";

/// With GLOW, light about the first lamp and the stars are added, which most skies do without.
inline constexpr const char* kBackgroundFragment = R"(
in vec2 ray;
uniform float stars;
uniform sampler2D table; // of what is seen, by the elevation's root
out vec4 result;

// One star in some of the small cubes that a direction runs through, where it is in the middle of one.
float star(vec3 d)
{
    vec3 place = d * 90.0, cell = floor(place);
    vec3 dice = fract(sin(vec3(dot(cell, vec3(127.1, 311.7, 74.7)), dot(cell, vec3(269.5, 183.3, 246.1)),
                               dot(cell, vec3(113.5, 271.9, 124.6)))) * 43758.5453);
    if (dice.x < 0.94)
        return 0.0;
    float away = distance(place - cell, 0.3 + 0.4 * dice.zyx);
    return (0.25 + 0.75 * dice.y) * smoothstep(0.16, 0.04, away);
}

void main()
{
    vec3 d = toEnvironment * normalize(vec3(ray, -1.0));
    vec3 seen = texture(table, vec2(sign(d.z) * sqrt(abs(d.z)) * 0.5 + 0.5, 0.5)).rgb;
#ifdef GLOW
    if (d.z > 0.0) {
        float towards = max(dot(d, lampDirections[0]), 0.0);
        vec3 more = lampColours[0] * (falls.w * (0.35 * pow(towards, 24.0) + pow(towards, 900.0)));
        if (stars > 0.0)
            more += stars * star(d) * smoothstep(0.0, 0.25, d.z);
        seen = pow(min(pow(seen, vec3(2.2)) + more, vec3(1.0)), vec3(1.0 / 2.2));
    }
#endif
    // A grain finer than one step of the colours hides their bands.
    float grain = fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715)))) - 0.5;
    result = vec4(seen + grain / 255.0, 1.0);
}
)";

/// Lines and pictures that are no bodies; the points come in camera coordinates.
inline constexpr const char* kHelperVertex = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 1) in vec2 place;
uniform mat4 projection;
out vec2 inPicture;

void main()
{
    inPicture = place;
    gl_Position = projection * vec4(position, 1.0);
}
)";

inline constexpr const char* kHelperFragment = R"(#version 330 core
in vec2 inPicture;
uniform bool textured;
uniform sampler2D picture; // premultiplied
uniform vec4 colour;
out vec4 result;

void main()
{
    vec4 seen = textured ? texture(picture, inPicture) : vec4(1.0);
    if (seen.a < 0.004)
        discard;
    result = vec4(seen.rgb / seen.a, seen.a) * colour;
}
)";

} // namespace Rendra::Shaders
