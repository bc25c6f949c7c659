# Builds for Windows with mingw-w64 and runs what was built under Wine. Included by the toolchain files, which set
# RAW_TO_TIFF_WINDOWS_CPU (x86_64 or i686) and RAW_TO_TIFF_WINDOWS (x64 or x86) first.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR ${RAW_TO_TIFF_WINDOWS_CPU})

set(triple ${RAW_TO_TIFF_WINDOWS_CPU}-w64-mingw32)
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# No file of the compiler's runtime has to travel with the programs.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)

# What a library that is linked statically holds of others.
set(RAW_TO_TIFF_LICENCES /usr/share/doc/gcc-mingw-w64-base/copyright /usr/share/doc/mingw-w64-common/copyright
                         /usr/share/common-licenses/GPL-3)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../scripts/wine;${RAW_TO_TIFF_WINDOWS})
