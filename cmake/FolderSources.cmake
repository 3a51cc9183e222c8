# Compiles the sources of each folder of a target as one where KESTREL_FOLDERS_AS_ONE is on: the headers that they share are
# then read once. Names that a source keeps to itself are therefore unique within its folder.
option(KESTREL_FOLDERS_AS_ONE "Compile the sources of a folder as one, which makes whole builds faster" OFF)

function(compile_folders_as_one target)
  if(NOT KESTREL_FOLDERS_AS_ONE)
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS sources)
    get_filename_component(folder ${source} DIRECTORY)
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP "${folder}")
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()
