"""Moving the camera: icons that serve as pointers too, and the pointers of the orbit's zones. Named views."""

from pen import (Cube, arc, area, arrow, circle, cross, eye, picture, plus, poly, turning)


def icon_and_pointer(name, drawing):
    """An icon whose 32 pixel picture is the mouse pointer of its command as well, and so has a halo in that size."""
    drawing(picture(name))
    drawing(picture(f"{name}.pointer", halo=True))


icon_and_pointer("Camera/FreeOrbit", lambda orbit: orbit.line(circle(12, 12, 9)).accent(
    turning(12, 12, 9, 165, 38, 3, ry=3.6), turning(12, 12, 3.6, -75, 52, 3, ry=9)))
picture("Camera/ConstrainedOrbit").line("M12 2.5 V21.5").accent(turning(12, 12, 9.3, 120, -195, 3.2, ry=4.2))
hand = ("M8 13.4 V6.2 A1.5 1.5 0 0 1 11 6.2 V4.4 A1.5 1.5 0 0 1 14 4.4 V5.4 A1.5 1.5 0 0 1 17 5.4 V8 A1.5 1.5 0 0 1 20 8"
        " V15 A6.5 6.5 0 0 1 13.5 21.5 H12.6 C10.2 21.5 8.8 20.4 7.6 18.6 L4.3 13.9 A1.6 1.6 0 0 1 6.9 12Z")
icon_and_pointer("Camera/Pan",
                 lambda pan: pan.tint(hand, opacity=0.35).line(hand, "M11 6.2 V11 M14 5 V11 M17 8 V11.5"))
glass = circle(10, 10, 7)
icon_and_pointer("Camera/Zoom",
                 lambda zoom: zoom.tint(glass).line(glass, poly((15.2, 15.2), (21, 21))).accent(plus(10, 10, 3.2)))
picture("Camera/LookAt").line(eye(12, 6.3, 6.5, 4)).solid(circle(12, 6.3, 1.7)).accent(arrow(12, 10.3, 12, 17, 2.8)) \
    .tint(area((7, 15.5), (22, 15.5), (17, 21), (2, 21))).line("M9.5 15.5 H7 L2 21 H17 L22 15.5 H14.5")
fitted = Cube(12, 12, 5.6)
picture("Camera/ZoomAll") \
    .line("M3 8 V4 A1 1 0 0 1 4 3 H8 M16 3 H20 A1 1 0 0 1 21 4 V8 M21 16 V20 A1 1 0 0 1 20 21 H16"
                               " M8 21 H4 A1 1 0 0 1 3 20 V16") \
    .tint(fitted.outline()).accent(fitted.edges())
picture("Camera/Pivot").line(circle(12, 12, 5.6), "M12 2.5 V8 M12 16 V21.5 M2.5 12 H8 M16 12 H21.5") \
    .accent_solid(circle(12, 12, 2.2))
# The texture of the pivot in the scene, where it lies over a model of any colour.
picture("Camera/PivotTexture", halo=True).line(circle(12, 12, 7), "M12 2.5 V6 M12 18 V21.5 M2.5 12 H6 M18 12 H21.5") \
    .accent_solid(circle(12, 12, 2.6))

# Pointers of the orbit's zones: about the horizontal axis, the vertical one, the line of sight, and out.
picture("Camera/OrbitX", halo=True).line("M2.5 12 H21.5").accent(turning(12, 12, 4.2, 30, -75, 3.4, ry=9.3)) \
    .accent(turning(12, 12, 4.2, 210, 105, 3.4, ry=9.3))
picture("Camera/OrbitY", halo=True).line("M12 2.5 V21.5").accent(turning(12, 12, 9.3, 60, 165, 3.4, ry=4.2)) \
    .accent(turning(12, 12, 9.3, 240, 345, 3.4, ry=4.2))
picture("Camera/OrbitZ", halo=True).accent(turning(12, 12, 8.5, 200, 345, 3.6), turning(12, 12, 8.5, 20, 165, 3.6)) \
    .solid(circle(12, 12, 1.5))
picture("Camera/OrbitExit", halo=True).line(arc(12, 12, 9, -60, 240)).accent(cross(12, 12, 3.4))

# --- named views: a camera on a picture's frame

body = ("M3 7.5 H7 L8.6 5 H13.4 L15 7.5 H19 A1 1 0 0 1 20 8.5 V11 M10.5 18.5 H4 A1 1 0 0 1 3 17.5 V7.5")
lens = circle(11, 12.4, 3.2)
picture("NamedViews/NewNamedView").line(body, lens).accent(plus(18.3, 18, 3.3))
picture("NamedViews/DeleteNamedView").line(body, lens).accent(cross(18.3, 18, 2.8))
picture("NamedViews/UpdateNamedView").line(body, lens).accent(turning(18, 18, 3.6, -150, 130, 2.8))
