# SPDX-License-Identifier: MIT
# The bus starts the program by its whole path, which is known only while it is installed: the prefix
# may be named to `cmake --install`. DESTDIR stands before where the file is put, not in what it says.
foreach(place bin_directory data_directory)
  if(NOT IS_ABSOLUTE "${${place}}")
    set(${place} "${CMAKE_INSTALL_PREFIX}/${${place}}")
  endif()
endforeach()

# The bus takes the line apart as a shell does.
set(program "${bin_directory}/vantorel")
if(NOT program MATCHES "^[A-Za-z0-9/._+-]+$")
  string(REGEX REPLACE "([\"\\\\$`])" "\\\\\\1" program "${program}")
  set(program "\"${program}\"")
endif()

set(service "${data_directory}/dbus-1/services/${application_id}.service")
message(STATUS "Installing: $ENV{DESTDIR}${service}")
file(CONFIGURE OUTPUT "$ENV{DESTDIR}${service}" @ONLY
  CONTENT "[D-BUS Service]\nName=@application_id@\nExec=@program@\n")
list(APPEND CMAKE_INSTALL_MANIFEST_FILES "${service}")
