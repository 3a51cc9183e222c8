# The reference of the installed headers: target `reference`, ${PROJECT_BINARY_DIR}/reference/html. A member without a word
# is an error.
if(KESTREL_BUILD_REFERENCE)
  find_package(Doxygen REQUIRED)
  set(in_all ALL)
else()
  find_package(Doxygen QUIET)
  set(in_all "")
endif()
if(NOT TARGET Doxygen::doxygen)
  return()
endif()

set(DOXYGEN_PROJECT_BRIEF "${PROJECT_DESCRIPTION}")
set(DOXYGEN_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/reference)
set(DOXYGEN_USE_MDFILE_AS_MAINPAGE ${PROJECT_SOURCE_DIR}/docs/reference.md)
set(DOXYGEN_IMAGE_PATH ${PROJECT_SOURCE_DIR}/docs)
set(DOXYGEN_STRIP_FROM_PATH ${PROJECT_SOURCE_DIR}/host ${PROJECT_SOURCE_DIR})
set(DOXYGEN_STRIP_FROM_INC_PATH ${PROJECT_SOURCE_DIR}/host ${PROJECT_SOURCE_DIR})
set(DOXYGEN_WARN_AS_ERROR FAIL_ON_WARNINGS)
set(DOXYGEN_WARN_IF_UNDOCUMENTED YES)
set(DOXYGEN_QUIET YES)
# The first sentence stands in lists.
set(DOXYGEN_JAVADOC_AUTOBRIEF YES)
set(DOXYGEN_HAVE_DOT NO)
set(DOXYGEN_GENERATE_LATEX NO)
set(DOXYGEN_HTML_TIMESTAMP NO)
set(DOXYGEN_VERBATIM_HEADERS NO)
set(DOXYGEN_MACRO_EXPANSION YES)
set(DOXYGEN_EXPAND_ONLY_PREDEF YES)
set(DOXYGEN_PREDEFINED KESTREL_TABLEPROPERTIES_EXPORT=)
# What a comment says of several operations, it says of each.
set(DOXYGEN_DISTRIBUTE_GROUP_DOC YES)
get_target_property(library_headers Business_TableProperties HEADER_SET)
get_target_property(host_headers KestrelHost HEADER_SET)
doxygen_add_docs(reference
  ${PROJECT_SOURCE_DIR}/docs/reference.md ${library_headers} ${host_headers}
  ${in_all} USE_STAMP_FILE COMMENT "Making the reference")

if(KESTREL_BUILD_REFERENCE AND KESTREL_INSTALL)
  install(DIRECTORY ${PROJECT_BINARY_DIR}/reference/html/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/reference
    COMPONENT development)
endif()
