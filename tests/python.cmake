# The Python module, with the system's Python, whose packages are Debian's.
file(GLOB sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR}/python ${CMAKE_CURRENT_SOURCE_DIR}/python/*Test.py)
foreach(source IN LISTS sources)
  get_filename_component(name ${source} NAME_WE)
  string(REGEX REPLACE "Test$" "" name ${name})
  add_test(NAME Python.${name} COMMAND /usr/bin/python3 -B -X dev ${CMAKE_CURRENT_SOURCE_DIR}/python/${source})
  set_tests_properties(Python.${name} PROPERTIES TIMEOUT 180 ENVIRONMENT
    "LC_ALL=C.UTF-8;KESTREL_PROGRAM=$<TARGET_FILE:result-tables>;KESTREL_BUILD=${PROJECT_BINARY_DIR};\
PYTHONPATH=$<TARGET_FILE_DIR:python_module>/..")
endforeach()
