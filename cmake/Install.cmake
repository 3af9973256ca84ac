# Where things go when they are installed, in four components: `program` is what a translator needs, `headless` the
# driver without a screen, `exchange` the program for the command line, `documentation` what one reads and tries.

include(GNUInstallDirs)
if(NOT "$CACHE{CMAKE_INSTALL_DOCDIR}")  # by itself the project's name, which is not the package's
  set(CMAKE_INSTALL_DOCDIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/sorbel)
  set(CMAKE_INSTALL_FULL_DOCDIR ${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DOCDIR})
endif()

# The data folder in the build tree. It lies as that of an installed program does as seen from the program, which so
# finds it in both without a path of the machine that built it.
set(SORBEL_RESOURCES ${PROJECT_BINARY_DIR}/share/sorbel/Resources)

# sorbel_install_program(TARGET COMPONENT): the program, its manual page packaging/man/TARGET.1 and the data folder.
function(sorbel_install_program target component)
  install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${component})
  set(page ${PROJECT_BINARY_DIR}/man/${target}.1)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/man/${target}.1 ${page} @ONLY)
  install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT ${component})
  install(DIRECTORY ${SORBEL_RESOURCES}/ DESTINATION ${CMAKE_INSTALL_DATADIR}/sorbel/Resources
    COMPONENT ${component})
  add_dependencies(${target} sorbel_resources)
endfunction()
