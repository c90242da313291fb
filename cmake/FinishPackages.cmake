# Run by CPack after it has made the packages.
execute_process(COMMAND /usr/bin/python3 -B "${CMAKE_CURRENT_LIST_DIR}/../scripts/lib/debfile.py"
    "${CPACK_VIREON_RELEASE_SECOND}" ${CPACK_PACKAGE_FILES}
    COMMAND_ERROR_IS_FATAL ANY)
