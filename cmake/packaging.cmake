# Installation (cmake --install) and the Debian package (cpack -G DEB):
# the runner, the upgrader library with the platform library it needs, the
# string table and the sample, a man page and a bash completion made from
# the runner's own help. The two libraries are the runner's own, not for
# other programs to link: they go into lib/kdvq-upgraders, where the runner
# looks for the upgrader library (../lib/kdvq-upgraders next to itself), as
# for its resources in ../share/kdvq, so the tree works under any prefix.
set(KDVQ_GENERATED ${PROJECT_BINARY_DIR}/generated)
# Installing needs the installed targets only, not the tests and the
# benchmark: build kdvq-upgrade, kdVqUpgraders and kdvq-help-pages first.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
add_custom_command(
  OUTPUT ${KDVQ_GENERATED}/kdvq-upgrade.1 ${KDVQ_GENERATED}/kdvq-upgrade.bash
  COMMAND ${CMAKE_COMMAND} -E make_directory ${KDVQ_GENERATED}
  COMMAND ${CMAKE_COMMAND} -DRUNNER=$<TARGET_FILE:kdvq-upgrade> -DMAN_PAGE=${KDVQ_GENERATED}/kdvq-upgrade.1
          -DCOMPLETION=${KDVQ_GENERATED}/kdvq-upgrade.bash -P ${PROJECT_SOURCE_DIR}/cmake/help_pages.cmake
  DEPENDS kdvq-upgrade ${PROJECT_SOURCE_DIR}/cmake/help_pages.cmake
  COMMENT "Making the man page and the shell completion from the runner's help")
add_custom_target(kdvq-help-pages ALL
  DEPENDS ${KDVQ_GENERATED}/kdvq-upgrade.1 ${KDVQ_GENERATED}/kdvq-upgrade.bash)

# Installed programs find the project's libraries beside them, not in the build.
set_target_properties(kdvq-upgrade kdVqUpgraders kdplatform PROPERTIES INSTALL_RPATH "$ORIGIN/../lib/kdvq-upgraders")
install(TARGETS kdvq-upgrade RUNTIME DESTINATION bin)
install(TARGETS kdVqUpgraders kdplatform LIBRARY DESTINATION lib/kdvq-upgraders)
install(FILES ${PROJECT_SOURCE_DIR}/host/resources/strings.en.txt ${PROJECT_SOURCE_DIR}/host/resources/sample-8.2.sql
        DESTINATION share/kdvq)
install(FILES ${KDVQ_GENERATED}/kdvq-upgrade.1 DESTINATION share/man/man1)
install(FILES ${KDVQ_GENERATED}/kdvq-upgrade.bash DESTINATION share/bash-completion/completions
        RENAME kdvq-upgrade)

set(CPACK_PACKAGE_NAME kdvq-upgraders)
set(CPACK_PACKAGE_VENDOR "kdVqUpgraders")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Repository upgraders of the workflow framework and their runner kdvq-upgrade")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_GENERATOR DEB)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "kdVqUpgraders developers")
set(CPACK_DEBIAN_PACKAGE_SECTION database)
# The shared libraries the programs need, found by dpkg-shlibdeps; the
# project's own two are in the package.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
include(CPack)
