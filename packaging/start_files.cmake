# Run when the program is installed: fills its path into the files by which a desktop and a session bus start it.

# write_start_files(ID SOURCE BINARY BIN): from the templates in SOURCE into BINARY, for the program in the folder BIN
# below the prefix. A function, since a variable `program` out there would be taken for the component of that name.
function(write_start_files id source binary bin)
  cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_PREFIX NORMALIZE OUTPUT_VARIABLE path)
  cmake_path(APPEND path "${bin}" sorbel)

  # Both files quote words as a shell does, within values in which a backslash is written as two.
  set(program_quoted "${path}")
  if(NOT path MATCHES "^[-A-Za-z0-9/._+]+$")
    string(REGEX REPLACE "([\"`$\\])" "\\\\\\1" program_quoted "${path}")
    string(REPLACE "\\" "\\\\" program_quoted "\"${program_quoted}\"")
  endif()
  string(REPLACE "%" "%%" program_in_entry "${program_quoted}")  # there a percent sign begins a field

  configure_file("${source}/${id}.desktop.in" "${binary}/${id}.desktop" @ONLY)
  configure_file("${source}/${id}.service.in" "${binary}/${id}.service" @ONLY)
endfunction()
