# SPDX-License-Identifier: MIT
# CPack reads this once for each kind of package: the kinds differ in what they hold and where it
# goes.
set(content portable)
if(CPACK_GENERATOR STREQUAL "DEB")
  set(content debian)
  set(CPACK_PACKAGING_INSTALL_PREFIX /)
elseif(CPACK_GENERATOR STREQUAL "productbuild")
  set(CPACK_PACKAGING_INSTALL_PREFIX /Applications/Drask)
endif()
list(GET CPACK_INSTALL_CMAKE_PROJECTS 0 build_dir)
set(CPACK_INSTALL_CMAKE_PROJECTS "${build_dir};${CPACK_PACKAGE_NAME};${content};/")
