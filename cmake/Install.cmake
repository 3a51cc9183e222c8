# What is installed besides the targets themselves, and what others find the libraries by. Components: `library`,
# `development`, `program`, `python`.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Business_TableProperties)
configure_package_config_file(
  ${CMAKE_CURRENT_LIST_DIR}/Business_TablePropertiesConfig.cmake.in
  ${PROJECT_BINARY_DIR}/Business_TablePropertiesConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/Business_TablePropertiesConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/Business_TablePropertiesConfig.cmake
              ${PROJECT_BINARY_DIR}/Business_TablePropertiesConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)
install(EXPORT Business_TableProperties NAMESPACE Kestrel:: DESTINATION ${package_dir} COMPONENT development)

# The files of pkg-config name all places relative to their own, so that what is installed can move.
set(pkgconfig_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_of_pkgconfig /${pkgconfig_dir} /)
string(REGEX REPLACE "/$" "" prefix_of_pkgconfig "${prefix_of_pkgconfig}")
function(install_pkgconfig target)
  set(libraries -l${target})
  if(NOT BUILD_SHARED_LIBS)
    # A static library does not say itself what it calls and what must be part of every program.
    get_property(options TARGET ${target} PROPERTY INTERFACE_LINK_OPTIONS)
    list(TRANSFORM options REPLACE "^LINKER:" "-Wl,")
    list(PREPEND libraries ${options})
    list(APPEND libraries ${ARGN})
  endif()
  list(JOIN libraries " " libraries)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${target}.pc.in ${PROJECT_BINARY_DIR}/${target}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${target}.pc DESTINATION ${pkgconfig_dir} COMPONENT development)
endfunction()
if(KESTREL_HOST)
  set(host_requirement "")  # how the host is found is its own matter
else()
  set(host_requirement "KestrelHost = ${PROJECT_VERSION}")
  install_pkgconfig(KestrelHost -lboost_locale -lxxhash -ldl)
endif()
install_pkgconfig(Business_TableProperties -lboost_thread -pthread)
