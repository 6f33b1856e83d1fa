# SPDX-License-Identifier: MIT
# Makes hosts.inc from data/hosts.txt: its first four columns as rows of a C++ table. DRASK_HOST_TABLE
# is the folder to include it from.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/data/hosts.txt)
file(STRINGS ${PROJECT_SOURCE_DIR}/data/hosts.txt rows REGEX "^[^#]")
list(TRANSFORM rows REPLACE "^([^ |]*) *[|] *([^ |]*) *[|] *([^ |]*) *[|] *([^ |]*) .*"
  "{\"\\1\", \"\\2\", \"\\3\", \"\\4\"},\n")
list(JOIN rows "" rows)
set(DRASK_HOST_TABLE ${CMAKE_CURRENT_BINARY_DIR}/hosttable)
file(GENERATE OUTPUT ${DRASK_HOST_TABLE}/hosts.inc CONTENT "${rows}")
