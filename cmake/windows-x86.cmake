# 32-bit Windows.
set(RAW_TO_TIFF_WINDOWS_CPU i686)
set(RAW_TO_TIFF_WINDOWS x86)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)

# Floating point as on the other targets, not with the 80-bit registers. Hosts built by other compilers align the
# stack to 4 bytes only, while SSE code relies on 16.
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
