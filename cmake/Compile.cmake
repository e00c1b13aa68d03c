# How every target of the project is compiled: warnings, visibility, sanitizers, and source paths that do
# not depend on where the tree lies (they stand in trace lines and fatal messages).

add_library(tvx_compile INTERFACE)
target_compile_options(tvx_compile INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  $<$<BOOL:${TVX_WARNINGS_ARE_ERRORS}>:-Werror>
  -ffp-contract=off  # steps of floating-point rules are rounded one by one on every processor
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
if(TVX_SANITIZE)
  target_compile_options(tvx_compile INTERFACE
    -fsanitize=${TVX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tvx_compile INTERFACE -fsanitize=${TVX_SANITIZE})
endif()

# The public headers, for the libraries themselves and everything above them.
add_library(tvx_headers INTERFACE)
target_include_directories(tvx_headers INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

# tvx_shared_library(NAME SOURCES...): a versioned shared library that exports the C interface only.
function(tvx_shared_library name)
  add_library(${name} SHARED ${ARGN})
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_link_libraries(${name} PUBLIC tvx_headers PRIVATE $<BUILD_INTERFACE:tvx_compile>)
  if(NOT TVX_SANITIZE)
    target_link_options(${name} PRIVATE -Wl,-z,defs)
  endif()
  set(interface ${PROJECT_SOURCE_DIR}/cmake/interface.map)
  set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${interface})
  target_link_options(${name} PRIVATE -Wl,--as-needed -Wl,-z,now -Wl,--version-script,${interface})
endfunction()
