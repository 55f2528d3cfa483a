# What is installed where, and the Debian package that CPack makes of it.
#
# The program stands with its help in a folder of its own: compiled help is looked for beside the
# program, and the program knows its folder by its real path, not by the link in bin.
set(TESSMAR_PACKAGE tessmar-logger)
set(TESSMAR_PROGRAM_DIR lib/${TESSMAR_PACKAGE})
set(TESSMAR_DATA_DIR ${CMAKE_INSTALL_DATADIR}/${TESSMAR_PACKAGE})
set(TESSMAR_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/${TESSMAR_PACKAGE})
set(icons ${PROJECT_SOURCE_DIR}/src/ui/icons)
set(packaging ${PROJECT_SOURCE_DIR}/packaging)

# tessmar_link(name folder target): installs a relative link.
function(tessmar_link name folder target)
  set(link ${PROJECT_BINARY_DIR}/links/${folder}/${name})
  get_filename_component(parent ${link} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${target} ${link} SYMBOLIC)
  install(FILES ${link} DESTINATION ${folder})
endfunction()

install(TARGETS TessmarLogger RUNTIME DESTINATION ${TESSMAR_PROGRAM_DIR})
install(TARGETS tessmar tessmar-sim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
tessmar_link(TessmarLogger ${CMAKE_INSTALL_BINDIR} ../${TESSMAR_PROGRAM_DIR}/TessmarLogger)

if(TARGET manual)
  install(DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/help DESTINATION ${TESSMAR_DATA_DIR})
  tessmar_link(help ${TESSMAR_PROGRAM_DIR} ../../${TESSMAR_DATA_DIR}/help)
  tessmar_link(manual ${TESSMAR_DOC_DIR} ../../${TESSMAR_PACKAGE}/help)
  if(TESSMAR_CHMCMD)
    foreach(file TessmarLoggerII.chm TessmarDOHelp.chm)
      install(FILES ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${file} DESTINATION ${TESSMAR_DATA_DIR})
      tessmar_link(${file} ${TESSMAR_PROGRAM_DIR} ../../${TESSMAR_DATA_DIR}/${file})
    endforeach()
  endif()
endif()

install(FILES ${packaging}/tessmar-logger.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${packaging}/org.tessmar.logger.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES ${packaging}/tessmar-logger-mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
        RENAME tessmar-logger.xml)

# One drawing for the program and for its setup files.
set(theme ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES ${icons}/tessmar-logger.svg DESTINATION ${theme}/scalable/apps)
install(FILES ${icons}/tessmar-logger.svg DESTINATION ${theme}/scalable/mimetypes
        RENAME application-x-tessmar-setup.svg)
foreach(size 16 24 32 48 64 128 256)
  install(FILES ${icons}/tessmar-logger-${size}.png DESTINATION ${theme}/${size}x${size}/apps
          RENAME tessmar-logger.png)
  install(FILES ${icons}/tessmar-logger-${size}.png DESTINATION ${theme}/${size}x${size}/mimetypes
          RENAME application-x-tessmar-setup.png)
endforeach()

install(FILES ${PROJECT_SOURCE_DIR}/docs/exports.md ${PROJECT_SOURCE_DIR}/docs/file-formats.md
              ${packaging}/serial-ports.md ${packaging}/every-night.md DESTINATION ${TESSMAR_DOC_DIR})
install(FILES ${PROJECT_SOURCE_DIR}/docs/sharing.md ${PROJECT_SOURCE_DIR}/docs/sharing-roles.sql
        DESTINATION ${TESSMAR_DOC_DIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/examples DESTINATION ${TESSMAR_DOC_DIR})
install(FILES ${packaging}/tessmar.bash-completion
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME tessmar)
install(FILES ${packaging}/copyright DESTINATION ${TESSMAR_DOC_DIR})

# Compressed without name and time, so that the same text gives the same bytes.
find_program(GZIP_PROGRAM gzip REQUIRED)
function(tessmar_gzip source destination name)
  set(zipped ${PROJECT_BINARY_DIR}/zipped/${name}.gz)
  add_custom_command(OUTPUT ${zipped}
                     COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/zipped
                     COMMAND ${GZIP_PROGRAM} -9nc ${source} > ${zipped}
                     DEPENDS ${source} VERBATIM)
  set_property(TARGET packaged_texts APPEND PROPERTY SOURCES ${zipped})
  install(FILES ${zipped} DESTINATION ${destination})
endfunction()
add_custom_target(packaged_texts ALL)
tessmar_gzip(${packaging}/TessmarLogger.1 ${CMAKE_INSTALL_MANDIR}/man1 TessmarLogger.1)
tessmar_gzip(${packaging}/tessmar.1 ${CMAKE_INSTALL_MANDIR}/man1 tessmar.1)
tessmar_gzip(${packaging}/tessmar-sim.1 ${CMAKE_INSTALL_MANDIR}/man1 tessmar-sim.1)
tessmar_gzip(${packaging}/changelog ${TESSMAR_DOC_DIR} changelog)

# The package. No script of a maintainer runs: menus, icons and file types are brought up to date by
# the triggers of the packages that own them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${TESSMAR_PACKAGE})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}.${PROJECT_VERSION_TWEAK})
set(CPACK_PACKAGE_VENDOR "The Tessmar Logger authors")
set(CPACK_PACKAGE_CONTACT "The Tessmar Logger authors <authors@tessmar-logger.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "live readings, history and set-up of Tessmar data loggers")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Tessmar Logger works with a battery-powered environmental data logger on a
serial line, directly or through a dial-up modem. It shows live readings,
uploads the stored records, shows them in a table, saves them as a CSV file,
and programs the logger's settings. Salinity, oxygen saturation and oxygen
concentration are worked out from the channels of the sensors.
.
The command tessmar does the same work from a shell or a script. The simulated
logger tessmar-sim is for trying the program without one.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PROJECT_CONFIG_FILE ${packaging}/cpack-time.cmake)
set(CPACK_TESSMAR_CHANGELOG ${packaging}/changelog)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# A plugin, and a library that is loaded when it is needed; the linker knows of neither.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6sql6-sqlite, libnetcdf19")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "xchm | kchmviewer, xdg-utils")
# For tessmar archive push.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "libqt6sql6-psql")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
