# What `cmake --install` lays out, and the Debian packages that cpack makes of it: the library, what
# hosts are built with, and the command-line phone.
include(CMakePackageConfigHelpers)
set(cmake_config_folder ${CMAKE_INSTALL_LIBDIR}/cmake/cfgxml)

install(TARGETS cfgxml EXPORT cfgxml
  LIBRARY COMPONENT library NAMELINK_COMPONENT dev)
install(DIRECTORY include/cfgxml DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DATADIR}/cfgxml COMPONENT dev)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT dev)
install(DIRECTORY man/man3 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT dev)

# The prefix as seen from the folder of the pkg-config file, so that it may be moved.
file(RELATIVE_PATH pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/cfgxml.pc.in cfgxml.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/cfgxml.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)

install(EXPORT cfgxml NAMESPACE cfgxml:: FILE cfgxmlTargets.cmake
  DESTINATION ${cmake_config_folder} COMPONENT dev)
configure_package_config_file(cmake/cfgxmlConfig.cmake.in cfgxmlConfig.cmake
  INSTALL_DESTINATION ${cmake_config_folder} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(cfgxmlConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/cfgxmlConfig.cmake ${PROJECT_BINARY_DIR}/cfgxmlConfigVersion.cmake
  DESTINATION ${cmake_config_folder} COMPONENT dev)

if(CFGXML_BUILD_HOST)
  set_target_properties(deskphone PROPERTIES INSTALL_RPATH $ORIGIN/../${CMAKE_INSTALL_LIBDIR})
  install(TARGETS deskphone RUNTIME COMPONENT tools)
  install(DIRECTORY samples DESTINATION ${CMAKE_INSTALL_DATADIR}/cfgxml COMPONENT tools)
  install(DIRECTORY man/man1 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT tools)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library dev tools)
set(CPACK_PACKAGE_CONTACT "cfgxml developers <developers@cfgxml.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
if(CMAKE_CROSSCOMPILING)
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)
endif()

set(same_version "(= ${PROJECT_VERSION})")
set(runtime "libc6 (>= 2.36), libgcc-s1, libstdc++6 (>= 12)")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libcfgxml1)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS "${runtime}, libtinyxml2-9")
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "data plug-in of a desk phone
 Keeps, checks and persists a desk phone's contacts, call history, dial rules
 and messages, searches the phonebooks from the keypad, and parses the XML
 documents that the phone's screens show.")
set(CPACK_DEBIAN_DEV_PACKAGE_NAME libcfgxml-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "libcfgxml1 ${same_version}")
set(CPACK_DEBIAN_DEV_DESCRIPTION "data plug-in of a desk phone - development files
 Headers, documents and examples to build a host of the plug-in.")
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME cfgxml-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS
  "libcfgxml1 ${same_version}, ${runtime}, libfmt9, libspdlog1.10, libtinyxml2-9")
set(CPACK_DEBIAN_TOOLS_DESCRIPTION "data plug-in of a desk phone - command-line phone
 Loads the plug-in as a phone does and drives it from the command line.")
# The library's package tells the linker about it, and other packages whom to depend on.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
include(CPack)
