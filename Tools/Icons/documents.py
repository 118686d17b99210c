"""Files, assets, the cloud drive, shells, transcripts, the web and the community."""

from pen import (Cube, area, arrow, bubble, check, circle, cloud, cross, ellipse, gear, head, open_page, page,
                 person, picture, play, plus, poly, rect, star, turning, window)

# --- the application and its files

picture("Application/Exit").line("M13.5 3 H5 A1 1 0 0 0 4 4 V20 A1 1 0 0 0 5 21 H13.5") \
    .accent(arrow(9.5, 12, 21, 12, 4.5))

picture("File/New").line(open_page()).accent(plus(18, 18, 3.5))
picture("File/Open").line("M3 19 V5.5 A1 1 0 0 1 4 4.5 H9 L11.5 7.5 H18 A1 1 0 0 1 19 8.5 V10.5") \
    .tint("M3 19 L6 10.5 H22 L19 19.5 H3.5Z").accent("M3 19.5 L6 10.5 H22 L19 19.5Z")
picture("File/OpenDocuments").line("M6 17 H4.5 A1 1 0 0 1 3.5 16 V4 A1 1 0 0 1 4.5 3 H14 A1 1 0 0 1 15 4 V5") \
    .tint("M9 8 H15.5 L20.5 13 V21 H9Z") \
    .accent("M9 20 V9 A1 1 0 0 1 10 8 H15.5 L20.5 13 V20 A1 1 0 0 1 19.5 21 H10 A1 1 0 0 1 9 20Z", "M15.5 8 V13 H20.5")
picture("File/Recent").line("M10.5 18.5 H4 A1 1 0 0 1 3 17.5 V5.5 A1 1 0 0 1 4 4.5 H9 L11.5 7.5 H19 A1 1 0 0 1 20 8.5 V10") \
    .tint(circle(17, 17, 5)).accent(circle(17, 17, 5), poly((17, 14), (17, 17), (19.2, 18.2)))
picture("File/Save") \
    .line("M4 3.5 H16.5 L20.5 7.5 V19.5 A1 1 0 0 1 19.5 20.5 H4.5 A1 1 0 0 1 3.5 19.5 V4 A.5 .5 0 0 1 4 3.5Z",
                          "M7.5 3.5 V8.5 H15 V3.5") \
    .tint(rect(7, 13, 10, 7.5, 0)).accent("M7 20.5 V13 H17 V20.5")
picture("File/Close").line(open_page()).accent(cross(18, 18, 3))
picture("File/CloseAll") \
    .line("M10.5 21 H7 A1 1 0 0 1 6 20 V7 A1 1 0 0 1 7 6 H14 L18.5 10.5 V13", "M14 6 V10.5 H18.5") \
    .line("M3 17 V4 A1 1 0 0 1 4 3 H12").accent(cross(18, 18.5, 3))
picture("File/WelcomeScreen").line(window()).accent_solid(star(12, 14, 5, 1.7))
picture("File/TourGuide").line("M12 3 V21", "M8.5 21 H15.5") \
    .tint(area((5, 5), (17, 5), (20, 7.5), (17, 10), (5, 10))) \
    .accent(area((5, 5), (17, 5), (20, 7.5), (17, 10), (5, 10))) \
    .line(poly((12, 12), (6.5, 12), (4, 14.3), (6.5, 16.6), (12, 16.6)))

# --- assets

active = Cube()
picture("Assets/Active").tint(active.outline(), opacity=0.3).accent_solid(active.top_face()).accent(active.edges())
picture("Assets/Inactive").dashed(Cube().outline()).thin(Cube().inner())
corner = Cube(10.2, 10.6, 7.6)
picture("Assets/New").line(corner.edges()).accent(plus(19, 18.5))
picture("Assets/Close").line(corner.edges()).accent(cross(19, 18.5, 2.6))
left, right = Cube(9.2, 12, 7), Cube(14.8, 12, 7)
picture("Assets/Next").line(left.edges()).accent(poly((18.3, 7.5), (22, 12), (18.3, 16.5)))
picture("Assets/Previous").line(right.edges()).accent(poly((5.7, 7.5), (2, 12), (5.7, 16.5)))
boxed = Cube(9, 10.2, 3.9)
picture("Assets/Export") \
    .line("M15 20.5 H4 A1 1 0 0 1 3 19.5 V4.5 A1 1 0 0 1 4 3.5 H10.5 L15 8 V11", "M10.5 3.5 V8 H15") \
    .thin(Cube(8.6, 13.2, 3.6).edges()).accent(arrow(13, 15.8, 21.5, 15.8, 3.5))

# --- pictures of the canvas

picture("Document/Image").line(rect(3, 4.5, 18, 15, 1.5)).solid(circle(8, 9.3, 1.6)) \
    .tint(area((3.5, 17.5), (9, 12.8), (12, 15.3), (16, 10.5), (20.5, 15.5), (20.5, 18.7), (3.5, 18.7))) \
    .accent(poly((3.5, 17.5), (9, 12.8), (12, 15.3), (16, 10.5), (20.5, 15.5)))
picture("Document/SharePicture").line("M13 4.5 H4.5 A1.5 1.5 0 0 0 3 6 V18 A1.5 1.5 0 0 0 4.5 19.5 H19.5 A1.5 1.5 0 0 0 21 18 V13.5") \
    .line(poly((3.5, 17.5), (8.5, 13), (11.5, 15.5), (14, 12.8))) \
    .accent("M13 11.5 C13 7.5 15.5 5.8 21 5.8", poly((17.8, 2.6), (21, 5.8), (17.8, 9)))
picture("Share/Mail").line(rect(3, 5, 18, 14, 1.5)).accent(poly((3.8, 6.5), (12, 13.3), (20.2, 6.5)))
picture("Share/Copy").line("M15.5 6.5 V4 A1 1 0 0 0 14.5 3 H4 A1 1 0 0 0 3 4 V12.5 A1 1 0 0 0 4 13.5 H5.5") \
    .tint(area((9.5, 19.5), (13.5, 15), (15.8, 17.2), (18, 15), (20.5, 17.5), (20.5, 20), (9.5, 20))) \
    .accent(rect(9, 9, 12, 12)).accent_thin(poly((9.5, 19.5), (13.5, 15), (15.8, 17.2), (18, 15), (20.5, 17.5)))
picture("Share/Program").line(window()).accent(arrow(8.5, 17.5, 15.8, 11, 3.6))
picture("Share/Folder").line("M3 18.5 V5.5 A1 1 0 0 1 4 4.5 H9 L11.5 7.5 H20 A1 1 0 0 1 21 8.5 V18.5 A1 1 0 0 1 20 19.5 H4 A1 1 0 0 1 3 18.5Z") \
    .tint(area((6, 17), (10, 12.5), (12.5, 14.7), (15, 11.5), (18.2, 15.3), (18.2, 17))) \
    .accent(poly((6, 17), (10, 12.5), (12.5, 14.7), (15, 11.5), (18.2, 15.3)))
picture("Share/Item").line(Cube(9.6, 10.2, 7).edges()) \
    .accent("M20.5 13.5 V18.2 A3 3 0 0 1 14.5 18.2 V14 A2 2 0 0 1 18.5 14 V18")
picture("Hearsay/ClipScreen").dashed(rect(3, 3.5, 18, 9.5, 1)) \
    .accent(circle(7.6, 19, 2.2), circle(16.4, 19, 2.2), poly((9, 17.2), (15.2, 9)), poly((15, 17.2), (8.8, 9)))

# --- the cloud drive

picture("Cloud/Cloud").tint(cloud(2.3, 5)).accent(cloud(2.3, 5))
picture("Cloud/Open").line(cloud(2.3, 3, gap=(6, 13))).accent(arrow(11.8, 10, 11.8, 21, 4))
picture("Cloud/Save").line(cloud(2.3, 3, gap=(6, 13))).accent(arrow(11.8, 21, 11.8, 10, 4))
small_cloud = cloud(4.2, 2.6, 0.8)
picture("Cloud/Login").line(cloud(5.4, 2.4, 0.7)).line("M15 13.8 H20 V21.5 H15") \
    .accent(arrow(3.5, 17.7, 15, 17.7, 3.2))
picture("Cloud/Logout").line(cloud(5.4, 2.4, 0.7)).line("M9 13.8 H4 V21.5 H9").accent(arrow(9, 17.7, 20.5, 17.7, 3.2))
picture("Cloud/Test").line(small_cloud) \
    .accent(poly((2.5, 19), (7, 19), (9.2, 16), (12.4, 21.6), (15, 17.6), (16.3, 19), (21.5, 19)))
picture("Cloud/Manage").line(cloud(2.3, 3, 0.92, gap=(8.5, 8.5))).accent(gear(17, 17.4, 2.7))

# --- shells, recent files, home

picture("Shells/Management").line(rect(3.5, 3.5, 7, 7), rect(13.5, 13.5, 7, 7), rect(3.5, 13.5, 7, 7)) \
    .tint(rect(13.5, 3.5, 7, 7)).accent(rect(13.5, 3.5, 7, 7))
picture("Shells/Asset").line(window()).accent(Cube(12, 14, 4.2).edges())
picture("Shells/Web").line(circle(12, 12, 9), ellipse(12, 12, 4, 9)).accent("M3.6 9 H20.4 M3.6 15 H20.4")
picture("Common/RecentFile").line(open_page(stop_x=10, stop_y=10.5)) \
    .accent(circle(17, 17, 4.5), poly((17, 14.6), (17, 17), (18.8, 18)))
picture("Common/Drawing").line(rect(2.5, 4, 19, 16, 1.2), "M13 20 V15.5 H21.5").accent(Cube(9, 11, 3.8).edges())
picture("Common/Print").line("M7 8 V3.5 H17 V8", "M7 17.5 H4 A1 1 0 0 1 3 16.5 V9 A1 1 0 0 1 4 8 H20 A1 1 0 0 1 21 9 V16.5 A1 1 0 0 1 20 17.5 H17") \
    .tint(rect(7, 13.5, 10, 7.5, 0)).accent(rect(7, 13.5, 10, 7.5, 0)).solid(circle(17.6, 10.8, 0.9))
picture("Shell/DeleteMRU").line("M3.5 5.5 H18 M3.5 11 H12.5 M3.5 16.5 H11").accent(cross(18, 16.5, 3.3))
picture("Shell/PinnedMRU").tint("M8.5 3.5 H15.5 L14.7 10 L18 13.5 H6 L9.3 10Z") \
    .accent("M8.5 3.5 H15.5 L14.7 10 L18 13.5 H6 L9.3 10Z").line("M12 14 V21")
picture("Shell/UnpinnedMRU") \
    .line("M12.8 3.2 L20.8 11.2 L18 12 L15.4 14.6 L15.2 19 L5 8.8 L9.4 8.6 L12 6Z", "M9.8 14.2 L3.5 20.5")

# --- the web

picture("Web/GoForward").line(circle(12, 12, 9)).accent(arrow(7.5, 12, 16.5, 12, 4))
picture("Web/GoBackward").line(circle(12, 12, 9)).accent(arrow(16.5, 12, 7.5, 12, 4))

# --- transcripts and scripts

transcript = "M4 5 H20 M4 10 H20 M4 15 H11 M4 20 H9"
picture("Transcripting/Start").line(transcript).glow_solid(circle(17.5, 17.5, 4))
picture("Transcripting/Stop").line(transcript).accent_solid(rect(14, 14, 7, 7, 0.8))
picture("Transcripting/Replay").line(transcript).accent_solid(play(17, 17.5, 4.2))
picture("Common/RunScript").line(page()).accent(poly((10, 10.5), (7.5, 13), (10, 15.5))) \
    .accent_solid(play(14.2, 13, 2.9))
picture("Common/TextCommand").line(rect(3, 4, 18, 16, 1.5)) \
    .accent(poly((6.5, 8.5), (10, 12), (6.5, 15.5)), "M12.5 15.5 H17")

# --- help, learning, community

picture("Common/Help").line(circle(12, 12, 9)).accent("M9.2 9.4 A2.8 2.8 0 1 1 13.2 11.9 C12.3 12.3 12 13 12 13.9") \
    .accent_solid(circle(12, 16.9, 1.1))
picture("LX/EssentialVideos").line(rect(3, 4, 18, 12.5, 1.5), "M8 20.5 H16").accent_solid(play(11.6, 10.25, 3.4))
picture("Common/Subscription").line(rect(3.5, 5, 17, 15.5, 1.5), "M3.5 9.5 H20.5", "M8 3 V6.5 M16 3 V6.5") \
    .accent(check(12, 15, 3.4))
picture("Common/CheckUpdates").line(turning(12, 12, 9, 200, 340), turning(12, 12, 9, 20, 160)) \
    .accent(arrow(12, 7.8, 12, 16, 3.3))
share = poly((8.3, 10.8), (15.8, 6.6)) + " " + poly((8.3, 13.2), (15.8, 17.4))
picture("Common/Share").line(share).accent(circle(6, 12, 2.6), circle(18, 5.4, 2.6), circle(18, 18.6, 2.6))
picture("Common/ShareLoggedIn").line(person(7, 8.4, 1.05)) \
    .line(poly((12.8, 10.6), (16, 7.6)), poly((13.6, 15.4), (16, 16.6))) \
    .accent_solid(circle(18.3, 5.6, 2.8), circle(18.4, 18, 2.8))
picture("Common/Feedback").line(bubble()).accent_solid(star(12, 10.4, 4.6, 1.9, 5))
picture("Hearsay/AskQuestion").line(bubble()).accent("M9.9 8.6 A2.1 2.1 0 1 1 13 10.4 C12.3 10.8 12 11.2 12 11.9") \
    .accent_solid(circle(12, 14.3, 0.95))
picture("Hearsay/MyActivity").line(person(8.5, 7, 1.25)) \
    .accent(poly((13.5, 12.5), (15.8, 12.5), (17.3, 8.5), (19.3, 15.5), (20.4, 12.5), (22, 12.5)))
picture("Hearsay/CommunityGuidelines") \
    .line("M12 6.5 C9.5 4.6 6.5 4.4 3 5 V18.6 C6.5 18 9.5 18.2 12 20 C14.5 18.2 17.5 18 21 18.6 V5"
                                            " C17.5 4.4 14.5 4.6 12 6.5Z", "M12 6.5 V20") \
    .accent(check(16.5, 11.5, 2.3), "M5.8 9.3 C7.3 9.2 8.3 9.5 9.4 10 M5.8 13 C7.3 12.9 8.3 13.2 9.4 13.7")

# --- results of a search

picture("ATB/menu_down_arrow").line(poly((5, 8.5), (12, 15.5), (19, 8.5)))
picture("ATB/menu_up_arrow").line(poly((5, 15.5), (12, 8.5), (19, 15.5)))
picture("ATB/Test") \
    .line("M9.5 3 V9 L4.2 18.6 A1.6 1.6 0 0 0 5.6 21 H18.4 A1.6 1.6 0 0 0 19.8 18.6 L14.5 9 V3", "M8 3 H16") \
    .tint(area((7.5, 14.5), (16.5, 14.5), (19.2, 20), (4.8, 20))).accent("M7.6 14.5 H16.4")
insert = Cube(14, 9.8, 6.6)
picture("ATB/insert_design").line(insert.edges()) \
    .accent("M3.5 9 V17.5 A2 2 0 0 0 5.5 19.5 H14.5", head(14.5, 19.5, 0, 3.3))
