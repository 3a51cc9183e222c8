# Installs the build in BINARY_DIR and uses what is installed as others would: a program outside the tree, and the
# installed program itself.
include(${CMAKE_CURRENT_LIST_DIR}/support/Run.cmake)

function(expect_output expected)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C ${ARGN}
                  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT result EQUAL 0 OR NOT output STREQUAL expected)
    message(FATAL_ERROR "expected\n${expected}\nfound (${result})\n${output}${errors}")
  endif()
endfunction()

set(prefix ${WORK_DIR}/prefix)
set(compiler -G Ninja -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_CXX_FLAGS=${CXX_FLAGS})
file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${prefix})

file(COPY ${SOURCE_DIR}/examples/print_table/ DESTINATION ${WORK_DIR}/source)
run(${CMAKE_COMMAND} -S ${WORK_DIR}/source -B ${WORK_DIR}/build ${compiler} -DCMAKE_PREFIX_PATH=${prefix})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
expect_output("Clamps, Forces
  Clamp 1, ClampNormalForce: 0
  Clamp 1, ClampClosingForce: -12
  Clamp 1, ClampSupportingForce: 0
  Clamp 1, ClampTangentialForce: 0
Clamps, Distances
  Clamp 1, ClampNormalDisplacement: 0
" ${WORK_DIR}/build/print_table)

expect_output("result-tables ${VERSION}\n" ${prefix}/bin/result-tables --version)
