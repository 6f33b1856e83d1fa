# SPDX-License-Identifier: MIT
# Builds the program with the Qt that this build does not use, in a folder of its own; where that is
# not on the machine, there is no program. Wants: source, folder, version, generator, build_type.
if(NOT EXISTS ${folder}/build.ninja)
  execute_process(COMMAND ${CMAKE_COMMAND} -S ${source} -B ${folder} -G ${generator}
    -DDRASK_QT=${version} -DDRASK_BUILD_TESTS=OFF -DCMAKE_BUILD_TYPE=${build_type}
    RESULT_VARIABLE failed OUTPUT_QUIET ERROR_VARIABLE reason)
  if(failed)
    file(REMOVE_RECURSE ${folder})
    if(reason MATCHES "Qt is not here")
      return()
    endif()
    message(FATAL_ERROR "${reason}")
  endif()
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --build ${folder} --target drask-installer
  RESULT_VARIABLE failed OUTPUT_VARIABLE output)
if(failed)
  message(FATAL_ERROR "${output}")
endif()
