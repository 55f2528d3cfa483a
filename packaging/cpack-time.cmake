# Read by cpack. All files of a package carry the time of its newest change, so that the same program
# makes the same package, whenever it is made.
execute_process(COMMAND dpkg-parsechangelog -l ${CPACK_TESSMAR_CHANGELOG} -S Timestamp
                OUTPUT_VARIABLE timestamp OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set(ENV{SOURCE_DATE_EPOCH} ${timestamp})
