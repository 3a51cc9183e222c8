# What Debian packages hold besides the program and the libraries. What is not installed is skipped.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=")
  return()
endif()

foreach(shell IN ITEMS bash zsh)
  add_test(NAME Completion.WorksIn_${shell}
    COMMAND /usr/bin/python3 -B ${CMAKE_CURRENT_SOURCE_DIR}/ShellCompletionTest.py
      ${shell} $<TARGET_FILE:result-tables> ${PROJECT_SOURCE_DIR}/packaging/completion)
  set_tests_properties(Completion.WorksIn_${shell} PROPERTIES SKIP_RETURN_CODE 77)
endforeach()
add_test(NAME ManualPages.AreThereForEachCommand
  COMMAND /usr/bin/python3 -B ${CMAKE_CURRENT_SOURCE_DIR}/ManualPagesTest.py $<TARGET_FILE:result-tables>)
set_tests_properties(ManualPages.AreThereForEachCommand PROPERTIES SKIP_RETURN_CODE 77)

# They hold the Python module: builds without it, as dev and coverage, may lack what it needs.
if(NOT KESTREL_BUILD_PYTHON)
  return()
endif()
# The packages, made by their own preset: with other options, for another place, and with the reference.
set(package_build ${PROJECT_SOURCE_DIR}/build/package)
add_test(NAME Packages.AreMade
  COMMAND sh -c "rm -rf build/package/packages && exec ${CMAKE_COMMAND} --workflow --preset package"
  WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
set_tests_properties(Packages.AreMade PROPERTIES
  FIXTURES_SETUP packages PROCESSORS 2 COST 1000 TIMEOUT 3600 SKIP_REGULAR_EXPRESSION "Could not find HELP2MAN")
add_test(NAME Packages.AreAsDebianAsks
  COMMAND /usr/bin/python3 -B ${CMAKE_CURRENT_SOURCE_DIR}/PackagesTest.py ${package_build})
set_tests_properties(Packages.AreAsDebianAsks PROPERTIES FIXTURES_REQUIRED packages SKIP_RETURN_CODE 77 TIMEOUT 600)
add_test(NAME Packages.InstallInABareSystemAndLeaveNothing
  COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/support/in-bare-debian.sh ${PROJECT_SOURCE_DIR}/build/bare-debian
    ${package_build}/packages ${PROJECT_VERSION})
set_tests_properties(Packages.InstallInABareSystemAndLeaveNothing PROPERTIES
  FIXTURES_REQUIRED packages SKIP_RETURN_CODE 77 LABELS real RUN_SERIAL ON TIMEOUT 1200)
set_tests_properties(Packages.AreMade Packages.AreAsDebianAsks PROPERTIES ENVIRONMENT SOURCE_DATE_EPOCH=1795305600)
