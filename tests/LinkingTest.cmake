# Links programs with the libraries in each of the ways that users have, and runs them.
#
# WAY: `shared`, the build in BINARY_DIR, installed; `static`, built anew with static libraries, installed; `subproject`,
# `fetched`, built as a part of another project. COMPILERS: what the programs are compiled with, the first one what is
# built anew is, too. What was built stays, so that the next run builds only what has changed.
include(${CMAKE_CURRENT_LIST_DIR}/support/Run.cmake)

separate_arguments(COMPILERS)
list(GET COMPILERS 0 compiler)
set(common -G Ninja -DCMAKE_COMPILE_WARNING_AS_ERROR=ON -DCMAKE_CXX_COMPILER_LAUNCHER=${CXX_COMPILER_LAUNCHER})
set(prefix ${WORK_DIR}/prefix)

function(expect_output expected)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C LD_LIBRARY_PATH=${libraries} ${ARGN}
                  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT result EQUAL 0 OR NOT output STREQUAL expected)
    message(FATAL_ERROR "${ARGN}: expected\n${expected}\nfound (${result})\n${output}${errors}")
  endif()
endfunction()

function(expect_programs_in folder)
  expect_output("Clamps, Forces
  Clamp 1, ClampNormalForce: 0
  Clamp 1, ClampClosingForce: -12
  Clamp 1, ClampSupportingForce: 0
  Clamp 1, ClampTangentialForce: 0
Clamps, Distances
  Clamp 1, ClampNormalDisplacement: 0
" ${folder}/print_table)
  expect_output("N7Kestrel19TablePropertiesDataE\n" ${folder}/documents
    ${SOURCE_DIR}/tests/data/limits_documents/example.limits)
endfunction()

set(sources_of_print_table ${SOURCE_DIR}/examples/print_table)
set(sources_of_documents ${SOURCE_DIR}/tests/consumers/documents)

# Builds and runs programs that find what is installed in `prefix` by CMake and by pkg-config.
function(link_with_installed)
  foreach(compiler IN LISTS COMPILERS)
    set(folder ${WORK_DIR}/programs-${compiler})
    file(REMOVE_RECURSE ${folder})
    foreach(program print_table documents)
      run(${CMAKE_COMMAND} -S ${sources_of_${program}} -B ${folder}/${program}.build ${common}
        -DCMAKE_CXX_COMPILER=${compiler} -DCMAKE_CXX_FLAGS=${CXX_FLAGS} -DCMAKE_PREFIX_PATH=${prefix}
        -DCMAKE_RUNTIME_OUTPUT_DIRECTORY=${folder})
      run(${CMAKE_COMMAND} --build ${folder}/${program}.build)
    endforeach()
    expect_programs_in(${folder})

    set(folder ${WORK_DIR}/programs-pkg-config-${compiler})
    file(REMOVE_RECURSE ${folder})
    file(MAKE_DIRECTORY ${folder})
    foreach(program print_table documents)
      run(${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${prefix}/${LIBDIR}/pkgconfig sh -c
        "${compiler} ${CXX_FLAGS} -Wl,--no-as-needed '${sources_of_${program}}/main.cpp' -o '${folder}/${program}' \
         $(pkg-config --cflags --libs Business_TableProperties)")
    endforeach()
    expect_programs_in(${folder})
  endforeach()
endfunction()

# Installs a build and moves what was installed, which must not matter.
function(install_in_prefix binary_dir)
  file(REMOVE_RECURSE ${prefix} ${WORK_DIR}/installed)
  run(${CMAKE_COMMAND} --install ${binary_dir} --prefix ${WORK_DIR}/installed)
  file(RENAME ${WORK_DIR}/installed ${prefix})
endfunction()

if(WAY STREQUAL shared)
  install_in_prefix(${BINARY_DIR})
  set(libraries ${prefix}/${LIBDIR})
  link_with_installed()
  unset(libraries)
  expect_output("result-tables ${VERSION}\n" ${prefix}/bin/result-tables --version)
elseif(WAY STREQUAL static)
  set(LIBDIR lib/${MULTIARCH})
  run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/build ${common}
    -DCMAKE_CXX_COMPILER=${compiler} -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_LIBDIR=${LIBDIR} -DBUILD_SHARED_LIBS=OFF -DCMAKE_UNITY_BUILD=ON
    -DKESTREL_BUILD_PROGRAM=OFF -DKESTREL_BUILD_TESTS=OFF -DKESTREL_BUILD_BENCHMARKS=OFF)
  run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
  install_in_prefix(${WORK_DIR}/build)
  link_with_installed()
  file(GLOB_RECURSE shared_objects ${prefix}/*.so*)
  if(shared_objects)
    message(FATAL_ERROR "installed with static libraries: ${shared_objects}")
  endif()
else()
  string(COMPARE EQUAL ${WAY} fetched fetched)
  string(COMPARE NOTEQUAL ${WAY} fetched as_one)  # what sources do not know of a type is part of the stored interface
  run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/consumers/subproject -B ${WORK_DIR}/build ${common}
    -DCMAKE_CXX_COMPILER=${compiler} -DCMAKE_BUILD_TYPE=Debug -DKESTREL_SOURCE_DIR=${SOURCE_DIR} -DFETCHED=${fetched}
    -DCMAKE_UNITY_BUILD=${as_one})
  run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
  expect_programs_in(${WORK_DIR}/build)
  file(REMOVE_RECURSE ${prefix})
  run(${CMAKE_COMMAND} --install ${WORK_DIR}/build --prefix ${prefix})
  file(GLOB_RECURSE installed RELATIVE ${prefix} ${prefix}/*)
  if(NOT installed STREQUAL "bin/print_table")
    message(FATAL_ERROR "a project that is part of another one installed ${installed}")
  endif()
endif()
