"""How the model is shown: visual styles, shadows and effects, projection, grid."""

from pen import (Block, Cube, arc, area, circle, ellipse, on_ellipse, picture, pointer, poly, rect, slash, turning)

picture("Display/ViewDisplay").line(rect(2.5, 3.5, 19, 13, 1.5), "M8 20.5 H16 M12 16.5 V20.5") \
    .accent(Cube(12, 10, 4.4).edges())

# --- visual styles, all on one block


def style(name):
    return picture(f"Display/{name}")


def faces(drawing, block, strength=1.0):
    drawing.tint(block.top_face(), opacity=0.25 * strength).tint(block.front_face(), opacity=0.5 * strength)
    return drawing.tint(block.side_face(), opacity=0.85 * strength)


block = Block()
style("Wireframe").line(block.visible(), block.hidden())
style("WireframeHL").line(block.visible()).accent_dashed(block.hidden())
style("WireframeHLR").line(block.visible())
faces(style("Shaded"), block)
faces(style("ShadedWithEdges"), block).line(block.visible())
# Paler, so that the hidden edges show through.
faces(style("ShadedHL"), block, 0.4).line(block.visible()).dashed(block.hidden())
style("Realistic").tint(circle(12, 10.5, 8), opacity=0.55) \
    .tint(area(*(on_ellipse(12, 10.5, 8, 8, a) for a in range(-20, 161, 10))), opacity=0.4) \
    .accent(circle(12, 10.5, 8)).line(arc(12, 10.5, 5, 190, 250)).shade(ellipse(13, 20.8, 8, 1.6), opacity=0.7)

# --- shadows and reflections: amber when they are on, struck out when they are off


def on_and_off(name, thing, effect, effect_lines=""):
    on = picture(f"Display/{name}On").glow_tint(effect, opacity=0.55)
    if effect_lines:
        on.glow(effect_lines)
    on.line(thing)
    off = picture(f"Display/{name}Off")
    if effect_lines:
        off.thin(effect_lines)
    else:
        off.shade(effect)
    off.line(thing).accent(slash())


ball = circle(12, 8.7, 5.7)
on_and_off("GroundShadow", ball, ellipse(12, 18.6, 8.5, 2.4), ellipse(12, 18.6, 8.5, 2.4))
cube = Cube(12, 7.4, 5.2)
mirrored = poly(cube.left_down, (cube.left_down[0], 17.5), (12, 21), (cube.right_down[0], 17.5))
on_and_off("GroundReflection", cube.edges() + " M3 13.8 H21",
           area((7.5, 15.6), (16.5, 15.6), (16.5, 18.6), (12, 21.2), (7.5, 18.6)),
           area((7.5, 15.8), (16.5, 15.8), (16.5, 18.6), (12, 21.2), (7.5, 18.6)))
corner = poly((12, 3), (12, 12.5)) + " " + poly((3.5, 17.5), (12, 12.5), (20.5, 17.5))
dim = area((12, 5), (15.5, 11), (18.5, 16.3), (12, 17.3), (5.5, 16.3), (8.5, 11))
on_and_off("AmbientOcclusion", corner + " " + rect(3, 3, 18, 18, 2), dim)
caster = Cube(8.8, 9.6, 6.4)
cast = area(caster.right_down, (21.8, 14.6), (16.2, 20.6), caster.bottom)
on_and_off("ObjectShadow", caster.edges(), cast, cast)

ring = " ".join(turning(12, 12, 9.6, a, a + 80, 2.6) for a in (-70, 50, 170))
dots = [circle(*on_ellipse(12, 12, 4.2, 4.2, a), 2.4) for a in (-90, 30, 150)]
picture("Display/ColorCyclingOn").line(ring).glow_solid(dots[0]).accent_solid(dots[1]).solid(dots[2])
picture("Display/ColorCyclingOff").line(" ".join(arc(12, 12, 9.6, a, a + 80) for a in (-70, 50, 170))).thin(*dots) \
    .accent(slash())

# --- effects without a switch of their own

picture("Display/NPREffect") \
    .line("M4 20.5 L5.3 15.6 L16.6 4.3 A1.6 1.6 0 0 1 18.9 4.3 L20.2 5.6 A1.6 1.6 0 0 1 20.2 7.9 L8.9 19.2Z",
                                  "M14.5 6.4 L18.1 10") \
    .accent("M11.5 20.5 C13 18.2 14.4 21.8 16 19.8 C17 18.6 18.5 20.8 20.5 19.3")
picture("Display/Environment").tint("M3.2 13.5 A9 9 0 0 1 20.8 13.5Z", opacity=0.3) \
    .line("M3 19 V13 A9 9 0 0 1 21 13 V19Z") \
    .accent("M3 15 L8 11.5 L12.5 15.2 L15.5 13 L21 16").accent_solid(circle(14.8, 8.7, 1.7))
picture("Display/MSAA") \
    .line(poly((3, 20.5), (3, 16.5), (7, 16.5), (7, 12.5), (11, 12.5), (11, 8.5), (15, 8.5), (15, 4.5), (19, 4.5))) \
    .accent("M8 20.5 C13.5 18.5 18.5 13.5 20.8 8.5")
glowing = Cube(10.8, 10.8, 5.2)
picture("Display/SelectionEffect").line(glowing.edges()).accent_dashed(Cube(10.8, 10.8, 8.6).outline()) \
    .accent_solid(pointer(15, 13.2, 0.75))

# --- projection and grid

picture("Display/Perspective").line(rect(3, 3, 18, 18, 0.5), rect(8.5, 8.5, 7, 7, 0.5)) \
    .accent("M4 4 L8 8 M20 4 L16 8 M20 20 L16 16 M4 20 L8 16")
picture("Display/Orthographic").line(rect(3, 9, 12, 12, 0.5), rect(9, 3, 12, 12, 0.5)) \
    .accent("M3.6 8.4 L8.4 3.6 M15.6 8.4 L20.4 3.6 M15.6 20.4 L20.4 15.6 M3.6 20.4 L8.4 15.6")
picture("Display/Grid").line(rect(3, 3, 18, 18, 1)).accent("M9 3 V21 M15 3 V21 M3 9 H21 M3 15 H21")
