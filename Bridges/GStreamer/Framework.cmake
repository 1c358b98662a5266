# The framework as the target `gstreamer`. Its own descriptions for pkg-config cannot be used wherever LLVM's libunwind
# stands in for the one that they name, as on a machine with the toolchain of ./dev mac: it has no description.
pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET GLOBAL gobject-2.0)
find_path(GSTREAMER_HEADERS gst/gst.h PATH_SUFFIXES gstreamer-1.0 REQUIRED)
add_library(gstreamer INTERFACE)
target_include_directories(gstreamer SYSTEM INTERFACE ${GSTREAMER_HEADERS})
target_link_libraries(gstreamer INTERFACE PkgConfig::GLIB)
foreach(library IN ITEMS gstreamer gstbase gstaudio gstvideo)
    find_library(GSTREAMER_${library} ${library}-1.0 REQUIRED)
    target_link_libraries(gstreamer INTERFACE ${GSTREAMER_${library}})
endforeach()

# Variables need nothing of what a description names.
pkg_get_variable(GSTREAMER_PLUGIN_DIR gstreamer-1.0 pluginsdir)
pkg_get_variable(GSTREAMER_PREFIX gstreamer-1.0 prefix)
