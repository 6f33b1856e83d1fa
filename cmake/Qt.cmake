# SPDX-License-Identifier: MIT
# Which Qt to build with. Where both are there and nobody chooses, it is Qt 6 on macOS, where Qt 5 is
# on its way out, and Qt 5 elsewhere: a start with Qt 6 takes longer, and nobody gains there.
set(DRASK_QT "" CACHE STRING "The version of Qt to build with: 6 or 5; empty: what is there")
set_property(CACHE DRASK_QT PROPERTY STRINGS "" 6 5)

if(DRASK_QT)
  set(qt_versions ${DRASK_QT})
elseif(APPLE)
  set(qt_versions 6 5)
else()
  set(qt_versions 5 6)
endif()
# One after the other: of several names, find_package() takes the one that the disk lists first.
foreach(version IN LISTS qt_versions)
  find_package(QT NAMES Qt${version} QUIET COMPONENTS Core)
  if(QT_FOUND)
    break()
  endif()
endforeach()
if(NOT QT_FOUND)
  message(FATAL_ERROR "Qt is not here; these versions were looked for: ${qt_versions}")
endif()
if(QT_VERSION VERSION_LESS 5.15 OR (QT_VERSION_MAJOR EQUAL 6 AND QT_VERSION VERSION_LESS 6.4))
  message(FATAL_ERROR "Qt ${QT_VERSION} is too old: at least 5.15 or 6.4 is needed")
endif()
find_package(Qt${QT_VERSION_MAJOR} REQUIRED COMPONENTS Core)
