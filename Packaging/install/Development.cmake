# What other projects find the libraries by: find_package(Lineup) and pkg-config. Neither names a folder outside of
# its own tree.
include(CMakePackageConfigHelpers)
set(cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Lineup)
set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(generated ${PROJECT_BINARY_DIR}/packaging)

install(EXPORT LineupTargets NAMESPACE Lineup:: DESTINATION ${cmake_folder} COMPONENT development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/LineupConfig.cmake.in ${generated}/LineupConfig.cmake
    INSTALL_DESTINATION ${cmake_folder} NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${generated}/LineupConfigVersion.cmake COMPATIBILITY ${LINEUP_COMPATIBILITY})
install(FILES ${generated}/LineupConfig.cmake ${generated}/LineupConfigVersion.cmake
    DESTINATION ${cmake_folder} COMPONENT development)

file(RELATIVE_PATH pkgconfig_to_prefix /${pkgconfig_folder} /)
string(REGEX REPLACE "/$" "" pkgconfig_to_prefix ${pkgconfig_to_prefix})
foreach(name IN ITEMS lineup zelcore)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/${name}.pc.in ${generated}/${name}.pc @ONLY)
    install(FILES ${generated}/${name}.pc DESTINATION ${pkgconfig_folder} COMPONENT development)
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/Docs/examples DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/liblineup-dev
    COMPONENT development)
