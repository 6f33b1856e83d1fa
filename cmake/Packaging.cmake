# SPDX-License-Identifier: MIT
# What CPack makes: on Linux a .tar.gz that carries its libraries and a .deb that depends on them, on
# macOS a .pkg and a .tar.gz that both carry them. docs/packages.md says what each holds.
set(DRASK_PACKAGE_CONTACT
  "The Drask plug-in installer authors <drask-installer@drask.example>"
  CACHE STRING "Maintainer that the packages name")

set(packaging_dir ${CMAKE_CURRENT_LIST_DIR}/packaging)

# --- Packages that carry their libraries ---------------------------------------------------------

# Programs of their own, from the same objects: their search path must not get into the .deb, where it
# would find the libraries of whatever else the manager keeps in its folder.
function(drask_add_portable program library)
  add_executable(${program}-portable $<TARGET_OBJECTS:${program}>)
  target_link_libraries(${program}-portable PRIVATE ${library})
  set_target_properties(${program}-portable PROPERTIES
    OUTPUT_NAME ${program}
    LINKER_LANGUAGE CXX
    RUNTIME_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/portable)
  if(APPLE)
    set_target_properties(${program}-portable PROPERTIES
      INSTALL_RPATH "@executable_path/lib")
    # install_name_tool puts long names into the place of short ones.
    target_link_options(${program}-portable PRIVATE -Wl,-headerpad_max_install_names)
  else()
    set_target_properties(${program}-portable PROPERTIES
      INSTALL_RPATH "$ORIGIN/lib")
    # Only the older kind of search path holds for what the libraries themselves need.
    target_link_options(${program}-portable PRIVATE -Wl,--disable-new-dtags)
  endif()
  install(TARGETS ${program}-portable
    RUNTIME DESTINATION . COMPONENT portable EXCLUDE_FROM_ALL)
endfunction()
drask_add_portable(drask-installer drask_installer_core)
drask_add_portable(drask-status drask_status_core)

# What somebody without the sources needs to know.
set(pages docs/integration.md docs/formats.md docs/support.md docs/status.md)
install(FILES LICENSE docs/status.schema.json
  DESTINATION . COMPONENT portable EXCLUDE_FROM_ALL)
install(FILES ${pages} DESTINATION doc COMPONENT portable EXCLUDE_FROM_ALL)
install(FILES docs/drask-installer.1 docs/drask-status.1
  DESTINATION man/man1 COMPONENT portable EXCLUDE_FROM_ALL)
install(PROGRAMS deploy/support-bundle DESTINATION . COMPONENT portable EXCLUDE_FROM_ALL)
install(CODE "set(program \"$<TARGET_FILE:drask-installer>\")"
  COMPONENT portable EXCLUDE_FROM_ALL)
install(SCRIPT ${packaging_dir}/CarryLibraries.cmake COMPONENT portable EXCLUDE_FROM_ALL)

# --- The .deb ------------------------------------------------------------------------------------

set(debian_doc_dir usr/share/doc/${PROJECT_NAME})
install(TARGETS drask-installer drask-status
  RUNTIME DESTINATION opt/drask COMPONENT debian EXCLUDE_FROM_ALL)
install(PROGRAMS deploy/support-bundle DESTINATION opt/drask COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES ${pages} DESTINATION ${debian_doc_dir} COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES docs/status.schema.json DESTINATION usr/share/${PROJECT_NAME}
  COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES completions/drask-status.bash DESTINATION usr/share/bash-completion/completions
  RENAME drask-status COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES completions/_drask-status DESTINATION usr/share/zsh/vendor-completions
  COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES LICENSE DESTINATION ${debian_doc_dir} RENAME copyright
  COMPONENT debian EXCLUDE_FROM_ALL)
install(FILES ${packaging_dir}/lintian-overrides DESTINATION usr/share/lintian/overrides
  RENAME ${PROJECT_NAME} COMPONENT debian EXCLUDE_FROM_ALL)
install(CODE "
  set(source_dir \"${PROJECT_SOURCE_DIR}\")
  set(doc_dir \"${debian_doc_dir}\")
  set(release \"${PROJECT_NAME} (${PROJECT_VERSION}-1)\")
  set(maintainer \"${DRASK_PACKAGE_CONTACT}\")
  set(strip \"${CMAKE_STRIP}\")"
  COMPONENT debian EXCLUDE_FROM_ALL)
install(SCRIPT ${packaging_dir}/DebianDocs.cmake COMPONENT debian EXCLUDE_FROM_ALL)

# --- CPack ---------------------------------------------------------------------------------------

string(TOLOWER "${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}" platform)
string(REPLACE darwin macos platform "${platform}")
set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-${platform})
set(CPACK_PACKAGE_VENDOR Drask)
set(CPACK_PACKAGE_CONTACT "${DRASK_PACKAGE_CONTACT}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION
"The desktop manager of the Drask render farm starts this command-line tool
to bring its plug-ins into the 3D programs that it has found, to update and
configure them, and to remove them again. The tool reads the manager's
settings.ini and keeps its logs beside itself.")
set(CPACK_MONOLITHIC_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PROJECT_CONFIG_FILE ${packaging_dir}/PackageKinds.cmake)
set(CPACK_SOURCE_GENERATOR TGZ)
set(CPACK_SOURCE_IGNORE_FILES "/build[^/]*/;/[.]git/;/[.]cache/")

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${packaging_dir}/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

if(APPLE)
  # Never built by those who wrote it: only the workflow has the tools. productbuild wants its texts
  # in files with an ending that it knows.
  configure_file(LICENSE ${CMAKE_CURRENT_BINARY_DIR}/LICENSE.txt COPYONLY)
  set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_CURRENT_BINARY_DIR}/LICENSE.txt)
  set(CPACK_GENERATOR TGZ productbuild)
else()
  set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
  set(CPACK_GENERATOR TGZ)
  find_program(DPKG_SHLIBDEPS dpkg-shlibdeps)
  mark_as_advanced(DPKG_SHLIBDEPS)
  if(DPKG_SHLIBDEPS)
    list(APPEND CPACK_GENERATOR DEB)
  endif()
endif()
include(CPack)
