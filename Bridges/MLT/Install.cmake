# cmake --install BUILD --component mlt [--prefix PREFIX]: into the system with the prefix of the framework (/usr),
# or for one person with ~/.local and the program lineup-mlt.
pkg_get_variable(MLT_MODULE_DIR mlt-framework-7 moduledir)
pkg_get_variable(MLT_PREFIX mlt-framework-7 prefix)
file(RELATIVE_PATH module_folder ${MLT_PREFIX} ${MLT_MODULE_DIR})
set(private lib/lineup)

# One run path for the build tree and the installed one: a run path that is edited on installation is padded
# before, and padding stands for the current folder.
string(REGEX REPLACE "[^/]+" ".." to_prefix ${module_folder})
set_target_properties(mltlineup PROPERTIES INSTALL_RPATH "$ORIGIN/..;$ORIGIN/${to_prefix}/${private}")
set_target_properties(lineup zelcore PROPERTIES INSTALL_RPATH $ORIGIN)
set_target_properties(BarsAndToneModule PROPERTIES INSTALL_RPATH "$ORIGIN/../../../lib;$ORIGIN/../../..")
set_target_properties(mltlineup lineup zelcore BarsAndToneModule PROPERTIES BUILD_WITH_INSTALL_RPATH ON)

install(TARGETS mltlineup LIBRARY DESTINATION ${module_folder} COMPONENT mlt EXCLUDE_FROM_ALL)
install(TARGETS lineup zelcore LIBRARY DESTINATION ${private} COMPONENT mlt EXCLUDE_FROM_ALL)
install(TARGETS BarsAndToneModule
    LIBRARY DESTINATION ${private}/BarsAndTone.bundle/Contents/${ZEL_PLATFORM_FOLDER} COMPONENT mlt EXCLUDE_FROM_ALL)
install(FILES ${BUNDLE_CONTENTS}/Info.plist
    DESTINATION ${private}/BarsAndTone.bundle/Contents COMPONENT mlt EXCLUDE_FROM_ALL)
install(DIRECTORY ${BUNDLE_CONTENTS}/Resources
    DESTINATION ${private}/BarsAndTone.bundle/Contents COMPONENT mlt EXCLUDE_FROM_ALL)
install(FILES producer_barsandtone.yml DESTINATION share/mlt-7/lineup COMPONENT mlt EXCLUDE_FROM_ALL)
install(FILES generators/barsandtone.xml DESTINATION share/kdenlive/generators COMPONENT mlt EXCLUDE_FROM_ALL)
install(DIRECTORY samples/ DESTINATION share/lineup/samples COMPONENT mlt EXCLUDE_FROM_ALL)

set(LINEUP_MLT_FOLDER ${module_folder})
configure_file(lineup-mlt.in ${CMAKE_CURRENT_BINARY_DIR}/lineup-mlt @ONLY)
install(PROGRAMS ${CMAKE_CURRENT_BINARY_DIR}/lineup-mlt DESTINATION bin COMPONENT mlt EXCLUDE_FROM_ALL)

# The same from the build tree.
set(LINEUP_MLT_FOLDER lib/mlt)
configure_file(lineup-mlt.in ${PROJECT_BINARY_DIR}/bin/lineup-mlt @ONLY
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
