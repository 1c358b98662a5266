# Where the framework finds the producer: its own prefix (/usr) with the component mlt, a person's own (~/.local)
# with the program lineup-mlt.
pkg_get_variable(MLT_MODULE_DIR mlt-framework-7 moduledir)
pkg_get_variable(MLT_PREFIX mlt-framework-7 prefix)
file(RELATIVE_PATH module_folder ${MLT_PREFIX} ${MLT_MODULE_DIR})
product(mltlineup BUILT lib/mlt INSTALLED ${module_folder})

install(TARGETS mltlineup LIBRARY DESTINATION ${module_folder} COMPONENT mlt)
install(FILES producer_barsandtone.yml DESTINATION ${CMAKE_INSTALL_DATADIR}/mlt-7/lineup COMPONENT mlt)
install(FILES generators/barsandtone.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/kdenlive/generators COMPONENT mlt)
install(DIRECTORY samples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/lineup/samples COMPONENT mlt)

set(LINEUP_MLT_FOLDER ${module_folder})
configure_file(lineup-mlt.in ${CMAKE_CURRENT_BINARY_DIR}/lineup-mlt @ONLY)
install(PROGRAMS ${CMAKE_CURRENT_BINARY_DIR}/lineup-mlt DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT mlt-run)

# The same from the build tree.
set(LINEUP_MLT_FOLDER lib/mlt)
configure_file(lineup-mlt.in ${PROJECT_BINARY_DIR}/bin/lineup-mlt @ONLY
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
