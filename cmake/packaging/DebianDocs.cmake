# SPDX-License-Identifier: MIT
# Runs while the .deb is put together. Writes the documents that Debian wants compressed, and strips what
# Debian strips. Wants: source_dir, doc_dir, release ("name (version)"), maintainer and strip.
set(package_dir "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")

# compressed(FILE): without name and time, so that the same sources make the same package.
function(compressed file)
  execute_process(COMMAND gzip --best --no-name --force "${file}" RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "${file} could not be compressed")
  endif()
endfunction()

# The time is that of SOURCE_DATE_EPOCH, where it is set.
string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(changelog "${package_dir}/${doc_dir}/changelog.Debian")
file(WRITE "${changelog}" "\
${release} stable; urgency=medium

  * The changes are in changelog.gz.

 -- ${maintainer}  ${now}
")
compressed("${changelog}")

configure_file("${source_dir}/CHANGELOG.md" "${package_dir}/${doc_dir}/changelog" COPYONLY)
compressed("${package_dir}/${doc_dir}/changelog")

foreach(program IN ITEMS drask-installer drask-status)
  execute_process(COMMAND "${strip}" --remove-section=.comment --remove-section=.note
    "${package_dir}/opt/drask/${program}" RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "${program} could not be stripped")
  endif()
  set(manual "${package_dir}/usr/share/man/man1/${program}.1")
  configure_file("${source_dir}/docs/${program}.1" "${manual}" COPYONLY)
  compressed("${manual}")
endforeach()
