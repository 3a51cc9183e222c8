# Warnings of the project's own targets; the presets turn them into errors (CMAKE_COMPILE_WARNING_AS_ERROR).
add_library(kestrel_warnings INTERFACE)
target_compile_options(kestrel_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wnon-virtual-dtor
  -Woverloaded-virtual -Wcast-qual -Wformat=2 -Wundef
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)  # g++ 12 warns of string concatenations that are right
