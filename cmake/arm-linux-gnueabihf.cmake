# Cross-building for a 32-bit ARM appliance with Debian's compiler:
#
#   cmake -S . -B build/arm -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/arm-linux-gnueabihf.cmake -DCMAKE_BUILD_TYPE=Release \
#         -DXAS_TESTS=OFF -DXAS_SYSROOT=DIR -DXAS_CONFIG_LIBRARY=/path/to/the/appliance's/library.so
#
# XAS_SYSROOT is a directory with the appliance's headers and libraries (expat among them); without it the compiler's
# own are taken. Without XAS_CONFIG_LIBRARY the embedded store is linked.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi) # notes on what another release of the compiler passed otherwise

set(XAS_SYSROOT "" CACHE PATH "The appliance's headers and libraries")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES XAS_SYSROOT)
list(APPEND CMAKE_FIND_ROOT_PATH ${XAS_SYSROOT} /usr/arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
