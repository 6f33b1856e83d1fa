# SPDX-License-Identifier: MIT
# Which Qt to build with. Where both are there and nobody chooses, it is Qt 6 on macOS, where Qt 5 is
# on its way out, and Qt 5 elsewhere: a start with Qt 6 takes longer there, and nobody gains.
set(DRASK_QT "" CACHE STRING "The version of Qt to build with: 6 or 5; empty: what is there")
set_property(CACHE DRASK_QT PROPERTY STRINGS "" 6 5)

if(DRASK_QT)
  set(qt_names Qt${DRASK_QT})
elseif(APPLE)
  set(qt_names Qt6 Qt5)
else()
  set(qt_names Qt5 Qt6)
endif()
find_package(QT NAMES ${qt_names} REQUIRED COMPONENTS Core)
if(QT_VERSION VERSION_LESS 5.15 OR (QT_VERSION_MAJOR EQUAL 6 AND QT_VERSION VERSION_LESS 6.4))
  message(FATAL_ERROR "Qt ${QT_VERSION} is too old: at least 5.15 or 6.4 is needed")
endif()
find_package(Qt${QT_VERSION_MAJOR} REQUIRED COMPONENTS Core)
