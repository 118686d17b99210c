"""The commands that build solids and the kinds of documents, in the design add-in."""

from pen import Block, Cube, arc, area, arrow, circle, ellipse, on_ellipse, picture, plus, poly, rect, turning

HOME = "UI/Design"

box = Block()
picture("Box", home=HOME).tint(box.top_face()).line(box.visible()).accent(rect(3.5, 8, 12.5, 12.5, 0))
picture("Cylinder", home=HOME).tint(ellipse(12, 6, 7.5, 3)) \
    .line("M4.5 6 V18", "M19.5 6 V18", arc(12, 18, 7.5, 180, 0, ry=3)).accent(ellipse(12, 6, 7.5, 3))
picture("Sphere", home=HOME).tint(circle(12, 12, 9)).line(circle(12, 12, 9)) \
    .accent(arc(12, 12, 9, 180, 0, ry=3.2))
picture("Cone", home=HOME).tint(ellipse(12, 17.5, 8, 3.2)).line("M12 3 L4 17.5", "M12 3 L20 17.5") \
    .accent(ellipse(12, 17.5, 8, 3.2))
picture("Torus", home=HOME).tint(ellipse(12, 12, 9.5, 7)).line(ellipse(12, 12, 9.5, 7)) \
    .accent(ellipse(12, 10.8, 4.4, 2.2))
picture("Import", home=HOME).line("M11 3.5 H5 A1 1 0 0 0 4 4.5 V19.5 A1 1 0 0 0 5 20.5 H19 A1 1 0 0 0 20 19.5 V12") \
    .accent(arrow(20.5, 3.5, 11.5, 12.5, 4.5))
picture("Export", home=HOME).line("M9.5 4.5 H5 A1 1 0 0 0 4 5.5 V19.5 A1 1 0 0 0 5 20.5 H18.5 A1 1 0 0 0 19.5 19.5 V15") \
    .accent(arrow(11, 13, 20.5, 3.5, 4.5))

# --- changing what is there

picture("Edit/Move", home=HOME).dashed(rect(2.5, 12.5, 9, 9)).tint(rect(12.5, 2.5, 9, 9)).line(rect(12.5, 2.5, 9, 9)) \
    .accent(arrow(7, 17, 14.5, 9.5))
picture("Edit/Copy", home=HOME).line(rect(3, 8.5, 12.5, 12.5)).tint(rect(8.5, 3, 12.5, 12.5)) \
    .accent(rect(8.5, 3, 12.5, 12.5), plus(14.75, 9.25, 2.6))
picture("Edit/Rotate", home=HOME).tint(rect(8, 8, 8, 8)).line(rect(8, 8, 8, 8)).accent(turning(12, 12, 9.5, 160, 400, 3.4))

# Two round things that overlap; their outlines meet at the middle.
TOP, BOTTOM = "12 7.13", "12 16.87"
both = circle(8.5, 12, 6) + " " + circle(15.5, 12, 6)
union = f"M{TOP} A6 6 0 1 0 {BOTTOM} A6 6 0 1 0 {TOP}Z"
rest = f"M{TOP} A6 6 0 1 0 {BOTTOM} A6 6 0 0 1 {TOP}Z"
lens = f"M{TOP} A6 6 0 0 1 {BOTTOM} A6 6 0 0 1 {TOP}Z"
picture("Edit/Join", home=HOME).tint(union).accent(union)
picture("Edit/Cut", home=HOME).dashed(circle(15.5, 12, 6)).tint(rest).accent(rest)
picture("Edit/Intersect", home=HOME).line(both).tint(lens, opacity=0.6).accent(lens)

stump = "M11 3.5 H3.5 V20.5 H20.5 V13"
picture("Edit/Fillet", home=HOME).tint(stump + " A9.5 9.5 0 0 0 11 3.5Z").line(stump).accent("M11 3.5 A9.5 9.5 0 0 1 20.5 13")
picture("Edit/Chamfer", home=HOME).line(stump).dashed("M14.5 3.5 H20.5 V9.5").accent("M11 3.5 L20.5 13")
picture("Edit/Mirror", home=HOME).dashed("M12 2.5 V21.5").line(area((9, 5), (9, 19), (2.5, 19))) \
    .tint(area((15, 5), (15, 19), (21.5, 19))).accent(area((15, 5), (15, 19), (21.5, 19)))
row = [rect(x, 13, 5, 5) for x in (2.5, 9.5, 16.5)]
picture("Edit/LinearPattern", home=HOME).line(row[0]).tint(*row[1:]).accent(*row[1:]).accent(arrow(4, 7.5, 20.5, 7.5))
ring = [circle(*on_ellipse(12, 12, 7.8, 7.8, -90 + 60 * i), 2.3) for i in range(6)]
picture("Edit/CircularPattern", home=HOME).line(ring[0]).tint(*ring[1:]).accent(*ring[1:]).solid(circle(12, 12, 1.3))
drop = "M12 2.8 C8 8.3 5.3 11.3 5.3 14.5 A6.7 6.7 0 0 0 18.7 14.5 C18.7 11.3 16 8.3 12 2.8Z"
picture("Edit/Colour", home=HOME).tint("M5.5 13.5 C9 11.5 14 16 18.5 13.5 A6.7 6.7 0 0 1 5.5 13.5Z", opacity=0.6).line(drop) \
    .accent("M5.5 13.5 C9 11.5 14 16 18.5 13.5")

# --- the kinds of documents

design = Cube()
picture("Design", home=HOME).tint(design.top_face()).line(design.edges()).accent(design.top_face())
part = Cube(12, 14.2, 7)
picture("Simulation", home=HOME).line(part.edges()) \
    .accent(arrow(12, 1.5, 12, 7, 2.4), arrow(4.5, 3, 6.5, 8.6, 2.4), arrow(19.5, 3, 17.5, 8.6, 2.4))
picture("Documentation", home=HOME).line(rect(2.5, 4, 19, 16, 1.5)).line(poly((13, 20), (13, 15.5), (21.5, 15.5))) \
    .accent(rect(5.5, 7, 6.5, 5.5, 0)).thin("M14.5 8 H19 M14.5 11 H19 M5.5 16 H10")
