# Compares the binary interface of LIBRARY, built with debug information, with the one that its name promises: programs that
# were linked with a library of that name run with every later one of it. Additions are no difference. That the comparison
# sees what lies deep in containers is shown with a stored interface in which CLASS is larger. With RENEW the interface that
# LIBRARY has is stored.
include(${CMAKE_CURRENT_LIST_DIR}/support/Run.cmake)

get_filename_component(name ${LIBRARY} NAME)
set(stored ${CMAKE_CURRENT_LIST_DIR}/abi/${name}.abi.xz)
set(interface ${WORK_DIR}/${name}.abi)
file(MAKE_DIRECTORY ${WORK_DIR})
execute_process(COMMAND readelf --sections --wide ${LIBRARY} OUTPUT_VARIABLE sections)
if(NOT sections MATCHES "\\.debug_info")
  message(FATAL_ERROR "${LIBRARY}: expected debug information, without which types are not compared; found none")
endif()
# Headers are not named to the tools: types of the standard library would be no part of the interface, nor would what is in
# its containers.
if(RENEW)
  run(abidw --exported-interfaces-only --no-corpus-path --no-comp-dir-path --no-show-locs --no-parameter-names
    --out-file ${interface} ${LIBRARY})
  file(ARCHIVE_CREATE OUTPUT ${stored} PATHS ${interface} FORMAT raw COMPRESSION XZ)
  return()
endif()

run(sh -c "xz --decompress --stdout '${stored}' >'${interface}'")
run(abidiff --no-added-syms ${interface} ${LIBRARY})

file(READ ${interface} content)
string(REGEX REPLACE "(name='${CLASS}' size-in-bits=')[0-9]+" "\\19999" changed "${content}")
file(WRITE ${interface}.changed "${changed}")
execute_process(COMMAND abidiff --no-added-syms ${interface}.changed ${LIBRARY} RESULT_VARIABLE result OUTPUT_VARIABLE output)
if(result EQUAL 0 OR NOT output MATCHES "type size changed from 9999")
  message(FATAL_ERROR "expected another size of ${CLASS} to be a difference, found (${result})\n${output}")
endif()
