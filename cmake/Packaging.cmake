# The Debian packages, made by cpack: dnzcnf with the tool and everything it needs, libdnzservices-dev
# with the services as a library.
set(packaging ${PROJECT_SOURCE_DIR}/install/debian)
set(packaging_build ${PROJECT_BINARY_DIR}/packaging)

# Without -n the results would contain the dates of the files.
find_program(GZIP gzip REQUIRED)
foreach(document IN ITEMS install/man/dnzcnf.8 install/debian/changelog CHANGELOG.md)
  cmake_path(GET document FILENAME name)
  set(source ${PROJECT_SOURCE_DIR}/${document})
  set(compressed ${packaging_build}/${name}.gz)
  add_custom_command(
    OUTPUT ${compressed}
    COMMAND ${GZIP} -9 -n -c ${source} > ${compressed}
    DEPENDS ${source}
    VERBATIM)
  list(APPEND compressed_documents ${compressed})
endforeach()
add_custom_target(documents ALL DEPENDS ${compressed_documents})

install(FILES ${packaging_build}/dnzcnf.8.gz DESTINATION /usr/share/man/man8)

# Only packages contain these: an installation without a package omits them.
function(install_in_package component package)
  install(FILES ${packaging}/copyright ${packaging_build}/changelog.gz
    ${packaging_build}/CHANGELOG.md.gz
    DESTINATION /usr/share/doc/${package} COMPONENT ${component} EXCLUDE_FROM_ALL)
  install(FILES ${packaging}/${package}.lintian-overrides RENAME ${package}
    DESTINATION /usr/share/lintian/overrides COMPONENT ${component} EXCLUDE_FROM_ALL)
endfunction()
install_in_package(tool dnzcnf)
install_in_package(development libdnzservices-dev)
install(FILES docs/administration.md docs/operations.md docs/messages.md docs/formats.md
  DESTINATION /usr/share/doc/dnzcnf COMPONENT tool EXCLUDE_FROM_ALL)
install(DIRECTORY examples/services
  DESTINATION /usr/share/doc/libdnzservices-dev/examples COMPONENT development EXCLUDE_FROM_ALL)

# The files that administrators edit: the ini file and the entry pages. An upgrade keeps edited ones.
file(GLOB entry_pages CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/install/html
  ${PROJECT_SOURCE_DIR}/install/html/*/dnzcnf1.htm)
list(TRANSFORM entry_pages PREPEND /opt/nzm/html/dnzgate/)
list(JOIN entry_pages "\n" conffiles)
file(CONFIGURE OUTPUT packaging/conffiles CONTENT "/var/nzm/dnz.ini\n${conffiles}\n" @ONLY)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGE_CONTACT "dnzcnf engineering <engineering@dnzcnf.invalid>")
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/SourceDate.cmake)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_SET_DESTDIR ON) # the places are absolute; cpack demands a prefix all the same
set(CPACK_INSTALL_PREFIX /opt/nzm)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/PackageFolders.cmake)
set(CPACK_COMPONENTS_ALL tool development)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME dnzcnf)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION web)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS adduser)
set(CPACK_DEBIAN_TOOL_PACKAGE_SUGGESTS "lighttpd | httpd-cgi")
set(CPACK_DEBIAN_TOOL_PACKAGE_CONTROL_EXTRA
  ${packaging_build}/conffiles ${packaging}/postinst ${packaging}/prerm ${packaging}/postrm)
set(CPACK_COMPONENT_TOOL_DESCRIPTION "edits the ini files of the Velmora gateway in a browser
A CGI program for the web server that is already there: it shows an ini
file of the gateway as a form, checks what was entered, and saves it.
The pages and messages are in English, Brazilian Portuguese, Chinese,
French, German, Italian, Japanese, Korean and Spanish.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libdnzservices-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libstdc++-12-dev | libstdc++-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS "dnzcnf (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "common services of the Velmora gateway (development files)
Trace, failure reports, messages and text conversion as a static library,
with its headers, a CMake package and an example program. The message
catalogue and the conversion tables come with the package dnzcnf.")

include(CPack)
