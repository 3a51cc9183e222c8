# Compiles through ccache where it is installed.
find_program(KESTREL_CCACHE ccache)
mark_as_advanced(KESTREL_CCACHE)
if(KESTREL_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_CURRENT_LIST_DIR}/ccache)
  # What ccache asks of the compilers where headers are precompiled.
  add_compile_options(
    "$<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fpch-preprocess>"
    "$<$<COMPILE_LANG_AND_ID:CXX,Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endif()
