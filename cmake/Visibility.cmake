# Shows what a shared object has in the namespace `Kestrel` and was compiled to be seen, and nothing else: templates of the
# standard library and of Boost that it instantiates stay its own, whatever visibility their headers ask for.
function(show_own_namespace_alone target)
  set(script ${PROJECT_SOURCE_DIR}/cmake/visibility.map)
  target_link_options(${target} PRIVATE
    $<$<STREQUAL:$<TARGET_PROPERTY:${target},TYPE>,SHARED_LIBRARY>:LINKER:--version-script=${script}>)
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${script})
endfunction()
