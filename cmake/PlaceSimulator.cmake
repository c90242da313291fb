# cmake -DFROM=DIRECTORY -DINTO=DIRECTORY -P PlaceSimulator.cmake
# Puts the simulated engine's two programs beside the controller, where nothing else lies: a real
# engine that somebody has put there, or a link to one, stays.
foreach(name vireon-main vireon-sdk)
    set(place "${INTO}/${name}")
    set(isOurs FALSE)
    if(IS_SYMLINK "${place}" OR IS_DIRECTORY "${place}")
        # Never followed: it is somebody's own arrangement, whatever it leads to.
    elseif(NOT EXISTS "${place}")
        set(isOurs TRUE)
    else()
        file(STRINGS "${place}" marks REGEX "VIREON_SIM_JOURNAL" LIMIT_COUNT 1)
        if(marks)
            set(isOurs TRUE)
        endif()
    endif()
    if(NOT isOurs)
        message("${place} is not the simulated engine: it stays as it is")
        continue()
    endif()
    execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${FROM}/${name}" "${place}"
        RESULT_VARIABLE differs OUTPUT_QUIET ERROR_QUIET)
    if(differs)
        # Renamed into its place, since one that runs cannot be written.
        file(COPY_FILE "${FROM}/${name}" "${place}.new")
        file(RENAME "${place}.new" "${place}")
    endif()
endforeach()
