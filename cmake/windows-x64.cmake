# 64-bit Windows.
set(RAW_TO_TIFF_WINDOWS_CPU x86_64)
set(RAW_TO_TIFF_WINDOWS x64)
include(${CMAKE_CURRENT_LIST_DIR}/windows.cmake)
