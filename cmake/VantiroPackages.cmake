# The packages of Debian that cpack makes, one of each component of the installation. What goes into a package is
# installed by the folder that it comes from; what only a package has is in packaging/, and installed here.

# The list of changes tells the version of the packages: it is theirs that a machine compares. The part behind the dash
# counts packagings of one and the same version.
set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
    ${packaging}/changelog ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
file(STRINGS ${packaging}/changelog newest LIMIT_COUNT 1)
if(NOT newest MATCHES "^vantiro \\(([0-9.]+)-([0-9]+)\\) " OR NOT CMAKE_MATCH_1 STREQUAL PROJECT_VERSION)
    message(FATAL_ERROR
        "packaging/changelog has to begin with \"vantiro (${PROJECT_VERSION}-1) \", not with \"${newest}\"")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE ${CMAKE_MATCH_2})
set(packaged_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})

# vantiro_compressed(FILE RESULT)
#
# Compresses the file as Debian wants texts to be: as small as can be, and the same whenever it is done.
find_program(VANTIRO_GZIP gzip REQUIRED)
mark_as_advanced(VANTIRO_GZIP)
function(vantiro_compressed file result)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
    file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/packaging)
    execute_process(COMMAND ${VANTIRO_GZIP} -9 -n -c ${file} OUTPUT_FILE ${PROJECT_BINARY_DIR}/packaging/${result}
        COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# vantiro_package(COMPONENT NAME)
#
# Makes the component a package with the description, the copyright and the overrides of packaging/NAME.
vantiro_compressed(${packaging}/changelog changelog.Debian.gz)
vantiro_compressed(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog.gz)
function(vantiro_package component name)
    set(doc ${CMAKE_INSTALL_DATADIR}/doc/${name})
    install(FILES
        ${PROJECT_BINARY_DIR}/packaging/changelog.Debian.gz
        ${PROJECT_BINARY_DIR}/packaging/changelog.gz
        ${packaging}/${name}/copyright
        DESTINATION ${doc}
        COMPONENT ${component})
    if(EXISTS ${packaging}/${name}/lintian-overrides)
        install(FILES ${packaging}/${name}/lintian-overrides
            DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
            RENAME ${name}
            COMPONENT ${component})
    endif()
    string(TOUPPER ${component} key)
    file(READ ${packaging}/${name}/description description)
    string(STRIP "${description}" description)
    set(CPACK_DEBIAN_${key}_DESCRIPTION "${description}" PARENT_SCOPE)
    set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name} PARENT_SCOPE)
endfunction()

# vantiro_pages(COMPONENT NAME PAGE...)
#
# Installs pages of docs/ with a package. Their links, which lead through the sources, then lead to where the packages
# have what they mean.
set(plugin_pages integrators.md operators.ru.md queue-record.md wire.md)
set(host_pages stored-state.md till-makers.md)
function(vantiro_pages component name)
    foreach(page IN LISTS ARGN)
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/${page})
        file(READ ${PROJECT_SOURCE_DIR}/docs/${page} text)
        string(REPLACE "](../host/README.md" "](../vantiro-host-dev/README.md" text "${text}")
        string(REPLACE "](../host/example" "](../vantiro-host-dev/examples" text "${text}")
        string(REPLACE "](../examples/" "](../vantiro-till/examples/" text "${text}")
        foreach(other IN LISTS plugin_pages)
            string(REPLACE "](${other}" "](../vantiro-plugin/${other}" text "${text}")
        endforeach()
        foreach(other IN LISTS host_pages)
            string(REPLACE "](${other}" "](../vantiro-host-dev/${other}" text "${text}")
        endforeach()
        file(WRITE ${PROJECT_BINARY_DIR}/packaging/${page} "${text}")
        install(FILES ${PROJECT_BINARY_DIR}/packaging/${page}
            DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name}
            COMPONENT ${component})
    endforeach()
endfunction()

vantiro_package(vantiro-plugin vantiro-plugin)
vantiro_pages(vantiro-plugin vantiro-plugin ${plugin_pages})
set(CPACK_DEBIAN_VANTIRO-PLUGIN_PACKAGE_SECTION libs)

vantiro_package(vantiro-host vantiro-host-dev)
vantiro_pages(vantiro-host vantiro-host-dev ${host_pages})
set(CPACK_DEBIAN_VANTIRO-HOST_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_VANTIRO-HOST_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_VANTIRO-HOST_PACKAGE_DEPENDS "qt6-base-dev (>= 6.4)")
set(CPACK_DEBIAN_VANTIRO-HOST_PACKAGE_SUGGESTS "vantiro-till")

vantiro_package(vantiro-till vantiro-till)
install(FILES ${packaging}/vantiro-till/README.md
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vantiro-till
    COMPONENT vantiro-till)
set(CPACK_DEBIAN_VANTIRO-TILL_PACKAGE_SECTION misc)
foreach(page IN ITEMS vantiro-till.1 vantiro-sandbox.1)
    vantiro_compressed(${PROJECT_SOURCE_DIR}/docs/man/${page} ${page}.gz)
    install(FILES ${PROJECT_BINARY_DIR}/packaging/${page}.gz
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
        COMPONENT vantiro-till)
endforeach()
# What no linker sees: the plug-in, the driver of the database, the letters of slips that are drawn.
set(CPACK_DEBIAN_VANTIRO-TILL_PACKAGE_DEPENDS
    "vantiro-plugin (= ${packaged_version}), libqt6sql6-sqlite (>= 6.4), fonts-dejavu-core")

set(VANTIRO_MAINTAINER "The Vantiro authors <packages@vantiro.example>" CACHE STRING
    "Who answers for the packages: a name, and an address in angle brackets")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vantiro)
set(CPACK_PACKAGE_VENDOR "The Vantiro authors")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${packaging}/strip.cmake)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_COMPONENTS_ALL vantiro-plugin vantiro-host vantiro-till)
set(CPACK_DEB_COMPONENT_INSTALL ON)
# Whoever makes the packages, and with whatever umask.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${VANTIRO_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SOURCE vantiro)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# libtill.so belongs to no package but the one that is being made.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/till)
include(CPack)
