# The standard headers that most files include, parsed once a target where the build asks for it.
function(quibbits_precompile target)
  if(QUIBBITS_PRECOMPILE)
    target_precompile_headers(${target} PRIVATE
      <algorithm> <functional> <map> <memory> <optional> <string> <variant> <vector>)
  endif()
endfunction()

# The house: every folder under src/ is a target, and a target sees the headers of the folders it
# links and no others. Headers are named from src/ ("layers/Layer.h"); each target exports an
# include directory that holds one link, to its own folder, so an include that reaches up a floor
# does not compile.
#
#   quibbits_folder(layers FLOOR 1 USES platform)
#
# Every source in the folder belongs to it, save those after EXCEPT; with RECURSE also those of its
# subfolders. FLOOR is the storey of the design; USES may name lower floors only. Folders
# without a FLOOR stand beside the core and may use any of it.
function(quibbits_folder name)
  cmake_parse_arguments(ARG "RECURSE" "FLOOR" "USES;LINKS;EXCEPT" ${ARGN})
  string(REPLACE "/" "_" target "${name}")
  set(folder "${PROJECT_SOURCE_DIR}/src/${name}")
  if(ARG_RECURSE)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${folder}/*.cpp")
  else()
    file(GLOB sources CONFIGURE_DEPENDS "${folder}/*.cpp")
  endif()
  foreach(left_out IN LISTS ARG_EXCEPT)
    list(FILTER sources EXCLUDE REGEX "^${folder}/${left_out}$")
  endforeach()

  set(view "${CMAKE_BINARY_DIR}/floors/${target}")
  cmake_path(GET name PARENT_PATH parent)
  file(MAKE_DIRECTORY "${view}/${parent}")
  file(CREATE_LINK "${folder}" "${view}/${name}" SYMBOLIC)

  if(sources)
    add_library(${target} STATIC ${sources})
    set(scope PUBLIC)
    target_link_libraries(${target} PRIVATE quibbits_flags)
    quibbits_precompile(${target})
  else()
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_include_directories(${target} ${scope} "${view}")

  if(DEFINED ARG_FLOOR)
    set_property(TARGET ${target} PROPERTY QUIBBITS_FLOOR ${ARG_FLOOR})
  endif()
  foreach(used IN LISTS ARG_USES)
    string(REPLACE "/" "_" lower "${used}")
    get_property(floor TARGET ${lower} PROPERTY QUIBBITS_FLOOR)
    if(DEFINED ARG_FLOOR AND NOT "${floor}" LESS "${ARG_FLOOR}")
      message(FATAL_ERROR "${name} (floor ${ARG_FLOOR}) may not use ${used} (floor ${floor})")
    endif()
    target_link_libraries(${target} ${scope} ${lower})
  endforeach()
  if(ARG_LINKS)
    target_link_libraries(${target} ${scope} ${ARG_LINKS})
  endif()
endfunction()

# A program: quibbits_program(quibbits SOURCES main.cpp USES app desktop)
function(quibbits_program name)
  cmake_parse_arguments(ARG "" "" "USES;SOURCES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE quibbits_flags)
  foreach(used IN LISTS ARG_USES)
    string(REPLACE "/" "_" lower "${used}")
    target_link_libraries(${name} PRIVATE ${lower})
  endforeach()
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
endfunction()
