# vireon_compile_views(<variable> <file.qrc>)
# Compiles every .qml and .js file of the resource file ahead of time and puts the sources to be
# built into <variable>. The resource tree keeps the paths, with an empty payload: the engine finds
# the compiled unit of a path and never reads its text. Call Q_INIT_RESOURCE(<file>) to register.
get_target_property(VIREON_QMAKE Qt5::qmake IMPORTED_LOCATION)
execute_process(COMMAND "${VIREON_QMAKE}" -query QT_INSTALL_BINS
    OUTPUT_VARIABLE qtBinaries OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
find_program(VIREON_QMLCACHEGEN qmlcachegen HINTS "${qtBinaries}" REQUIRED)

function(vireon_compile_views variable resourceFile)
    get_filename_component(input "${resourceFile}" ABSOLUTE)
    get_filename_component(name "${resourceFile}" NAME_WE)
    get_filename_component(folder "${input}" DIRECTORY)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${input}")

    file(STRINGS "${input}" entries REGEX "<file>")
    list(TRANSFORM entries REPLACE ".*<file>(.*)</file>.*" "\\1")
    set(emptyPayload "${CMAKE_CURRENT_BINARY_DIR}/${name}_empty")
    file(WRITE "${emptyPayload}" "")
    file(READ "${input}" filtered)
    string(REGEX REPLACE "<file>([^<]*)</file>" "<file alias=\"\\1\">${emptyPayload}</file>"
        filtered "${filtered}")
    # The loader looks for the resources of exactly this name.
    set(filteredFile "${CMAKE_CURRENT_BINARY_DIR}/${name}_qmlcache.qrc")
    file(CONFIGURE OUTPUT "${filteredFile}" CONTENT "${filtered}" @ONLY)

    set(sources "")
    foreach(entry IN LISTS entries)
        string(MAKE_C_IDENTIFIER "${entry}" identifier)
        set(unit "${CMAKE_CURRENT_BINARY_DIR}/${name}_${identifier}.cpp")
        add_custom_command(OUTPUT "${unit}"
            COMMAND "${VIREON_QMLCACHEGEN}" "--resource=${input}" "${folder}/${entry}" -o "${unit}"
            DEPENDS "${folder}/${entry}" "${input}"
            VERBATIM)
        list(APPEND sources "${unit}")
    endforeach()

    # Any other ending of the name and qmlcachegen would take its input for a view.
    set(loader "${CMAKE_CURRENT_BINARY_DIR}/${name}_qmlcache_loader.cpp")
    add_custom_command(OUTPUT "${loader}"
        COMMAND "${VIREON_QMLCACHEGEN}" "--resource-file-mapping=${input}=${filteredFile}"
            "${input}" -o "${loader}"
        DEPENDS "${input}"
        VERBATIM)
    qt5_add_resources(resources "${filteredFile}" OPTIONS ${VIREON_RESOURCE_OPTIONS})
    set(${variable} ${sources} "${loader}" ${resources} PARENT_SCOPE)
endfunction()
