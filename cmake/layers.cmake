# A layer is one folder of the code and what it may see. docs/levels.md lists them; the compiler holds to the list,
# because a layer gets include paths to itself and to the layers that it uses, and to nothing else.

# The folder's headers where its users find them, each under its full name: BINARY_DIR/layers/NAME/module/store/x.h.
# Headers of folders within the folder are not among them.
function(norvane_show_headers name result)
  file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  set(view ${CMAKE_BINARY_DIR}/layers/${name})
  file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  file(REMOVE_RECURSE ${view})
  file(MAKE_DIRECTORY ${view}/${folder})
  foreach(header ${headers})
    get_filename_component(file ${header} NAME)
    file(CREATE_LINK ${header} ${view}/${folder}/${file} SYMBOLIC)
  endforeach()
  set(${result} ${view} PARENT_SCOPE)
endfunction()

# A layer of a shared library. NAME stands for its headers and for those of the layers in USES; NAME_objects are its
# compiled sources, which the shared library takes in. PRIVATE: libraries that the sources need and their users do not.
function(norvane_layer name)
  cmake_parse_arguments(PARSE_ARGV 1 LAYER "" "" "SOURCES;USES;PRIVATE")
  norvane_show_headers(${name} view)
  add_library(${name} INTERFACE)
  target_include_directories(${name} INTERFACE ${view})
  target_link_libraries(${name} INTERFACE ${LAYER_USES})
  if(LAYER_SOURCES)
    add_library(${name}_objects OBJECT ${LAYER_SOURCES})
    target_link_libraries(${name}_objects PRIVATE ${name} ${LAYER_PRIVATE})
    norvane_precompile(${name}_objects FOR library LIBRARIES ${LAYER_USES} ${LAYER_PRIVATE})
  endif()
endfunction()

# A layer that is a static library of its own: its users link it, and see its headers and those of USES.
function(norvane_static_layer name)
  cmake_parse_arguments(PARSE_ARGV 1 LAYER "" "" "SOURCES;USES;PRIVATE")
  norvane_show_headers(${name} view)
  add_library(${name} STATIC ${LAYER_SOURCES})
  target_include_directories(${name} PUBLIC ${view})
  target_link_libraries(${name} PUBLIC ${LAYER_USES} PRIVATE ${LAYER_PRIVATE})
  norvane_precompile(${name} FOR library LIBRARIES ${LAYER_USES} ${LAYER_PRIVATE})
endfunction()
