# Builds for macOS x86-64 on Linux, with what MakeSdk.cmake has laid out in LINEUP_MAC_TOOLS and LLVM's linker.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

cmake_path(SET tools NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../../build/mac-tools)
set(LINEUP_MAC_TOOLS ${tools} CACHE PATH "What MakeSdk.cmake has laid out")
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES LINEUP_MAC_TOOLS)

set(CMAKE_CXX_COMPILER ${LINEUP_MAC_TOOLS}/bin/clang++)
set(CMAKE_CXX_COMPILER_TARGET x86_64-apple-macosx)
set(CMAKE_OSX_SYSROOT ${LINEUP_MAC_TOOLS}/sdk)
set(CMAKE_OSX_ARCHITECTURES x86_64)

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
