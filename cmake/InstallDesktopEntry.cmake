# SPDX-License-Identifier: MIT
# KDE's compositor gives the program what its desktop entry asks for only where the entry names it by
# its whole path, which is known only while it is installed. A path that would have to be quoted stays
# the program's name: then the entry starts it, and no more.
foreach(place bin_directory data_directory)
  if(NOT IS_ABSOLUTE "${${place}}")
    set(${place} "${CMAKE_INSTALL_PREFIX}/${${place}}")
  endif()
endforeach()

file(READ "${desktop_entry}" entry)
if(bin_directory MATCHES "^[A-Za-z0-9/._+-]+$")
  string(REPLACE "\nExec=vantorel" "\nExec=${bin_directory}/vantorel" entry "${entry}")
endif()

set(installed "${data_directory}/applications/${application_id}.desktop")
message(STATUS "Installing: $ENV{DESTDIR}${installed}")
file(WRITE "$ENV{DESTDIR}${installed}" "${entry}")
list(APPEND CMAKE_INSTALL_MANIFEST_FILES "${installed}")
