"""What many commands share: undo, commit, the pointer, snapping, the window, lists."""

from pen import (arrow, check, circle, cross, eye, picture, pointer, poly, rect, slash)

picture("Common/Cancel").line(circle(12, 12, 9)).accent(cross(12, 12, 3.5))
picture("Common/Commit").line(circle(12, 12, 9)).accent(check(12, 12.2, 4.2))
picture("Common/Cursor").tint(pointer(6, 3, 1.45)).line(pointer(6, 3, 1.45))

picture("Common/Undo").accent("M4 9 H14.5 A5.75 5.75 0 0 1 14.5 20.5 H8.5") \
    .accent(poly((8.5, 4.5), (4, 9), (8.5, 13.5)))
picture("Common/Redo").accent("M20 9 H9.5 A5.75 5.75 0 0 0 9.5 20.5 H15.5") \
    .accent(poly((15.5, 4.5), (20, 9), (15.5, 13.5)))
picture("Return").line("M20 4.5 V11.5 A2.5 2.5 0 0 1 17.5 14 H4").accent(poly((9, 9), (4, 14), (9, 19)))

screen = rect(2.5, 3.5, 19, 17, 1.5)
picture("Common/FullScreen").line(screen).accent(arrow(13.4, 10.6, 17.8, 6.8), arrow(10.6, 13.4, 6.2, 17.2))
picture("Common/NormalScreen").line(screen).accent(arrow(18, 6.6, 13.6, 10.4), arrow(6, 17.4, 10.4, 13.6))

magnet = "M4.5 3.5 V12.5 A7.5 7.5 0 0 0 19.5 12.5 V3.5 H15 V12.5 A3 3 0 0 1 9 12.5 V3.5Z"
tips = "M4.5 3.5 H9 V7.5 H4.5Z M15 3.5 H19.5 V7.5 H15Z"
picture("Common/SnapEnable").line(magnet).glow_tint(tips, opacity=0.6).glow(tips)
picture("Common/SnapDisable").line(magnet, "M4.5 7.5 H9 M15 7.5 H19.5").accent(slash())

picture("View").line(eye(12, 12, 9.5, 6.3)).tint(circle(12, 12, 3)).accent(circle(12, 12, 3))

picture("Toolbar/QAT/SelectedListItem").line(rect(4, 4, 16, 16, 2)).accent(check(12, 12.2, 4.6))
picture("Toolbar/QAT/DeselectedListItem").line(rect(4, 4, 16, 16, 2))
