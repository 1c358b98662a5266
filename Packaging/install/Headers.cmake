# The headers that programs and plug-ins are written against. They are installed below include/lineup under their
# paths from the root, by which they include each other. They need the C++ library alone, but for those of
# Host/Interface/UI, which need Boost's headers.
file(GLOB_RECURSE interface_headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/Host/Interface/*.h)
set(service_headers Bundle.h ContractReporter.h FrameBuffer.h LocalizerSetup.h)
list(TRANSFORM service_headers PREPEND ${PROJECT_SOURCE_DIR}/Host/Services/)
target_sources(zelcore PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}
    FILES ${interface_headers} ${service_headers})

file(GLOB library_headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/Host/Lineup/*.h)
set(part_headers
    Export/ExportReport.h
    Export/ExportSettings.h
    Export/Exporter.h
    Export/FormatTable.h
    Export/PartialFile.h
    Export/Rational.h
    Export/StillPicture.h
    Export/TargetFile.h
    Export/Timecode.h
    Export/UnfinishedFiles.h
    Export/UsageError.h
    Validation/Check.h
    Validation/RunCheck.h)
list(TRANSFORM part_headers PREPEND ${PROJECT_SOURCE_DIR}/Host/Lineup/)
target_sources(lineup PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}
    FILES ${library_headers} ${part_headers} ${PROJECT_SOURCE_DIR}/Src/BarsAndToneImporter/BarsAndToneInfo.h)

# What a plug-in or a host with dialogs needs beside zelcore.
find_package(Boost REQUIRED)
add_library(zelui INTERFACE)
target_link_libraries(zelui INTERFACE zelcore Boost::headers)

foreach(library IN ITEMS zelcore lineup)
    target_compile_features(${library} PUBLIC cxx_std_20)
endforeach()
