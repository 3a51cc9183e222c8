# Debian packages, one for each component: cpack --preset package. They are the same bytes each time with the same
# SOURCE_DATE_EPOCH.
find_program(HELP2MAN help2man REQUIRED)
find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(maintainer "The Business_TableProperties authors <maintainers@business-tableproperties.example>")
set(library_package libbusiness-tableproperties${PROJECT_VERSION_MAJOR})
set(development_package libbusiness-tableproperties-dev)
set(program_package result-tables)
set(python_package python3-result-tables)

# Changes that are not released make a version of their own.
set(changelog_source ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
set(changelog_script ${CMAKE_CURRENT_SOURCE_DIR}/debian/changelog.py)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${changelog_source})
execute_process(COMMAND ${Python3_EXECUTABLE} -B ${changelog_script} ${changelog_source} ${PROJECT_VERSION}
  OUTPUT_VARIABLE package_version OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

# ---- what is made of the sources and of what is built

set(changelog ${CMAKE_CURRENT_BINARY_DIR}/changelog.gz)
add_custom_command(OUTPUT ${changelog}
  COMMAND sh -c "'${Python3_EXECUTABLE}' -B \"$@\" | gzip -9n >'${changelog}'" sh
    ${changelog_script} ${changelog_source} ${PROJECT_VERSION} ${maintainer}
  DEPENDS ${changelog_source} ${changelog_script} VERBATIM)
set(manual ${CMAKE_CURRENT_BINARY_DIR}/man)
file(GLOB manual_sources CONFIGURE_DEPENDS man/*)
add_custom_command(OUTPUT ${manual}/result-tables.1.gz
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${manual}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${manual}
  COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/man/make $<TARGET_FILE:result-tables> ${manual}
  COMMAND gzip -9nr ${manual}
  DEPENDS result-tables ${manual_sources} VERBATIM)
set(symbols ${CMAKE_CURRENT_BINARY_DIR}/symbols)
set(symbols_of ${CMAKE_CURRENT_BINARY_DIR}/symbols_of)
add_custom_command(OUTPUT ${symbols}
  COMMAND ${CMAKE_COMMAND} -E rm -f ${symbols}  # it would be added to
  COMMAND ${CMAKE_COMMAND} -E make_directory ${symbols_of}/usr/lib
  COMMAND ${CMAKE_COMMAND} -E copy
    $<TARGET_SONAME_FILE:KestrelHost> $<TARGET_SONAME_FILE:Business_TableProperties> ${symbols_of}/usr/lib
  COMMAND sh -c "dpkg-gensymbols -q \"$@\" >'${symbols}.log'" sh
    -p${library_package} -v${package_version} -P${symbols_of} -O${symbols}
  COMMAND sed -i "/^lib/a * Build-Depends-Package: ${development_package}" ${symbols}
  DEPENDS KestrelHost Business_TableProperties VERBATIM)
add_custom_target(package_files ALL DEPENDS ${changelog} ${manual}/result-tables.1.gz ${symbols})
file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
install(DIRECTORY ${manual}/ DESTINATION share/man/man1 COMPONENT program)

# ---- packages

# Component NAME as package PACKAGE of SECTION.
function(add_package name package section description)
  string(TOUPPER ${name} NAME)
  set(CPACK_DEBIAN_${NAME}_PACKAGE_NAME ${package} PARENT_SCOPE)
  set(CPACK_DEBIAN_${NAME}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  set(CPACK_COMPONENT_${NAME}_DESCRIPTION ${description} PARENT_SCOPE)
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${name} PARENT_SCOPE)
  install(FILES ${CMAKE_CURRENT_SOURCE_DIR}/debian/copyright ${changelog} DESTINATION share/doc/${package} COMPONENT ${name})
  set(overrides ${CMAKE_CURRENT_SOURCE_DIR}/debian/${package}.lintian-overrides)
  if(EXISTS ${overrides})
    install(FILES ${overrides} DESTINATION share/lintian/overrides RENAME ${package} COMPONENT ${name})
  endif()
endfunction()

set(summary "For every clamp, bolt, pilot, suction zone, tool and join of a simulation of
sheet-metal forming and body assembly, the value of largest magnitude over
the stored series is found, sign kept, and compared with limits that users
set.

")
set(this_library "${library_package} (= ${package_version})")
add_package(library ${library_package} libs "result tables of a forming simulation: shared libraries
${summary}This package has the shared libraries and their message catalogues.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${CMAKE_CURRENT_BINARY_DIR}/triggers;${symbols}")
add_package(development ${development_package} libdevel "result tables of a forming simulation: headers
${summary}This package has the headers, and the files by which CMake and pkg-config
find the libraries.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${this_library}, libboost-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS ${program_package})
add_package(program ${program_package} science "result tables of a forming simulation
${summary}This package has the program result-tables: it shows these tables for
results files and for what solvers print, checks many files at once, compares
runs, draws the series behind the values, writes reports and workbooks, and
keeps studies of many runs in databases.")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS ${this_library})
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS libpq5)  # for studies on a server alone
if(KESTREL_BUILD_PYTHON)
  add_package(python ${python_package} python "result tables of a forming simulation: Python module
${summary}This package has the Python module result_tables.")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
    "${this_library}, python3 (>= 3.11), python3 (<< 3.12), python3-numpy, python3-pandas")
  set(scripts ${CMAKE_CURRENT_SOURCE_DIR}/debian/python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA "${scripts}/postinst;${scripts}/prerm")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGE_CONTACT ${maintainer})
set(CPACK_PACKAGE_VERSION ${package_version})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # would be the first line of each
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_VERSION ${package_version})
set(CPACK_DEBIAN_PACKAGE_SOURCE ${program_package})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR}/host ${PROJECT_BINARY_DIR}/Business_TableProperties)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
