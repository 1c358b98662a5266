# Builds for 64-bit ARM on another processor's Linux, with Debian's cross compiler and the libraries that sysroot.sh has
# laid out in LINEUP_ARM64_SYSROOT; what the build makes runs emulated.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(triple aarch64-linux-gnu)

cmake_path(SET sysroot NORMALIZE ${CMAKE_CURRENT_LIST_DIR}/../../build/arm64-sysroot)
set(LINEUP_ARM64_SYSROOT ${sysroot} CACHE PATH "What sysroot.sh has laid out")
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES LINEUP_ARM64_SYSROOT)

set(CMAKE_CXX_COMPILER ${triple}-g++)
set(CMAKE_SYSROOT ${LINEUP_ARM64_SYSROOT})
set(CMAKE_LIBRARY_ARCHITECTURE ${triple})
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L ${LINEUP_ARM64_SYSROOT})

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${LINEUP_ARM64_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR} ${LINEUP_ARM64_SYSROOT}/usr/lib/${triple}/pkgconfig:${LINEUP_ARM64_SYSROOT}/usr/share/pkgconfig)
