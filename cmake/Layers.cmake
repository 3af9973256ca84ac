# Compiler settings that every target shares, and one library for each folder of src/.

add_library(sorbel_options INTERFACE)
target_compile_options(sorbel_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  -Wno-sign-conversion -Wnon-virtual-dtor -Woverloaded-virtual $<$<BOOL:${SORBEL_WERROR}>:-Werror>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # False alarms on `"text" + String` when optimising, gone in g++ 13.
  target_compile_options(sorbel_options INTERFACE -Wno-restrict)
endif()
# A program loads only the libraries that it calls.
target_link_options(sorbel_options INTERFACE LINKER:--as-needed)
target_include_directories(sorbel_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
if(SORBEL_SANITIZE)
  target_compile_options(sorbel_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  target_link_options(sorbel_options INTERFACE -fsanitize=address,undefined)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # False alarms on inlined code that the sanitizers have instrumented.
    target_compile_options(sorbel_options INTERFACE -Wno-array-bounds -Wno-stringop-overflow)
  endif()
endif()
include(cmake/Hardening.cmake)
if(SORBEL_FUZZ)
  # All code tells the fuzzer where it has been; only its targets bring its `main`.
  target_compile_options(sorbel_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# A forbidden include fails here, before anything is compiled.
add_custom_target(sorbel_layers
  COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tools/check_layers.py ${PROJECT_SOURCE_DIR}/src
  VERBATIM)

# sorbel_layer(NAME FOLDER [libraries it may use...]): the .cpp files directly in src/FOLDER.
function(sorbel_layer name folder)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${folder}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/(main|FileTypes1)\\.cpp$")
  if(NOT sources)
    return()
  endif()
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC sorbel_options ${ARGN})
  add_dependencies(${name} sorbel_layers)
endfunction()
