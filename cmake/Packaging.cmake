# What is installed, and the Debian package of it: cpack -G DEB in the build tree.
#
# The program, its configuration and its launcher have one fixed directory, whose path the desktop
# entry, the D-Bus service and the program itself name: with another prefix than /usr/local they
# would not be found. The engine is not part of this project; its two programs go beside "vireon".
# For trying the package without one, "cmake --install BUILD --component simulator" puts the
# simulated engine there.
set(programDirectory bin/Vireon)
set(shareDirectory "${PROJECT_BINARY_DIR}/share")
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/packaging")

install(TARGETS vireon vireonctl DESTINATION ${programDirectory} COMPONENT vireon)
# Where a shell finds it.
file(CREATE_LINK Vireon/vireonctl "${PROJECT_BINARY_DIR}/packaging/vireonctl" SYMBOLIC)
install(FILES "${PROJECT_BINARY_DIR}/packaging/vireonctl" DESTINATION bin COMPONENT vireon)
install(FILES packaging/vireonctl.1 DESTINATION share/man/man1 COMPONENT vireon)
install(FILES packaging/vireonctl.bash
    DESTINATION share/bash-completion/completions RENAME vireonctl COMPONENT vireon)
install(PROGRAMS packaging/Vireon.sh DESTINATION ${programDirectory} COMPONENT vireon)
install(FILES config/vireon.conf config/integration.conf
    DESTINATION ${programDirectory}/config COMPONENT vireon)
install(FILES "${shareDirectory}/vireon/Corvanthel.png"
    "${shareDirectory}/vireon/CorvanthelSmall.png"
    DESTINATION ${programDirectory} COMPONENT vireon)
install(DIRECTORY "${shareDirectory}/icons" DESTINATION share COMPONENT vireon)
install(FILES packaging/com.corvanthel.Vireon.desktop
    DESTINATION share/applications COMPONENT vireon)
install(FILES packaging/com.corvanthel.Vireon.service
    DESTINATION share/dbus-1/services COMPONENT vireon)
install(TARGETS vireon-main vireon-sdk
    DESTINATION ${programDirectory} COMPONENT simulator EXCLUDE_FROM_ALL)

# The packages of a group of packages.txt, as a list for the package's field.
function(vireon_packages_of group variable)
    file(STRINGS "${PROJECT_SOURCE_DIR}/packages.txt" lines)
    set(packages "")
    set(current "")
    foreach(line IN LISTS lines)
        if(line MATCHES "^# \\[([a-z]+)\\]")
            set(current "${CMAKE_MATCH_1}")
        elseif(current STREQUAL group AND line MATCHES "^[a-z0-9]")
            string(REGEX REPLACE "[ #].*" "" package "${line}")
            list(APPEND packages "${package}")
        endif()
    endforeach()
    list(JOIN packages ", " packages)
    set(${variable} "${packages}" PARENT_SCOPE)
endfunction()

vireon_packages_of(run runPackages)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS packages.txt)
# The compiled views fit the very version of Qt that they were compiled with.
string(REPLACE "." "-" viewsVersion "${Qt5Qml_VERSION}")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vireon)
set(CPACK_PACKAGE_CONTACT "Vireon <support@vireon.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Controller of an interactive touch and pen projection")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_COMPONENTS_ALL vireon)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "${VIREON_SUPPORT_URL}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qtdeclarative-abi-${viewsVersion}, ${runPackages}")
# An administrator's changes of the configuration outlive an update.
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/packaging/conffiles" CONTENT
    "${CMAKE_INSTALL_PREFIX}/${programDirectory}/config/vireon.conf
${CMAKE_INSTALL_PREFIX}/${programDirectory}/config/integration.conf\n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/packaging/conffiles")
include(CPack)
