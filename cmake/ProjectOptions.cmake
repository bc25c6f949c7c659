# What every target of the project is compiled with.
#
# project_options: the include root, the warnings, and the sanitizers or counters of the chosen preset.

set(RAW_TO_TIFF_SANITIZERS "" CACHE STRING "Sanitizers to build with, comma-separated, for example address,undefined")

add_library(project_options INTERFACE)
target_include_directories(project_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(
  project_options
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wconversion
            -Wsign-conversion
            -Wshadow
            -Wold-style-cast
            -Wcast-align
            -Wcast-qual
            -Wformat=2
            -Wno-format-nonliteral # time formats come from the caller
            $<$<BOOL:${WIN32}>:-Wno-restrict> # GCC 12 warns of strings that are joined, wrongly
            -Wimplicit-fallthrough
            -Woverloaded-virtual
            -Wnull-dereference
            -Wundef
            -Wunused
            -Werror)

if(RAW_TO_TIFF_SANITIZERS)
  target_compile_options(project_options INTERFACE -fsanitize=${RAW_TO_TIFF_SANITIZERS} -fno-sanitize-recover=all
                                                   -fno-omit-frame-pointer)
  target_link_options(project_options INTERFACE -fsanitize=${RAW_TO_TIFF_SANITIZERS})
endif()

# The counts are kept in files that are mapped into memory: those of a worker that is killed, or that may not open files
# any more, are not lost.
option(RAW_TO_TIFF_COVERAGE "Count which lines and branches run; Clang only" OFF)
if(RAW_TO_TIFF_COVERAGE)
  target_compile_options(project_options INTERFACE -fprofile-instr-generate -fcoverage-mapping
                                                   "SHELL:-mllvm -runtime-counter-relocation")
  target_link_options(project_options INTERFACE -fprofile-instr-generate)
endif()
