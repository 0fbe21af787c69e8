# The install step after the program: its data beside it, the launcher's
# desktop entry. Data files already in place are never overwritten: they may
# hold the user's edits. Set before include: TF_SOURCE_DIR, TF_BUILD_DIR.
set(root "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")
set(app "${root}/lib/tile-forger")
message(STATUS "Placing the data beside the program, where missing: ${app}")
set(SRC "${TF_SOURCE_DIR}/resources")
set(DST "${app}")
include("${TF_SOURCE_DIR}/tools/copy_missing.cmake")
# The bitmaps the build drew (the menu file there came from resources/ above).
set(SRC "${TF_BUILD_DIR}/Norsuite Resources")
set(DST "${app}/Norsuite Resources")
include("${TF_SOURCE_DIR}/tools/copy_missing.cmake")

set(TF_LAUNCHER "${CMAKE_INSTALL_PREFIX}/bin/tile-forger")
message(STATUS "Installing: ${root}/share/applications/tile-forger.desktop")
configure_file("${TF_SOURCE_DIR}/tools/install/tile-forger.desktop.in"
               "${root}/share/applications/tile-forger.desktop" @ONLY)
