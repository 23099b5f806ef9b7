# What `cmake --install` lays down, in the components Runtime, Development and Tools. Nothing in it
# knows the prefix: the whole may be moved afterwards.
include(CMakePackageConfigHelpers)

set(packageDir ${CMAKE_INSTALL_LIBDIR}/cmake/kalo)
install(TARGETS kalo EXPORT kaloTargets
    RUNTIME COMPONENT Runtime
    LIBRARY COMPONENT Runtime NAMELINK_COMPONENT Development
    ARCHIVE COMPONENT Development
    FILE_SET HEADERS COMPONENT Development)
install(EXPORT kaloTargets NAMESPACE kalo:: DESTINATION ${packageDir} COMPONENT Development)
configure_package_config_file(cmake/kaloConfig.cmake.in kaloConfig.cmake
    INSTALL_DESTINATION ${packageDir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(kaloConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/kaloConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/kaloConfigVersion.cmake
    DESTINATION ${packageDir} COMPONENT Development)

# The paths are those of the prefix at configuration, but only their relation is kept.
file(RELATIVE_PATH pcPrefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" pcPrefix ${pcPrefix})
file(RELATIVE_PATH pcLibDir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH pcIncludeDir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
if(NOT BUILD_SHARED_LIBS)
    set(pcCflags " -DKALO_STATIC")
endif()
configure_file(cmake/kalo.pc.in kalo.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/kalo.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)

if(TARGET kalo-tool)
    file(RELATIVE_PATH libFromBin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    if(BUILD_SHARED_LIBS)
        set_target_properties(kalo-tool PROPERTIES INSTALL_RPATH "$ORIGIN/${libFromBin}")
    endif()
    install(TARGETS kalo-tool RUNTIME COMPONENT Tools)
endif()
