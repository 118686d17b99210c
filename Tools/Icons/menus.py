"""What only menus show: commands without a picture of their own, named by the attribute `picture` there."""

from pen import (Cube, arrow, bubble, check, circle, cross, eye, gear, open_page, person, picture, plus, poly, rect,
                 slash, star, turning, window)

HOME = "UI/Design"

# --- editing

picture("Edit/Cut").line(circle(6.5, 18, 3), circle(17.5, 18, 3)) \
    .accent(poly((8.2, 15.5), (16.8, 3)), poly((15.8, 15.5), (7.2, 3)))
picture("Edit/Copy").line(poly((15.5, 6.5), (15.5, 4), (14.5, 3), (4, 3), (3, 4), (3, 14.5), (4, 15.5), (6.5, 15.5))) \
    .tint(rect(8.5, 8.5, 12.5, 12.5)).accent(rect(8.5, 8.5, 12.5, 12.5))
picture("Edit/Paste").line("M15.5 5 H17.5 A1 1 0 0 1 18.5 6 V9 M9 20.5 H5 A1 1 0 0 1 4 19.5 V6 A1 1 0 0 1 5 5 H7",
                           rect(7, 3, 8.5, 4)) \
    .tint(rect(11.5, 11.5, 9.5, 9.5)).accent(rect(11.5, 11.5, 9.5, 9.5))
picture("Edit/Delete").line("M5.5 7 L6.5 20 A1 1 0 0 0 7.5 21 H16.5 A1 1 0 0 0 17.5 20 L18.5 7", 
    "M10 11 V17 M14 11 V17") \
    .accent("M3.5 7 H20.5 M9 6.5 V3.5 H15 V6.5")
picture("Edit/SelectAll").accent_dashed(rect(3, 3, 18, 18, 1)).tint(rect(7, 7, 10, 10)).line(rect(7, 7, 10, 10))
picture("Edit/InvertSelection").tint("M3 3 H12 V21 H3Z", opacity=0.6) \
    .accent("M12 3 H4 A1 1 0 0 0 3 4 V20 A1 1 0 0 0 4 21 H12") \
    .dashed("M12 3 H20 A1 1 0 0 1 21 4 V20 A1 1 0 0 1 20 21 H12").line("M12 2 V22")
glass = circle(16, 15, 4.2) + " " + poly((19.1, 18.1), (22, 21))
picture("Edit/FindInBrowser").line("M3 4.5 H20 M6.5 10 H13 M6.5 15.5 H10.5 M3 21 H12").accent(glass)
picture("Edit/FindInCanvas").line("M10.5 19 H4 A1 1 0 0 1 3 18 V5 A1 1 0 0 1 4 4 H20 A1 1 0 0 1 21 5 V9.5") \
    .accent(glass)
picture("Edit/Repeat").accent(turning(12, 12, 8.5, -60, 250, 4)).solid(circle(12, 12, 1.8))
picture("File/Revert").line(open_page()).accent(turning(17.5, 17.5, 3.8, 40, -240, 2.8))
picture("File/Recovered").line(open_page()).tint(circle(17.5, 17.5, 4.5)) \
    .accent(circle(17.5, 17.5, 4.5), plus(17.5, 17.5, 2.3))
picture("File/OpenAnother", home=HOME) \
    .line("M3 19 V5.5 A1 1 0 0 1 4 4.5 H9 L11.5 7.5 H17 A1 1 0 0 1 18 8.5 V10 M18 10 H7 L3 19.5 H11") \
    .accent(plus(17.5, 17.5, 4))
picture("Common/Preferences").line(gear(12, 12, 6.2, 8)).tint(circle(12, 12, 2.6)).accent(circle(12, 12, 2.6))

# --- looking from a side: the side that is seen is filled

seen = Cube()
picture("View/Home").line("M3 12 L12 4 L21 12").tint("M6 11 V20 H18 V11 L12 5.6Z").accent("M6 12 V20 H18 V12") \
    .line("M10 20 V14.5 H14 V20")
picture("View/SetHome").line("M3 12 L12 4 L21 12", "M6 11 V20 H18 V11").accent(arrow(12, 8.5, 12, 17))
picture("View/Front").line(seen.edges()).tint(seen.left_face(), opacity=0.7).accent(seen.left_face())
picture("View/Right").line(seen.edges()).tint(seen.right_face(), opacity=0.7).accent(seen.right_face())
picture("View/Top").line(seen.edges()).tint(seen.top_face(), opacity=0.7).accent(seen.top_face())


def far_side(name, *corners):
    """A side that is hidden from here, with an arrow's worth of it: the cube is dashed before it."""
    path = poly(*corners, closed=True)
    picture(name).line(seen.outline()).thin(seen.hidden()).tint(path, opacity=0.35).accent_dashed(path)


far_side("View/Back", seen.centre, seen.top, seen.right_up, seen.right_down)
far_side("View/Left", seen.centre, seen.top, seen.left_up, seen.left_down)
far_side("View/Bottom", seen.centre, seen.left_down, seen.bottom, seen.right_down)
picture("View/Isometric").tint(seen.outline()).accent(seen.edges()).solid(circle(12, 12, 1.9))

# --- what is shown and hidden

lids = eye(12, 12, 9.5, 6.3)
picture("View/Hide", home=HOME).line(lids, circle(12, 12, 2.6)).accent(slash())
picture("View/Show", home=HOME).line(lids).accent_solid(circle(12, 12, 3.2))
picture("View/ToggleVisibility", home=HOME).line("M2.5 12 Q12 -0.6 21.5 12", circle(12, 12, 2.6)) \
    .accent_dashed("M2.5 12 Q12 24.6 21.5 12")
picture("View/ShowAll", home=HOME).line(eye(12, 8.5, 9, 5.3)).accent_solid(circle(12, 8.5, 2.5)) \
    .tint(rect(4, 16.5, 16, 4.5)).accent(rect(4, 16.5, 16, 4.5))

# --- parts of the window

frame = rect(3, 4, 18, 16, 1.5)
picture("Panels/Feed").line(frame, "M15 4 V20").tint(rect(15, 4.5, 5.5, 15, 0)) \
    .accent("M17 8 H19 M17 12 H19 M17 16 H19")
picture("Panels/Properties").line(frame, "M14 4 V20").tint(rect(14, 4.5, 6.5, 15, 0)) \
    .accent("M16 8 H17 M19 8 H19 M16 12 H17 M19 12 H19 M16 16 H17 M19 16 H19")
picture("Panels/Palette").line(frame).tint(rect(12.5, 7, 6, 10, 0.5)).accent(rect(12.5, 7, 6, 10, 0.5))
picture("Panels/PaletteHidden").line(frame).accent_dashed(rect(12.5, 7, 6, 10, 0.5)).accent(slash())
picture("Panels/Toolbars").line(frame, "M3 13 H21").tint(rect(3.5, 4.5, 17, 8.5, 0)) \
    .accent("M6.5 8.7 H8 M11 8.7 H12.5 M15.5 8.7 H17")
picture("Panels/Toolbar").line(frame, "M3 9 H21") \
    .accent_solid(rect(5, 5.6, 2, 2, 0), rect(9, 5.6, 2, 2, 0), rect(13, 5.6, 2, 2, 0))
picture("Panels/Navigation").line(frame).tint(rect(6, 14, 12, 4, 1)).accent(rect(6, 14, 12, 4, 1))
picture("Panels/Cube") \
    .line("M14 4 H4.5 A1.5 1.5 0 0 0 3 5.5 V18.5 A1.5 1.5 0 0 0 4.5 20 H19.5 A1.5 1.5 0 0 0 21 18.5 V14") \
    .tint(Cube(17.5, 7, 4.6).outline()).accent(Cube(17.5, 7, 4.6).edges())
picture("Panels/ToTop").line(frame).tint(rect(3.5, 4.5, 17, 4, 0)).line("M3 8.5 H21") \
    .accent(arrow(12, 17.5, 12, 11, 3.5))
picture("Panels/ToBottom").line(frame).tint(rect(3.5, 15.5, 17, 4, 0)).line("M3 15.5 H21") \
    .accent(arrow(12, 6.5, 12, 13, 3.5))
picture("Panels/Reset").line(frame, "M3 9 H21 M9 9 V20").accent(turning(15, 14.5, 3.4, -160, 120, 2.6))
picture("Panels/Split").line(frame).tint(rect(12, 4.5, 8.5, 15, 0)).accent("M12 4 V20 M3 12 H21")
picture("Panels/ToFront").line("M8 8 H4 A1 1 0 0 1 3 7 V4 A1 1 0 0 1 4 3 H14 A1 1 0 0 1 15 4 V8") \
    .tint(rect(8, 8, 13, 13)).accent(rect(8, 8, 13, 13), "M8 11.5 H21")
picture("Panels/CloseWindow").line(window()).accent(cross(12, 14, 3))

# --- asking, telling, about

picture("Help/Discussion").line("M8 16 H3.5 V4.5 A1 1 0 0 1 4.5 3.5 H15 A1 1 0 0 1 16 4.5 V6.5") \
    .tint(rect(8, 9, 13, 9)) \
    .accent("M9 9 H20 A1 1 0 0 1 21 10 V17 A1 1 0 0 1 20 18 H19 V21.5 L14.5 18 H9 A1 1 0 0 1 8 17 V10 A1 1 0 0 1 9 9Z")
picture("Help/Suggest").line("M9 18 H15 M10 21 H14") \
    .tint(circle(12, 9.5, 6)).accent("M9 15.5 C9 13.5 6 12.5 6 9 A6 6 0 0 1 18 9 C18 12.5 15 13.5 15 15.5Z")
picture("Help/Search").line(circle(10, 10, 7), "M15.2 15.2 L20.5 20.5").accent("M7 8.4 H13 M7 11.6 H11")
picture("Help/About").line(circle(12, 12, 9)).accent("M12 11 V16.8").accent_solid(circle(12, 7.6, 1.2))
picture("Help/Privacy").line(person(9, 7.5, 1.2)).accent(check(18, 16.5, 3.2))

# --- the design add-in

picture("Edit/Separate", home=HOME).line(rect(2.5, 14, 7, 7)).tint(rect(14.5, 14, 7, 7)).accent(rect(14.5, 14, 7, 7)) \
    .accent(arrow(10.5, 7, 4, 7, 3), arrow(13.5, 7, 20, 7, 3))
corner = Cube(10, 10.5, 7.5)
picture("Edit/EditComponent", home=HOME).line(corner.edges()) \
    .accent("M13.5 21.5 L14.3 18.2 L19.8 12.7 L22.3 15.2 L16.8 20.7Z")

# --- the dialogs of the cloud drive

folder = "M3 18.5 V5.5 A1 1 0 0 1 4 4.5 H9.5 L12 7.5 H20 A1 1 0 0 1 21 8.5 V18.5 A1 1 0 0 1 20 19.5 H4 A1 1 0 0 1 3 18.5Z"
picture("Cloud/Folder").tint(folder).line(folder)
picture("Cloud/NewFolder") \
    .line("M11.5 19.5 H4 A1 1 0 0 1 3 18.5 V5.5 A1 1 0 0 1 4 4.5 H9.5 L12 7.5 H20 A1 1 0 0 1 21 8.5 V11.5") \
    .accent(plus(18, 18, 3.5))
picture("Cloud/Up").line("M4 20 H20").accent(arrow(12, 16.5, 12, 4, 5))
picture("Cloud/Refresh").accent(turning(12, 12, 8, 200, 345, 3.6), turning(12, 12, 8, 20, 165, 3.6))
