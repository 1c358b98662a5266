# cmake --install BUILD [--component NAME] [--prefix PREFIX]: everything that was built, or one part of it.
#
#   library      the libraries that programs link to, and those that they load
#   development  headers, and what other projects find the libraries by
#   plugin       the bundle
#   program      lineup
#   studio       lineup-studio, and the dialogs
#   mlt          the producer for the MLT framework
#   gstreamer    the elements for the GStreamer framework
#   mlt-run      a program that runs others with the producer, for a prefix that is not the framework's own
#
# A package is a part; see Packaging/debian.
include(${CMAKE_CURRENT_LIST_DIR}/Headers.cmake)

install(TARGETS lineup zelcore EXPORT LineupTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
install(TARGETS zelui EXPORT LineupTargets)
install(TARGETS lineup-media lineup-check zelcore-catalogues LIBRARY DESTINATION ${LINEUP_PRIVATE_LIBDIR} COMPONENT library)
install(TARGETS lineup-decode RUNTIME DESTINATION ${LINEUP_PRIVATE_LIBDIR} COMPONENT library)
include(${CMAKE_CURRENT_LIST_DIR}/Development.cmake)

install(TARGETS BarsAndToneModule
    LIBRARY DESTINATION ${LINEUP_BUNDLE_DIR}/${ZEL_PLATFORM_FOLDER} COMPONENT plugin)
install(FILES ${BUNDLE_CONTENTS}/Info.plist DESTINATION ${LINEUP_BUNDLE_DIR} COMPONENT plugin)
install(DIRECTORY ${BUNDLE_CONTENTS}/Resources DESTINATION ${LINEUP_BUNDLE_DIR} COMPONENT plugin)

install(TARGETS lineup_cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
install(TARGETS lineup-overview LIBRARY DESTINATION ${LINEUP_PRIVATE_LIBDIR} COMPONENT program)

if(TARGET lineup_studio)
    install(TARGETS lineup_studio RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT studio)
    install(TARGETS zelui-qt LIBRARY DESTINATION ${LINEUP_PRIVATE_LIBDIR} COMPONENT studio)
endif()
