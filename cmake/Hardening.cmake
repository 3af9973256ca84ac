# What makes a fault in reading a stranger's file end the program in place of letting the file run code of its own.

include(CheckCXXCompilerFlag)

# hardening_option(FLAG...): each FLAG that the compiler knows for this processor, for all code.
function(hardening_option)
  foreach(flag ${ARGN})
    string(MAKE_C_IDENTIFIER "SORBEL_HAS${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
      target_compile_options(sorbel_options INTERFACE ${flag})
    endif()
  endforeach()
endfunction()

# The sanitizers find the same faults with checks of their own, which these would be in the way of.
if(NOT SORBEL_SANITIZE AND NOT SORBEL_FUZZ)
  hardening_option(-fstack-protector-strong -fstack-clash-protection)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
    hardening_option(-fcf-protection=full)
  elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
    hardening_option(-mbranch-protection=standard)
  endif()
  # Without optimisation there is nothing for the library to check by. A value set elsewhere gives way without a
  # warning about two.
  target_compile_options(sorbel_options INTERFACE
    $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>)
  # A position of its own for each start. Not by CMAKE_POSITION_INDEPENDENT_CODE, which makes of static libraries
  # what may be put into shared ones, and so calls through a table.
  target_compile_options(sorbel_options INTERFACE -fPIE)
  target_link_options(sorbel_options INTERFACE -pie)
  if(NOT APPLE)
    target_link_options(sorbel_options INTERFACE LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
  endif()
endif()
