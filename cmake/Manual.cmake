# The help beside the program, made from docs/manual: HTML pages, and compiled help where there is a
# compiler for it. A machine without the tools builds the program without its help.
# The system's own Python first: the module is a package of the system.
find_program(TESSMAR_PYTHON python3 HINTS /usr/bin DOC "Python with the markdown module")
find_program(TESSMAR_CHMCMD chmcmd DOC "Compiler for help files (.chm)")

if(TESSMAR_PYTHON)
  execute_process(COMMAND ${TESSMAR_PYTHON} -c "import markdown"
                  RESULT_VARIABLE result OUTPUT_QUIET ERROR_QUIET)
else()
  set(result 1)
endif()
if(NOT result EQUAL 0)
  message(STATUS "No Python with its markdown module: the manual is not built")
  return()
endif()

set(manual_out ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
set(manual_arguments --out ${manual_out} --work ${PROJECT_BINARY_DIR}/manual)
if(TESSMAR_CHMCMD)
  list(APPEND manual_arguments --chmcmd ${TESSMAR_CHMCMD})
else()
  message(STATUS "No chmcmd: the help files TessmarLoggerII.chm and TessmarDOHelp.chm are not built")
endif()

file(GLOB_RECURSE manual_sources CONFIGURE_DEPENDS
     ${PROJECT_SOURCE_DIR}/docs/manual/*.md ${PROJECT_SOURCE_DIR}/docs/manual/*.css
     ${PROJECT_SOURCE_DIR}/docs/manual/*.png ${PROJECT_SOURCE_DIR}/docs/manual/*.py)
add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/manual.stamp
                   COMMAND ${TESSMAR_PYTHON} ${PROJECT_SOURCE_DIR}/docs/manual/make-manual.py ${manual_arguments}
                   COMMAND ${CMAKE_COMMAND} -E touch ${PROJECT_BINARY_DIR}/manual.stamp
                   DEPENDS ${manual_sources}
                   COMMENT "Making the manual" VERBATIM)
add_custom_target(manual ALL DEPENDS ${PROJECT_BINARY_DIR}/manual.stamp)
# Whoever builds the program gets its help beside it.
add_dependencies(TessmarLogger manual)
