# test_bundle(NAME SOURCE): a bundle at test-bundles/NAME.bundle whose module is built from one file.
function(test_bundle name source)
    set(contents ${PROJECT_BINARY_DIR}/test-bundles/${name}.bundle/Contents)
    file(CONFIGURE OUTPUT ${contents}/Info.plist @ONLY CONTENT [[<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
	<key>CFBundleExecutable</key>
	<string>@name@</string>
	<key>CFBundleIdentifier</key>
	<string>org.barsandtone.test.@name@</string>
	<key>CFBundleShortVersionString</key>
	<string>1.0</string>
</dict>
</plist>
]])
    add_library(test_bundle_${name} MODULE ${source})
    set_target_properties(test_bundle_${name} PROPERTIES
        OUTPUT_NAME ${name} PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${contents}/${ZEL_PLATFORM_FOLDER})
    target_link_libraries(test_bundle_${name} PRIVATE zelcore)
    add_dependencies(test_bundles test_bundle_${name})
endfunction()
