# SPDX-License-Identifier: MIT

if(ZEF_INTERPROCEDURAL_OPTIMIZATION)
  include(CheckIPOSupported)
  check_ipo_supported(RESULT zef_ipo_works LANGUAGES CXX)
endif()

# What every target of this project has in common: language level, warnings, link-time optimisation.
function(zef_configure_target target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  target_compile_options(${target} PRIVATE
    -Wall
    -Wextra
    -Wpedantic
    -Wshadow
    -Wconversion
    -Wsign-conversion
    -Wnon-virtual-dtor
    -Woverloaded-virtual
    $<$<BOOL:${ZEF_WARNINGS_AS_ERRORS}>:-Werror>)
  if(zef_ipo_works)
    set_target_properties(${target} PROPERTIES INTERPROCEDURAL_OPTIMIZATION ON)
  endif()
endfunction()

# A program made from the library and the given source files.
function(zef_add_program target)
  add_executable(${target} ${ARGN})
  target_link_libraries(${target} PRIVATE ZEFFilesystemTools::ZEFFilesystemTools)
  zef_configure_target(${target})
endfunction()
