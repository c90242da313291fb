# vireon_render_pictures(<sources> <files>)
# Renders all pictures from assets/ and puts the sources that compile them into the resource tree
# below ":/qml" into <sources>, and the rendered files into <files>: a target needs both. Call
# Q_INIT_RESOURCE(pictures) to register. Icon files to be installed end up in the build tree's
# share/. The script tells what it writes, so that the list exists once.
find_program(VIREON_RSVG_CONVERT rsvg-convert REQUIRED)

function(vireon_render_pictures sourcesVariable filesVariable)
    set(script "${PROJECT_SOURCE_DIR}/scripts/render-assets")
    set(scriptParts "${script}" "${PROJECT_SOURCE_DIR}/scripts/lib/handwriting.py")
    file(GLOB assets CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/assets/*")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${scriptParts})
    execute_process(COMMAND "${script}" --list
        OUTPUT_VARIABLE paths OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    string(REPLACE "\n" ";" paths "${paths}")

    list(TRANSFORM paths PREPEND "${PROJECT_BINARY_DIR}/" OUTPUT_VARIABLE files)
    add_custom_command(OUTPUT ${files}
        COMMAND "${script}" "${PROJECT_BINARY_DIR}"
        DEPENDS ${assets} ${scriptParts}
        COMMENT "Rendering the pictures"
        VERBATIM)

    list(FILTER paths INCLUDE REGEX "^pictures/")
    list(TRANSFORM paths REPLACE "pictures/(.+)"
        "<file alias=\"\\1\">${PROJECT_BINARY_DIR}/pictures/\\1</file>" OUTPUT_VARIABLE entries)
    list(JOIN entries "\n" entries)
    set(resourceFile "${CMAKE_CURRENT_BINARY_DIR}/pictures.qrc")
    file(CONFIGURE OUTPUT "${resourceFile}" @ONLY CONTENT
        "<RCC><qresource prefix=\"/qml\">\n@entries@\n</qresource></RCC>\n")
    qt5_add_resources(sources "${resourceFile}" OPTIONS ${VIREON_RESOURCE_OPTIONS})
    set(${sourcesVariable} ${sources} PARENT_SCOPE)
    set(${filesVariable} ${files} PARENT_SCOPE)
endfunction()
