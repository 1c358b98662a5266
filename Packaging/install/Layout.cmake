# Where everything lies, in the build tree and as installed, and how programs and libraries find each other: by run
# paths relative to themselves, the same ones in both, so that an installed tree may be moved as a whole.
#
#   build tree                  installed
#   bin/                        bin/
#   lib/liblineup.so.N          LIBDIR/liblineup.so.N         what other programs link to
#   lib/liblineup-media.so      LIBDIR/lineup-N/...           what these load when they need it,
#   lib/liblineup-check.so                                    or link to, the product's own programs
#   lib/lineup-decode           LIBDIR/lineup-N/...           what these start when they need it
#   BarsAndTone.bundle/         lib/lineup/BarsAndTone.bundle/

# One layout whatever the prefix, so that one build serves the system's prefix and a person's own.
if(CMAKE_LIBRARY_ARCHITECTURE AND NOT DEFINED CMAKE_INSTALL_LIBDIR)
    set(CMAKE_INSTALL_LIBDIR lib/${CMAKE_LIBRARY_ARCHITECTURE} CACHE PATH "Folder of the libraries, below the prefix")
endif()
include(GNUInstallDirs)
# The libraries of two versions lie beside each other, each with what belongs to it.
set(LINEUP_PRIVATE_FOLDER lineup-${LINEUP_SOVERSION})
set(LINEUP_PRIVATE_LIBDIR ${CMAKE_INSTALL_LIBDIR}/${LINEUP_PRIVATE_FOLDER})
set(LINEUP_BUNDLE_DIR lib/lineup/BarsAndTone.bundle/Contents)

# product(TARGET BUILT folder INSTALLED folder [PRIVATE])
# The run path of a program or library that is built into one folder, below the build tree, and installed into
# another, below the prefix. It leads to the public libraries, with PRIVATE to those beside them too.
# It is the same before and after installation: one that is edited on installation is padded before, and padding
# stands for the current folder.
function(product target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "PRIVATE" "BUILT;INSTALLED" "")
    set(needed_built lib)
    set(needed_installed ${CMAKE_INSTALL_LIBDIR})
    if(arg_PRIVATE)
        list(APPEND needed_installed ${LINEUP_PRIVATE_LIBDIR})
    endif()
    set(origin $ORIGIN)
    if(APPLE)
        set(origin @loader_path)
    endif()
    set(paths)
    foreach(tree IN ITEMS built installed)
        string(TOUPPER ${tree} key)
        foreach(needed IN LISTS needed_${tree})
            file(RELATIVE_PATH relative /${arg_${key}} /${needed})
            string(REGEX REPLACE "/$" "" path "${origin}/${relative}")
            list(APPEND paths ${path})
        endforeach()
    endforeach()
    list(REMOVE_DUPLICATES paths)
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "${paths}" BUILD_WITH_INSTALL_RPATH ON)
    set_property(GLOBAL APPEND PROPERTY LINEUP_PRODUCTS ${target})
endfunction()

# public_library(TARGET): a library that other programs link to. It offers what exports.map.in beside its CMakeLists.txt
# lists, under the interface's version, and nothing that the C++ library has left in it.
function(public_library target)
    set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${LINEUP_SOVERSION})
    product(${target} BUILT lib INSTALLED ${CMAKE_INSTALL_LIBDIR})
    if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
        set(map ${CMAKE_CURRENT_BINARY_DIR}/exports.map)
        configure_file(exports.map.in ${map} @ONLY)
        set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${map})
        target_link_options(${target} PRIVATE LINKER:--version-script=${map})
    endif()
endfunction()

# private_library(TARGET): a library that belongs to those and is loaded by them.
function(private_library target)
    product(${target} BUILT lib INSTALLED ${LINEUP_PRIVATE_LIBDIR} PRIVATE)
endfunction()
