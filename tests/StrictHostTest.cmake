# Builds the library against the host in strict_host/, which offers exactly what docs/linking-a-host.md lists, and runs
# the tests of that host. What was built stays, so that the next run builds only what has changed.
include(${CMAKE_CURRENT_LIST_DIR}/support/Run.cmake)

set(prefix ${WORK_DIR}/prefix)
set(options -G Ninja -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_CXX_FLAGS=${CXX_FLAGS}
  -DCMAKE_CXX_COMPILER_LAUNCHER=${CXX_COMPILER_LAUNCHER} -DCMAKE_COMPILE_WARNING_AS_ERROR=ON
  -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_INSTALL_PREFIX=${prefix})
file(REMOVE_RECURSE ${prefix})

function(build name source)
  run(${CMAKE_COMMAND} -S ${source} -B ${WORK_DIR}/${name} ${options} ${ARGN})
  run(${CMAKE_COMMAND} --build ${WORK_DIR}/${name})
endfunction()

build(host ${SOURCE_DIR}/tests/strict_host)
run(${CMAKE_COMMAND} --install ${WORK_DIR}/host)
build(library ${SOURCE_DIR} -DKESTREL_HOST=StrictHost)
run(${CMAKE_COMMAND} --install ${WORK_DIR}/library)
if(EXISTS ${WORK_DIR}/library/host)
  message(FATAL_ERROR "the substitute host was built although another one was named")
endif()
build(tests ${SOURCE_DIR}/tests/strict_host/tests)
run(${CMAKE_CTEST_COMMAND} --test-dir ${WORK_DIR}/tests --output-on-failure --no-tests=error)
