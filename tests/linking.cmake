# The libraries as others link them, and the binary interface that they promise.
set(linking_dir ${CMAKE_CURRENT_BINARY_DIR}/linking)
function(add_linking_test name way)
  list(JOIN ARGN " " compilers)
  add_test(NAME Linking.${name}
    COMMAND ${CMAKE_COMMAND} -DWAY=${way} "-DCOMPILERS=${compilers}"
      -DBINARY_DIR=${PROJECT_BINARY_DIR} -DSOURCE_DIR=${PROJECT_SOURCE_DIR} -DWORK_DIR=${linking_dir}/${way}
      -DLIBDIR=${CMAKE_INSTALL_LIBDIR} -DMULTIARCH=${CMAKE_LIBRARY_ARCHITECTURE} -DVERSION=${PROJECT_VERSION}
      -DCXX_FLAGS=${CMAKE_CXX_FLAGS} -DCXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}
      -P ${CMAKE_CURRENT_SOURCE_DIR}/LinkingTest.cmake)
  # They take longest and start first.
  set_tests_properties(Linking.${name} PROPERTIES COST 1000)
endfunction()

# Sanitizers have to be in both, the libraries and the programs.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=")
  add_linking_test(InstalledSharedLibraries shared ${CMAKE_CXX_COMPILER})
  return()
endif()
add_test(NAME Linking.EachHeaderStandsAlone
  COMMAND ${CMAKE_COMMAND} --build ${PROJECT_BINARY_DIR} --target all_verify_interface_header_sets --parallel 1)
set_tests_properties(Linking.EachHeaderStandsAlone PROPERTIES COST 1000 RESOURCE_LOCK build)
add_linking_test(InstalledSharedLibraries shared g++ clang++)
add_linking_test(InstalledStaticLibraries static g++ clang++)
add_linking_test(PartOfAnotherProject subproject clang++)
add_linking_test(FetchedByAnotherProject fetched g++)
set_tests_properties(Linking.FetchedByAnotherProject PROPERTIES FIXTURES_SETUP linked_fetched)

# With -DRENEW=ON the same command stores what later builds are compared with.
function(add_interface_test library class)
  get_filename_component(name ${library} NAME)
  add_test(NAME BinaryInterface.${name}
    COMMAND ${CMAKE_COMMAND} -DWORK_DIR=${CMAKE_CURRENT_BINARY_DIR}/abi -DCLASS=${class}
      -DLIBRARY=${linking_dir}/fetched/build/_deps/table_properties-build/${library}.so.${PROJECT_VERSION_MAJOR}
      -P ${CMAKE_CURRENT_SOURCE_DIR}/BinaryInterfaceTest.cmake)
  set_tests_properties(BinaryInterface.${name} PROPERTIES FIXTURES_REQUIRED linked_fetched)
endfunction()
add_interface_test(host/libKestrelHost GUIdentifier)
add_interface_test(Business_TableProperties/libBusiness_TableProperties MaxValueItem)
