# Where the framework finds its plug-ins: below its own prefix (/usr), with the component gstreamer.
file(RELATIVE_PATH plugin_folder ${GSTREAMER_PREFIX} ${GSTREAMER_PLUGIN_DIR})
product(gstlineup BUILT lib/gstreamer-1.0 INSTALLED ${plugin_folder})
install(TARGETS gstlineup LIBRARY DESTINATION ${plugin_folder} COMPONENT gstreamer)
