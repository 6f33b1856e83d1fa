# SPDX-License-Identifier: MIT
# Runs while a package is put together. Brings into lib/ every library that the program needs and a
# machine without Qt may lack, and into licenses/ the terms that each comes under. Wants: program,
# the one in the build folder, which finds its libraries where it was linked with them.
set(package_dir "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")
set(readable OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)

if(APPLE)
  set(system_libraries "^/usr/lib/" "^/System/")
else()
  # The C library must fit the loader of the machine. The runtime of the compiler is on every desktop,
  # and ours would ask for a newer C library than anything else here does.
  set(system_libraries
    "^ld-linux.*" "^lib(c|m|dl|rt|util|pthread|resolv|mvec|stdc\\+\\+|gcc_s)\\.so.*")
endif()

# in_package(LIBRARY RESULT): the place of a library below lib/.
function(in_package library result)
  if(library MATCHES "/([^/]+\\.framework/.+)$")
    set(${result} "${CMAKE_MATCH_1}" PARENT_SCOPE)
  else()
    get_filename_component(name "${library}" NAME)
    set(${result} "${name}" PARENT_SCOPE)
  endif()
endfunction()

# copy_library(LIBRARY): the file itself under the name that the loader asks for; a framework with
# the resources that make it one.
function(copy_library library)
  if(library MATCHES "^(.+\\.framework)/")
    get_filename_component(framework "${CMAKE_MATCH_1}" REALPATH)
    file(COPY "${framework}" DESTINATION "${package_dir}/lib" FILE_PERMISSIONS ${readable}
      PATTERN Headers EXCLUDE
      PATTERN "*.prl" EXCLUDE)
  else()
    get_filename_component(file "${library}" REALPATH)
    get_filename_component(file_name "${file}" NAME)
    in_package("${library}" name)
    file(COPY "${file}" DESTINATION "${package_dir}/lib" FILE_PERMISSIONS ${readable})
    if(NOT file_name STREQUAL name)
      file(RENAME "${package_dir}/lib/${file_name}" "${package_dir}/lib/${name}")
    endif()
  endif()
endfunction()

# debian_origin(LIBRARY NAME VERSION TEXTS): the package that a library comes from, and its terms.
function(debian_origin library name version texts)
  get_filename_component(file "${library}" REALPATH)
  # The package may know the file by its place from before /lib became a link to /usr/lib.
  string(REGEX REPLACE "^/usr/lib/" "/lib/" old_place "${file}")
  foreach(place IN ITEMS "${file}" "${old_place}")
    execute_process(COMMAND dpkg-query --search "${place}"
      OUTPUT_VARIABLE owner ERROR_QUIET RESULT_VARIABLE failed)
    if(NOT failed)
      break()
    endif()
  endforeach()
  if(failed OR NOT owner MATCHES "^([^:,]+)")
    message(FATAL_ERROR "No package says under which terms ${file} comes")
  endif()
  set(package "${CMAKE_MATCH_1}")
  execute_process(COMMAND dpkg-query --show "--showformat=\${Version}\n" "${package}"
    OUTPUT_VARIABLE versions)
  string(REGEX MATCH "^[^\n]+" package_version "${versions}")
  set(${name} "${package}" PARENT_SCOPE)
  set(${version} "${package_version}" PARENT_SCOPE)
  set(${texts} "/usr/share/doc/${package}/copyright" PARENT_SCOPE)
endfunction()

# homebrew_origin(LIBRARY NAME VERSION TEXTS): the same for a library from a Homebrew cellar.
function(homebrew_origin library name version texts)
  get_filename_component(file "${library}" REALPATH)
  if(NOT file MATCHES "^(.*/Cellar/([^/]+)/([^/]+))/")
    message(FATAL_ERROR "No package says under which terms ${file} comes")
  endif()
  set(${name} "${CMAKE_MATCH_2}" PARENT_SCOPE)
  set(${version} "${CMAKE_MATCH_3}" PARENT_SCOPE)
  file(GLOB found "${CMAKE_MATCH_1}/LICEN[CS]E*" "${CMAKE_MATCH_1}/COPYING*")
  set(${texts} "${found}" PARENT_SCOPE)
endfunction()

# copy_texts(NAME TEXT...): the terms of one package, and the common licences that they point to.
function(copy_texts name)
  set(folder "${package_dir}/licenses/${name}")
  foreach(text IN LISTS ARGN)
    get_filename_component(file "${text}" REALPATH)
    file(COPY "${file}" DESTINATION "${folder}" FILE_PERMISSIONS ${readable})
    file(READ "${file}" words)
    string(REGEX MATCHALL "/usr/share/common-licenses/[A-Za-z0-9.-]*[A-Za-z0-9]" common "${words}")
    foreach(licence IN LISTS common)
      get_filename_component(file "${licence}" REALPATH)
      get_filename_component(licence_name "${licence}" NAME)
      configure_file("${file}" "${package_dir}/licenses/common-licenses/${licence_name}" COPYONLY)
    endforeach()
  endforeach()
  if(NOT EXISTS "${folder}")
    message(FATAL_ERROR "The terms of ${name} were not found")
  endif()
endfunction()

# search_in_package(FILE NAME...): makes a macOS file look for the libraries carried where they lie,
# and signs it again, as changed code does not run unsigned.
function(search_in_package file)
  execute_process(COMMAND otool -L "${file}" OUTPUT_VARIABLE needed)
  set(changes)
  foreach(name IN LISTS ARGN)
    string(REPLACE "." "\\." pattern "${name}")
    if(needed MATCHES "\n[ \t]+(/[^\n]*/${pattern}) \\(")
      list(APPEND changes -change "${CMAKE_MATCH_1}" "@rpath/${name}")
    endif()
    if(file STREQUAL "${package_dir}/lib/${name}")
      list(APPEND changes -id "@rpath/${name}")
    endif()
  endforeach()
  execute_process(COMMAND install_name_tool ${changes} "${file}" RESULT_VARIABLE failed)
  if(NOT failed)
    execute_process(COMMAND codesign --force --sign - "${file}" RESULT_VARIABLE failed)
  endif()
  if(failed)
    message(FATAL_ERROR "${file} could not be made to find its libraries")
  endif()
endfunction()

# A package made again begins anew.
file(REMOVE_RECURSE "${package_dir}/lib" "${package_dir}/licenses")
file(GET_RUNTIME_DEPENDENCIES
  EXECUTABLES "${program}"
  RESOLVED_DEPENDENCIES_VAR libraries
  PRE_EXCLUDE_REGEXES ${system_libraries})

set(origins "\
The libraries in lib/ come from the packages below, unchanged. Each may be replaced by another build
of the same library. The terms of a package are in the folder that has its name.
")
if(APPLE)
  string(REPLACE ", unchanged" ", but for the places where they look for each other"
    origins "${origins}")
endif()
set(names)
foreach(library IN LISTS libraries)
  copy_library("${library}")
  in_package("${library}" name)
  list(APPEND names "${name}")
  if(APPLE)
    homebrew_origin("${library}" package version texts)
  else()
    debian_origin("${library}" package version texts)
  endif()
  copy_texts("${package}" ${texts})
  string(APPEND origins "\n${name}: ${package} ${version}")
endforeach()
file(WRITE "${package_dir}/licenses/README.txt" "${origins}\n")

if(APPLE)
  foreach(name IN LISTS names)
    search_in_package("${package_dir}/lib/${name}" ${names})
  endforeach()
  search_in_package("${package_dir}/drask-installer" ${names})
  search_in_package("${package_dir}/drask-status" ${names})
endif()
