# kr_keep_categories(TARGET): every program that links the static library takes all of its objects. The linker by itself
# leaves out an object that holds nothing but an Objective-C category, and its methods are then missing at run time.
function(kr_keep_categories target)
  if(APPLE)
    target_link_options(${target} INTERFACE "LINKER:-force_load,$<TARGET_FILE:${target}>")
  else()
    target_link_options(${target} INTERFACE
      "LINKER:--whole-archive,$<TARGET_FILE:${target}>,--no-whole-archive")
  endif()
endfunction()
