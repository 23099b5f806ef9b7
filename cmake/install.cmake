# What `cmake --install` installs, in the components Runtime, Development and Tools. The installed
# tree is relocatable, except below /usr: there the pkg-config file names the paths, and the tool has
# no RPATH.
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

# The pkg-config file. pkg-config leaves out the system's folders only where they are written
# plainly, hence a second one for /usr. The prefix is known when it is installed; of the paths of
# configuration only the relation is kept.
file(RELATIVE_PATH pcLibDir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH pcIncludeDir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
if(NOT BUILD_SHARED_LIBS)
    set(pcCflags " -DKALO_STATIC")
endif()
set(pcPrefix /usr)
configure_file(cmake/kalo.pc.in system/kalo.pc @ONLY)
file(RELATIVE_PATH pcPrefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" pcPrefix "\${pcfiledir}/${pcPrefix}")
configure_file(cmake/kalo.pc.in relocatable/kalo.pc @ONLY)
install(CODE "
    set(kind relocatable)
    if(CMAKE_INSTALL_PREFIX STREQUAL /usr)
        set(kind system)
    endif()
    get_filename_component(folder \"${CMAKE_INSTALL_LIBDIR}/pkgconfig\" ABSOLUTE
        BASE_DIR \"\${CMAKE_INSTALL_PREFIX}\")
    file(INSTALL \"${CMAKE_CURRENT_BINARY_DIR}/\${kind}/kalo.pc\" DESTINATION \"\${folder}\")"
    COMPONENT Development)

if(TARGET kalo-tool)
    # So that the tool finds the library beside it, unless the user says where, or the loader looks
    # there anyway. CMAKE_SKIP_INSTALL_RPATH goes before all of this.
    if(BUILD_SHARED_LIBS AND NOT DEFINED CMAKE_INSTALL_RPATH
            AND NOT CMAKE_INSTALL_FULL_LIBDIR IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
        file(RELATIVE_PATH libFromBin ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
        set_target_properties(kalo-tool PROPERTIES INSTALL_RPATH "$ORIGIN/${libFromBin}")
    endif()
    install(TARGETS kalo-tool RUNTIME COMPONENT Tools)
    if(TARGET kalo-pages)
        set(pages ${PROJECT_BINARY_DIR}/share)
        install(DIRECTORY ${pages}/man1 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT Tools)
        foreach(place bash-completion/completions/kalo zsh/site-functions/_kalo
                fish/vendor_completions.d/kalo.fish)
            string(REGEX MATCH "^[a-z]+" shell ${place})
            cmake_path(GET place PARENT_PATH folder)
            cmake_path(GET place FILENAME name)
            install(FILES ${pages}/kalo.${shell} DESTINATION ${CMAKE_INSTALL_DATADIR}/${folder}
                RENAME ${name} COMPONENT Tools)
        endforeach()
    endif()
endif()
