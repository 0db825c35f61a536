# One static library per layer of src/: the folder's sources, the src/ include
# root, and the layers directly below it as public link dependencies. Qt or
# anything else a layer needs on its own side is linked PRIVATE by the caller
# so that it never shows in the interface of the layers above.
function(korvanel_add_layer layer)
  cmake_parse_arguments(ARG "" "" "BELOW" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_library(korvanel_${layer} STATIC ${sources})
  target_include_directories(korvanel_${layer} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  korvanel_exact_floating_point(korvanel_${layer})
  target_link_libraries(korvanel_${layer} PUBLIC ${ARG_BELOW})
endfunction()

# Colour arithmetic must give the same doubles everywhere, in the core and in
# the viewer's readouts of it: no fused multiply-add.
function(korvanel_exact_floating_point target)
  target_compile_options(${target} PRIVATE -ffp-contract=off)
endfunction()

# The pixel kernels are worth the full vectoriser whatever the build type.
# Paths are relative to the calling layer's folder.
function(korvanel_hot_sources)
  set(files ${ARGN})
  list(TRANSFORM files PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  set_source_files_properties(${files} PROPERTIES COMPILE_OPTIONS "-O3")
endfunction()

# A layer links on its own: an executable that takes in every object of the
# layer and only the libraries it declares must resolve every symbol, so a
# call up the ladder fails the build instead of hiding in the final link.
# Sanitizer and fuzz trees skip it: the plain tree already links it, and the
# sanitizers find nothing in a program that does nothing.
function(korvanel_check_layer_alone layer)
  if(KORVANEL_SANITIZE OR KORVANEL_TSAN)
    return()
  endif()
  add_executable(korvanel_${layer}_alone ${PROJECT_SOURCE_DIR}/cmake/layer_alone.cpp)
  target_link_libraries(korvanel_${layer}_alone PRIVATE "$<LINK_LIBRARY:WHOLE_ARCHIVE,korvanel_${layer}>")
endfunction()
