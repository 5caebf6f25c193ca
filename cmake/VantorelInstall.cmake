# SPDX-License-Identifier: MIT
# Where everything goes that a desktop needs to know the program.
#
# The desktop entry does not say DBusActivatable: a first start then shows no panel where a tray shows
# the program, while being activated over the bus always means "reopen the application". Who calls the
# name on the bus still starts the program, by the service file.
include(GNUInstallDirs)

set(application_id com.vantorel.Vantorel)
set(packaging "${PROJECT_SOURCE_DIR}/packaging")

install(TARGETS vantorel RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
# Only the program starts them; without Tesseract the first is not there.
foreach(worker vantorel_text vantorel_pictures)
  if(TARGET ${worker})
    install(TARGETS ${worker} RUNTIME DESTINATION "${CMAKE_INSTALL_LIBEXECDIR}/vantorel")
  endif()
endforeach()
configure_file("${packaging}/${application_id}.metainfo.xml.in"
  "${PROJECT_BINARY_DIR}/${application_id}.metainfo.xml" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/${application_id}.metainfo.xml"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
configure_file("${packaging}/vantorel.1.in" "${PROJECT_BINARY_DIR}/vantorel.1" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/vantorel.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
include(cmake/VantorelCompletions.cmake)

install(FILES "${PROJECT_SOURCE_DIR}/resources/${application_id}.svg"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
install(FILES "${PROJECT_SOURCE_DIR}/resources/symbols/clipmb-template.svg"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/symbolic/apps"
  RENAME "${application_id}-symbolic.svg")
install(FILES "${PROJECT_SOURCE_DIR}/resources/symbols/clipmb-template-paused.svg"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/symbolic/apps"
  RENAME "${application_id}-paused-symbolic.svg")

# Stores and older desktops want pictures of exact sizes. The program needs none of them, but who has
# built it can install it.
find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Svg)
set(icon_sizes 16 22 24 32 48 64 128 256 512)
set(icon_arguments)
set(icon_files)
foreach(size ${icon_sizes})
  set(icon "${PROJECT_BINARY_DIR}/icons/${size}.png")
  list(APPEND icon_files "${icon}")
  list(APPEND icon_arguments "${size}:${icon}")
  install(FILES "${icon}"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps"
    RENAME "${application_id}.png")
endforeach()
add_executable(render_icon "${PROJECT_SOURCE_DIR}/tools/icons/RenderIcon.cpp")
target_link_libraries(render_icon PRIVATE Qt6::Gui Qt6::Svg)
add_custom_command(OUTPUT ${icon_files}
  COMMAND "${CMAKE_COMMAND}" -E make_directory "${PROJECT_BINARY_DIR}/icons"
  COMMAND render_icon "${PROJECT_SOURCE_DIR}/resources/${application_id}.svg" ${icon_arguments}
  DEPENDS render_icon "${PROJECT_SOURCE_DIR}/resources/${application_id}.svg"
  COMMENT "Drawing the icon in ${icon_sizes} pixels"
  VERBATIM)
add_custom_target(vantorel_icons ALL DEPENDS ${icon_files})
add_dependencies(vantorel vantorel_icons)

install(CODE "
  set(application_id \"${application_id}\")
  set(desktop_entry \"${packaging}/${application_id}.desktop\")
  set(bin_directory \"${CMAKE_INSTALL_BINDIR}\")
  set(data_directory \"${CMAKE_INSTALL_DATADIR}\")")
install(SCRIPT "${CMAKE_CURRENT_LIST_DIR}/InstallBusService.cmake")
install(SCRIPT "${CMAKE_CURRENT_LIST_DIR}/InstallDesktopEntry.cmake")

if(BUILD_TESTING AND VANTOREL_PROGRAM_TESTS)
  add_subdirectory(tests/package)
endif()
