# The headers that programs and plug-ins are written against, <lineup/...> for both:
#
#   lineup/              the library: what include/lineup holds, and the settings record of a clip
#   lineup/services/     what a host gives to plug-ins
#   lineup/interface/    the interface between the two: Host/Interface, whose headers include each other by neighbourhood
#
# They need the C++ library alone, but for those of lineup/interface/UI, which need Boost's headers.
foreach(library IN ITEMS zelcore lineup)
    target_include_directories(${library} INTERFACE
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<BUILD_INTERFACE:${PROJECT_BINARY_DIR}/include>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_compile_features(${library} PUBLIC cxx_std_20)
endforeach()
set(folder ${CMAKE_INSTALL_INCLUDEDIR}/lineup)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/lineup/ DESTINATION ${folder} COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/Host/Interface/ DESTINATION ${folder}/interface COMPONENT development
    FILES_MATCHING PATTERN *.h)
install(FILES ${PROJECT_SOURCE_DIR}/Src/BarsAndToneImporter/SettingsRecord.h DESTINATION ${folder}
    RENAME BarsAndToneInfo.h COMPONENT development)

# What a plug-in or a host with dialogs needs beside zelcore.
find_package(Boost REQUIRED)
add_library(zelui INTERFACE)
target_link_libraries(zelui INTERFACE zelcore Boost::headers)
