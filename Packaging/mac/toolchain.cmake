# Builds for macOS on Linux, for the processor LINEUP_MAC_PROCESSOR (x86_64 or arm64), with what MakeSdk.cmake has laid out
# in LINEUP_MAC_TOOLS and LLVM's linker.
set(LINEUP_MAC_PROCESSOR x86_64 CACHE STRING "What the bundle is for: x86_64 or arm64")
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR ${LINEUP_MAC_PROCESSOR})

cmake_path(SET tools NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../../build/mac-tools)
set(LINEUP_MAC_TOOLS ${tools} CACHE PATH "What MakeSdk.cmake has laid out")
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES LINEUP_MAC_TOOLS LINEUP_MAC_PROCESSOR)

set(CMAKE_CXX_COMPILER ${LINEUP_MAC_TOOLS}/bin/clang++-${LINEUP_MAC_PROCESSOR})
set(CMAKE_CXX_COMPILER_TARGET ${LINEUP_MAC_PROCESSOR}-apple-macosx)
set(CMAKE_OSX_SYSROOT ${LINEUP_MAC_TOOLS}/sdk-${LINEUP_MAC_PROCESSOR})
set(CMAKE_OSX_ARCHITECTURES ${LINEUP_MAC_PROCESSOR})

# The toolchain's own linker writes no bundles.
set(llvm /usr/lib/llvm-16/bin)
foreach(kind EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "-B${llvm} -fuse-ld=lld")
endforeach()
set(CMAKE_AR ${llvm}/llvm-ar)
set(CMAKE_RANLIB ${llvm}/llvm-ranlib)
set(CMAKE_INSTALL_NAME_TOOL ${llvm}/llvm-install-name-tool)

set(CMAKE_FIND_ROOT_PATH ${CMAKE_OSX_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(Boost_INCLUDE_DIR ${LINEUP_MAC_TOOLS}/boost)
